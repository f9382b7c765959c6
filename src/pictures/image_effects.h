// Pixel operations of the picture editors. The simple ones (brightness, contrast, gamma,
// invert, gray scale, mosaic, half tone, flips, turns) are done here with QImage; so are
// posterize, hue, saturation, emboss and the edge filters, computed as ImageMagick computes
// them (its -posterize, -modulate in HSL, 3 x 3 convolution with edge pixels repeated) but on
// the picture's own pixels, their rows spread over the processor's cores. The others go to
// ImageMagick in the codec module. Every operation returns a new picture and leaves its source
// alone; a failing one returns the source unchanged.
#pragma once

#include <QImage>
#include <QRgb>

namespace tw::effects {

QImage brightness(const QImage &src, int value);  // -1000..1000
QImage contrast(const QImage &src, int value);  // -1000..1000
QImage gamma(const QImage &src, int hundredths);  // 1..499, 100 changes nothing
QImage invert(const QImage &src);
QImage grayScale(const QImage &src);  // 8 bits of gray
QImage mosaic(const QImage &src, int tile);  // tiles of tile x tile pixels
QImage halfTone(const QImage &src, int angleDegrees);  // a dot screen turned by the angle
QImage flip(const QImage &src);  // top to bottom
QImage reverse(const QImage &src);  // left to right
// Turns by hundredths of a degree, clockwise, about the centre; the picture keeps its size and
// the corners take `back`.
QImage rotate(const QImage &src, int hundredths, QRgb back);

// Through ImageMagick.
QImage posterize(const QImage &src, int levels);
QImage median(const QImage &src, int size);
QImage sharpen(const QImage &src, int value);
QImage noise(const QImage &src, int value, int channel);
QImage emboss(const QImage &src, int direction, int value);
QImage histogramContrast(const QImage &src, int value);
QImage hue(const QImage &src, int degrees);
QImage saturation(const QImage &src, int value);
QImage stretchIntensity(const QImage &src);
QImage edgeFilter(const QImage &src, int code);  // 22..28 as the editor's filter buttons
QImage colourResolution(const QImage &src, int bitsPerPixel, int colours);

// Whether the ImageMagick operations are there (the codec module loaded).
bool magickAvailable();

// The operations done here that ImageMagick also does, through ImageMagick: what this code
// is held to.
namespace magick {
QImage posterize(const QImage &src, int levels);
QImage emboss(const QImage &src, int direction, int value);
QImage hue(const QImage &src, int degrees);
QImage saturation(const QImage &src, int value);
QImage edgeFilter(const QImage &src, int code);
QImage median(const QImage &src, int size);
QImage sharpen(const QImage &src, int value);
}  // namespace magick

}  // namespace tw::effects
