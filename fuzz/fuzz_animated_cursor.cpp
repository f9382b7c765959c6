// The animated-cursor container (RIFF "ACON": its header, rates, sequence and frame list).
// The icons inside are decoded by ImageMagick in a helper process in the program; here a
// stand-in gives a small picture for anything that begins like an icon or cursor file.
#include "pictures/frame_decoders.h"

#include <cstdint>

namespace {
QImage standInIcon(const QByteArray &icon)
{
    if (icon.size() < 6 || icon[0] != 0 || icon[1] != 0 || (icon[2] != 1 && icon[2] != 2)) return QImage();
    QImage img(4 + (uchar(icon[4]) & 7), 4, QImage::Format_ARGB32);
    img.fill(0xFF102030u);
    return img;
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    tw::DecodedFrames frames;
    QString message;
    const QByteArray file(reinterpret_cast<const char *>(data), qsizetype(size));
    tw::decodeAnimatedCursor(file, standInIcon, int64_t(64) << 20, &frames, &message);
    if (frames.frames.size() != frames.delaysMs.size() && !frames.frames.isEmpty()) __builtin_trap();
    return 0;
}
