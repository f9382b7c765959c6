// The 3 x 3 kernels of the edge filters, by the code the colour editor gives them: Prewitt
// and Sobel across (25, 23) and down (24, 22), and the one-pixel shifts (28, 27). Worked out
// by the editor itself and, for pictures it leaves to ImageMagick, in the codec module.
#pragma once

#include <algorithm>

namespace tw::effects {

// Fills K with the kernel of Code; false for a code that names none.
inline bool edgeKernel(int code, double (&k)[9])
{
    static constexpr double prewittV[9] = {-1, 0, 1, -1, 0, 1, -1, 0, 1};
    static constexpr double prewittH[9] = {-1, -1, -1, 0, 0, 0, 1, 1, 1};
    static constexpr double sobelV[9] = {-1, 0, 1, -2, 0, 2, -1, 0, 1};
    static constexpr double sobelH[9] = {-1, -2, -1, 0, 0, 0, 1, 2, 1};
    static constexpr double shiftV[9] = {0, 0, 0, -1, 1, 0, 0, 0, 0};
    static constexpr double shiftH[9] = {0, -1, 0, 0, 1, 0, 0, 0, 0};
    const double *from = nullptr;
    switch (code) {
    case 25:
        from = prewittV;
        break;
    case 24:
        from = prewittH;
        break;
    case 23:
        from = sobelV;
        break;
    case 22:
        from = sobelH;
        break;
    case 28:
        from = shiftV;
        break;
    case 27:
        from = shiftH;
        break;
    default:
        return false;
    }
    std::copy(from, from + 9, k);
    return true;
}

}  // namespace tw::effects
