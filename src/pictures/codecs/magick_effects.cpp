// The picture editors' ImageMagick operations: posterize, median, sharpen and blur, noise,
// emboss in eight directions, histogram contrast, hue and saturation, intensity stretch, the
// edge filters and colour reduction. Exported under a symbol of their own so the codec table
// keeps its shape.
#include "pictures/codecs/codec_table.h"
#include "pictures/codecs/edge_kernels.h"

#include <Magick++.h>

#include <QImage>
#include <algorithm>
#include <cmath>

namespace tw {
namespace {

using MagickCore::Quantum;

// The picture's own bytes go in and come out: an opaque picture (32 bits, the top byte
// unused) is read with that byte skipped and written with it opaque, so no converted copy
// is made on either side.
Magick::Image toMagick(const QImage &src)
{
    const bool alpha = src.hasAlphaChannel();
    const QImage q = src.format() == QImage::Format_RGB32 || src.format() == QImage::Format_ARGB32
        ? src
        : src.convertToFormat(alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    if (q.bytesPerLine() != qsizetype(q.width()) * 4) {
        const QImage packed = q.copy();
        Magick::Image img(size_t(q.width()), size_t(q.height()), alpha ? "BGRA" : "BGRP", Magick::CharPixel,
                          packed.constBits());
        img.matte(alpha);
        return img;
    }
    Magick::Image img(size_t(q.width()), size_t(q.height()), alpha ? "BGRA" : "BGRP", Magick::CharPixel,
                      q.constBits());
    img.matte(alpha);
    return img;
}

QImage toQt(Magick::Image &img, const QImage &like)
{
    const int w = int(img.columns()), h = int(img.rows());
    const bool alpha = like.hasAlphaChannel();
    QImage q(w, h, alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    if (q.isNull()) return like;
    // Without a matte ImageMagick gives every alpha byte as opaque, as RGB32 wants it.
    img.matte(alpha);
    img.write(0, 0, size_t(w), size_t(h), "BGRA", Magick::CharPixel, q.bits());
    return q;
}

// out = from + (to - from) * t, channel by channel.
QImage blend(const QImage &from, const QImage &to, double t)
{
    QImage a = from.convertToFormat(QImage::Format_ARGB32);
    const QImage b = to.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < a.height(); ++y) {
        auto *pa = reinterpret_cast<uchar *>(a.scanLine(y));
        const auto *pb = reinterpret_cast<const uchar *>(b.constScanLine(y));
        for (int i = 0; i < a.width() * 4; ++i)
            pa[i] = uchar(std::clamp(int(std::lround(pa[i] + (pb[i] - pa[i]) * t)), 0, 255));
    }
    if (!from.hasAlphaChannel()) a = a.convertToFormat(QImage::Format_RGB32);
    return a;
}

// Neighbour offsets of the eight directions, north first, clockwise.
constexpr int kDirX[8] = {0, 1, 1, 1, 0, -1, -1, -1};
constexpr int kDirY[8] = {-1, -1, 0, 1, 1, 1, 0, -1};

QImage applyEffect(const QImage &src, int effect, double a, double b)
{
    if (src.isNull()) return src;
    try {
        Magick::Image img = toMagick(src);
        switch (MagickEffect(effect)) {
        case MagickEffect::Posterize:
            img.posterize(size_t(std::clamp(a, 2.0, 256.0)), false);
            break;
        case MagickEffect::Median:
            img.medianFilter(std::max(1.0, (a - 1) / 2));
            break;
        case MagickEffect::Sharpen:
            if (a > 0) img.sharpen(0, a / 250.0);
            else if (a < 0) img.blur(0, -a / 250.0);
            break;
        case MagickEffect::Noise: {
            if (a <= 0) return src;
            if (b > 0) img.addNoiseChannel(MagickCore::ChannelType(int(b)), MagickCore::GaussianNoise);
            else img.addNoise(MagickCore::GaussianNoise);
            return blend(src, toQt(img, src), std::min(a, 1000.0) / 1000.0);
        }
        case MagickEffect::Emboss: {
            // A relief lit from the chosen side: the neighbour on that side minus the one
            // opposite, on top of the picture, as strong as the value asks.
            const int d = std::clamp(int(b), 0, 7);
            const double s = std::clamp(a, 0.0, 1000.0) / 250.0;
            double k[9] = {0, 0, 0, 0, 1, 0, 0, 0, 0};
            k[(1 + kDirY[d]) * 3 + 1 + kDirX[d]] += s;
            k[(1 - kDirY[d]) * 3 + 1 - kDirX[d]] -= s;
            img.convolve(3, k);
            break;
        }
        case MagickEffect::HistContrast:
            if (a == 0) return src;
            img.sigmoidalContrast(a > 0 ? 1 : 0, std::abs(a) / 100.0, QuantumRange / 2.0);
            break;
        case MagickEffect::Hue:
            img.modulate(100.0, 100.0, 100.0 + a * 100.0 / 180.0);
            break;
        case MagickEffect::Saturation:
            img.modulate(100.0, std::max(0.0, 100.0 + a / 10.0), 100.0);
            break;
        case MagickEffect::StretchIntensity:
            img.normalize();
            break;
        case MagickEffect::HalfTone:
            return src;  // the colour editor screens the picture itself
        case MagickEffect::EdgeFilter: {
            double k[9];
            if (!effects::edgeKernel(int(a), k)) return src;
            img.convolve(3, k);
            break;
        }
        case MagickEffect::ColourResolution: {
            const int bits = std::clamp(int(a), 1, 24);
            size_t colours = b > 0 ? size_t(b) : (bits >= 24 ? 0 : (size_t(1) << bits));
            if (colours == 0) return src;
            img.quantizeColors(colours);
            img.quantize();
            break;
        }
        }
        return toQt(img, src);
    } catch (const Magick::Exception &) {
        return src;
    }
}

const EffectsTable kEffects = {EffectsTableVersion, &applyEffect};

}  // namespace
}  // namespace tw

extern "C" __attribute__((visibility("default"))) const tw::EffectsTable *tw_effects_table()
{
    return &tw::kEffects;
}
