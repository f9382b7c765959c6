#include "pictures/image_effects.h"

#include "core/modules.h"
#include "pictures/codecs/codec_table.h"
#include "pictures/codecs/edge_kernels.h"

#include <QColorSpace>
#include <QCoreApplication>
#include <QDir>
#include <QThread>
#include <QtConcurrent/QtConcurrentMap>
#include <QFileInfo>
#include <QPainter>
#include <QTransform>
#include <algorithm>
#include <cmath>
#include <mutex>

namespace tw::effects {

namespace {

QImage argb(const QImage &src)
{
    return src.convertToFormat(src.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
}

// f(firstRow, endRow) over bands of the rows, the bands spread over the processor's cores
// (the global thread pool; the calling thread waits).
template <typename F> void inBands(int rows, const F &f)
{
    const int cores = std::max(1, QThread::idealThreadCount());
    if (cores == 1 || rows < 32) {
        f(0, rows);
        return;
    }
    const int count = std::min(rows / 8, cores * 4);
    std::vector<std::pair<int, int>> bands;
    for (int i = 0; i < count; ++i) bands.push_back({rows * i / count, rows * (i + 1) / count});
    QtConcurrent::blockingMap(bands, [&f](const std::pair<int, int> &b) { f(b.first, b.second); });
}

// A new picture of the same size that carries the source's colour space, resolution and
// texts, as a changed copy of it would.
QImage blankLike(const QImage &in, QImage::Format format)
{
    QImage out(in.size(), format);
    if (out.isNull()) return out;
    out.setColorSpace(in.colorSpace());
    out.setDotsPerMeterX(in.dotsPerMeterX());
    out.setDotsPerMeterY(in.dotsPerMeterY());
    out.setDevicePixelRatio(in.devicePixelRatio());
    out.setOffset(in.offset());
    for (const QString &key : in.textKeys()) out.setText(key, in.text(key));
    return out;
}

// Every colour channel through one table.
QImage mapChannels(const QImage &src, const uchar (&lut)[256])
{
    // Read from the source and written to a new picture in one pass (no copy first).
    const QImage in = argb(src);
    QImage out = blankLike(in, in.format());
    if (in.isNull() || out.isNull()) return src;
    const int w = in.width();
    const uchar *const from = in.constBits();
    uchar *const to = out.bits();
    const qsizetype inStride = in.bytesPerLine(), outStride = out.bytesPerLine();
    inBands(in.height(), [&](int y0, int y1) {
        for (int y = y0; y < y1; ++y) {
            const auto *p = reinterpret_cast<const QRgb *>(from + y * inStride);
            auto *o = reinterpret_cast<QRgb *>(to + y * outStride);
            for (int x = 0; x < w; ++x) {
                const QRgb c = p[x];
                o[x] = qRgba(lut[qRed(c)], lut[qGreen(c)], lut[qBlue(c)], qAlpha(c));
            }
        }
    });
    return out;
}

// ImageMagick keeps 16 bits a channel: a value of 0..1 as it stores it, and as it gives it
// back in 8 bits.
inline uchar fromUnit(double v)
{
    const unsigned q = v <= 0.0 ? 0u : v >= 1.0 ? 65535u : unsigned(65535.0 * v + 0.5);
    return uchar(((q + 128u) - ((q + 128u) >> 8)) >> 8);
}
inline uchar fromQuantum(double q)
{
    const unsigned v = q <= 0.0 ? 0u : q >= 65535.0 ? 65535u : unsigned(q + 0.5);
    return uchar(((v + 128u) - ((v + 128u) >> 8)) >> 8);
}

// -modulate 100,saturation,hue in HSL, as ImageMagick does it.
QImage modulateHsl(const QImage &src, double percentSaturation, double percentHue)
{
    QImage out = argb(src);
    if (out.isNull()) return src;
    // ImageMagick's turn of the hue, a fraction of the circle.
    const double hueShift = std::fmod(percentHue - 100.0, 200.0) / 200.0;
    const double satFactor = 0.01 * percentSaturation;
    double unit[256];
    for (int i = 0; i < 256; ++i) unit[i] = i / 255.0;
    const int w = out.width();
    uchar *const bits = out.bits();
    const qsizetype stride = out.bytesPerLine();
    inBands(out.height(), [&](int y0, int y1) {
        QRgb lastIn = 0, lastOut = 0;
        bool have = false;
        for (int y = y0; y < y1; ++y) {
            auto *p = reinterpret_cast<QRgb *>(bits + y * stride);
            for (int x = 0; x < w; ++x) {
                const QRgb c = p[x];
                if (have && (c | 0xFF000000) == lastIn) {
                    p[x] = (lastOut & 0x00FFFFFF) | (c & 0xFF000000);
                    continue;
                }
                // ImageMagick's arithmetic step for step, its quirks included (a hue that
                // lands on the full circle by rounding gives black there, and so here).
                const double r = unit[qRed(c)], g = unit[qGreen(c)], b = unit[qBlue(c)];
                const double max = std::max(r, std::max(g, b)), min = std::min(r, std::min(g, b));
                const double chroma = max - min;
                QRgb made;
                if (chroma <= 0.0) {
                    made = c;  // a gray has no hue, and keeps its lightness
                } else {
                    const double lightness = (max + min) / 2.0;
                    double hue;
                    if (max == r) hue = (g - b) / chroma + (g < b ? 6.0 : 0.0);
                    else if (max == g) hue = 2.0 + (b - r) / chroma;
                    else hue = 4.0 + (r - g) / chroma;
                    hue = hue * (60.0 / 360.0) + hueShift;
                    // The saturation (chroma over 2L or 2 - 2L) times the factor, and back to a
                    // chroma by the same measure: the chroma times the factor.
                    const double c2 = chroma * satFactor;
                    const double m = lightness - 0.5 * c2;
                    double h = hue * 360.0;
                    h -= 360.0 * std::floor(h / 360.0);
                    h /= 60.0;
                    const int sector = int(h);
                    const double x2 = c2 * (1.0 - std::fabs(h - 2.0 * (sector >> 1) - 1.0));
                    double rr = 0, gg = 0, bb = 0;
                    switch (sector) {
                    case 0:
                        rr = m + c2, gg = m + x2, bb = m;
                        break;
                    case 1:
                        rr = m + x2, gg = m + c2, bb = m;
                        break;
                    case 2:
                        rr = m, gg = m + c2, bb = m + x2;
                        break;
                    case 3:
                        rr = m, gg = m + x2, bb = m + c2;
                        break;
                    case 4:
                        rr = m + x2, gg = m, bb = m + c2;
                        break;
                    case 5:
                        rr = m + c2, gg = m, bb = m + x2;
                        break;
                    default:
                        break;
                    }
                    made = qRgba(fromUnit(rr), fromUnit(gg), fromUnit(bb), qAlpha(c));
                }
                p[x] = made;
                lastIn = c | 0xFF000000;
                lastOut = made;
                have = true;
            }
        }
    });
    return out;
}

// A 3 x 3 convolution of the colour channels as ImageMagick's: the kernel turned half round
// over the picture, the pixels beyond the edge those on it. Pictures with transparency go to
// ImageMagick (it weighs colours by their alpha there).
bool convolve3(const QImage &src, const double (&kernel)[9], QImage *result)
{
    if (src.isNull() || src.hasAlphaChannel()) return false;
    const QImage in = src.convertToFormat(QImage::Format_RGB32);
    QImage out = blankLike(in, QImage::Format_RGB32);
    if (in.isNull() || out.isNull()) return false;
    struct Tap {
        int dx, dy;
        float w;
    };
    std::vector<Tap> taps;
    for (int j = 0; j < 3; ++j)
        for (int i = 0; i < 3; ++i)
            if (kernel[j * 3 + i] != 0.0) taps.push_back({1 - i, 1 - j, float(kernel[j * 3 + i] * 257.0)});
    const int w = in.width(), h = in.height();
    const uchar *const from = in.constBits();
    uchar *const to = out.bits();
    const qsizetype inStride = in.bytesPerLine(), outStride = out.bytesPerLine();
    inBands(h, [&](int y0, int y1) {
        for (int y = y0; y < y1; ++y) {
            const QRgb *rows[3];
            for (int d = -1; d <= 1; ++d)
                rows[d + 1] = reinterpret_cast<const QRgb *>(from + std::clamp(y + d, 0, h - 1) * inStride);
            auto *o = reinterpret_cast<QRgb *>(to + y * outStride);
            auto pixel = [&](int x, bool inside) {
                float r = 0, g = 0, b = 0;
                for (const Tap &t : taps) {
                    const int sx = inside ? x + t.dx : std::clamp(x + t.dx, 0, w - 1);
                    const QRgb c = rows[t.dy + 1][sx];
                    r += t.w * float(qRed(c));
                    g += t.w * float(qGreen(c));
                    b += t.w * float(qBlue(c));
                }
                o[x] = qRgb(fromQuantum(r), fromQuantum(g), fromQuantum(b));
            };
            pixel(0, false);
            for (int x = 1; x < w - 1; ++x) pixel(x, true);
            if (w > 1) pixel(w - 1, false);
        }
    });
    *result = out;
    return true;
}

// The median as ImageMagick's statistic filter takes it for the editor's size: a square of
// side (size - 1) / 2 (whole pixels) reaching half a side up and left of the pixel, edge
// pixels repeated beyond the picture, and of its values the one at half the count in order.
// A histogram of each channel slides along each row. Pictures with transparency go to
// ImageMagick.
bool medianOf(const QImage &src, int size, QImage *result)
{
    if (src.isNull() || src.hasAlphaChannel()) return false;
    const int side = std::max(1, int(std::max(1.0, (size - 1) / 2.0)));
    const QImage in = src.convertToFormat(QImage::Format_RGB32);
    QImage out = blankLike(in, QImage::Format_RGB32);
    if (in.isNull() || out.isNull()) return false;
    const int w = in.width(), h = in.height(), reach = side / 2, k = (side * side) / 2;
    const uchar *const from = in.constBits();
    uchar *const to = out.bits();
    const qsizetype inStride = in.bytesPerLine(), outStride = out.bytesPerLine();
    inBands(h, [&](int y0, int y1) {
        std::vector<const QRgb *> rows(size_t(side), nullptr);
        std::vector<int> column(size_t(w + side));  // the source column of each window column
        for (int i = 0; i < w + side; ++i) column[size_t(i)] = std::clamp(i - reach, 0, w - 1);
        for (int y = y0; y < y1; ++y) {
            for (int j = 0; j < side; ++j)
                rows[size_t(j)] =
                    reinterpret_cast<const QRgb *>(from + std::clamp(y - reach + j, 0, h - 1) * inStride);
            auto *o = reinterpret_cast<QRgb *>(to + y * outStride);
            // Per channel: the histogram of the window, its median, and how many values lie
            // below the median.
            int hist[3][256] = {};
            int med[3] = {0, 0, 0}, below[3] = {0, 0, 0};
            auto add = [&](int col, int delta) {
                const int sx = column[size_t(col)];
                for (int j = 0; j < side; ++j) {
                    const QRgb c = rows[size_t(j)][sx];
                    const int v[3] = {qRed(c), qGreen(c), qBlue(c)};
                    for (int ch = 0; ch < 3; ++ch) {
                        hist[ch][v[ch]] += delta;
                        if (v[ch] < med[ch]) below[ch] += delta;
                    }
                }
            };
            for (int i = 0; i < side; ++i) add(i, 1);
            for (int x = 0; x < w; ++x) {
                if (x > 0) {
                    add(x - 1, -1);
                    add(x - 1 + side, 1);
                }
                int v[3];
                for (int ch = 0; ch < 3; ++ch) {
                    int m = med[ch], lt = below[ch];
                    const int *hc = hist[ch];
                    while (lt > k) lt -= hc[--m];
                    while (lt + hc[m] <= k) lt += hc[m++];
                    med[ch] = m;
                    below[ch] = lt;
                    v[ch] = m;
                }
                o[x] = qRgb(v[0], v[1], v[2]);
            }
        }
    });
    *result = out;
    return true;
}

// The two passes of a Gaussian of weights G (an odd number of them) over In, edge pixels
// repeated: along the rows, each sum kept as Keep makes it, then along the columns into one
// row of sums (three a pixel) at a time, which Finish turns into the row of Out, given the row
// of In. The bands of rows run on all cores.
template <typename Keep, typename Finish>
void gaussianPasses(const QImage &in, QImage &out, const std::vector<float> &g, const Keep &keep,
                    const Finish &finish)
{
    const int width = int(g.size()), j = (width - 1) / 2;
    const int w = in.width(), h = in.height();
    const uchar *const from = in.constBits();
    uchar *const to = out.bits();
    const qsizetype inStride = in.bytesPerLine(), outStride = out.bytesPerLine();
    std::vector<int> column(size_t(w + 2 * j));
    for (int i = 0; i < w + 2 * j; ++i) column[size_t(i)] = std::clamp(i - j, 0, w - 1);
    inBands(h, [&](int y0, int y1) {
        // The rows' pass for the rows this band's columns reach, edge rows repeated.
        const int top = y0 - j, count = (y1 - y0) + 2 * j;
        std::vector<float> across(size_t(count) * size_t(w) * 3);
        for (int r = 0; r < count; ++r) {
            const auto *line =
                reinterpret_cast<const QRgb *>(from + std::clamp(top + r, 0, h - 1) * inStride);
            float *dst = across.data() + size_t(r) * size_t(w) * 3;
            for (int x = 0; x < w; ++x) {
                float sr = 0, sg = 0, sb = 0;
                const int *col = column.data() + x;
                for (int t = 0; t < width; ++t) {
                    const QRgb c = line[col[t]];
                    const float wt = g[size_t(t)];
                    sr += wt * float(qRed(c));
                    sg += wt * float(qGreen(c));
                    sb += wt * float(qBlue(c));
                }
                dst[3 * x] = keep(sr);
                dst[3 * x + 1] = keep(sg);
                dst[3 * x + 2] = keep(sb);
            }
        }
        std::vector<float> sum(size_t(w) * 3);
        for (int y = y0; y < y1; ++y) {
            std::fill(sum.begin(), sum.end(), 0.0f);
            for (int t = 0; t < width; ++t) {
                const float wt = g[size_t(t)];
                const float *line = across.data() + size_t(y - y0 + t) * size_t(w) * 3;
                for (int i = 0; i < w * 3; ++i) sum[size_t(i)] += wt * line[i];
            }
            finish(reinterpret_cast<const QRgb *>(from + y * inStride), sum.data(),
                   reinterpret_cast<QRgb *>(to + y * outStride), w);
        }
    });
}

// ImageMagick's sharpen of radius 0: a square kernel as wide as its Gaussian of `sigma` still
// weighs at 16 bits, the negated Gaussian around twice its sum in the middle, scaled to a
// sum of 1. Worked out as ((2 S + Gc) p - blur) / (S + Gc), with S the Gaussian's sum, Gc
// its middle weight and blur the Gaussian-weighted sum around p, which goes in two passes
// (rows, then columns).
bool sharpenOf(const QImage &src, double sigma, QImage *result)
{
    if (src.isNull() || src.hasAlphaChannel() || sigma <= 1e-12) return false;
    const double a = 1.0 / (2.0 * sigma * sigma), b2 = 1.0 / (2.0 * M_PI * sigma * sigma);
    int width = 5;
    for (;; width += 2) {
        const int j = (width - 1) / 2;
        double sum = 0;
        for (int v = -j; v <= j; ++v)
            for (int u = -j; u <= j; ++u) sum += std::exp(-double(u * u + v * v) * a) * b2;
        const double edge = std::exp(-double(j * j) * a) * b2 / sum;
        if (edge < 1.0 / 65535.0 || edge < 1e-12) break;
        if (width > 201) break;
    }
    width -= 2;
    const int j = (width - 1) / 2;
    // The Gaussian's weights along one side (their product is the square's), its sum and middle.
    std::vector<float> g(static_cast<size_t>(width));
    const double b1 = 1.0 / std::sqrt(2.0 * M_PI * sigma * sigma);
    for (int u = -j; u <= j; ++u) g[size_t(u + j)] = float(std::exp(-double(u * u) * a) * b1);
    double S = 0;
    for (int v = -j; v <= j; ++v)
        for (int u = -j; u <= j; ++u) S += std::exp(-double(u * u + v * v) * a) * b2;
    const double Gc = b2;
    const float self = float((2.0 * S + Gc) / (S + Gc)), other = float(1.0 / (S + Gc));
    const QImage in = src.convertToFormat(QImage::Format_RGB32);
    QImage out = blankLike(in, QImage::Format_RGB32);
    if (in.isNull() || out.isNull()) return false;
    gaussianPasses(
        in, out, g, [](float v) { return v; },
        [&](const QRgb *p, const float *blur, QRgb *o, int w) {
            for (int x = 0; x < w; ++x) {
                const QRgb c = p[x];
                o[x] = qRgb(fromQuantum(257.0f * (self * float(qRed(c)) - other * blur[3 * x])),
                            fromQuantum(257.0f * (self * float(qGreen(c)) - other * blur[3 * x + 1])),
                            fromQuantum(257.0f * (self * float(qBlue(c)) - other * blur[3 * x + 2])));
            }
        });
    *result = out;
    return true;
}

// ImageMagick's blur of radius 0: one row of Gaussian weights, sampled three times finer and
// summed into each place, scaled to a sum of 1, run along the rows and then (turned) along
// the columns, each pass kept at 16 bits a channel between the two; edge pixels repeated.
bool blurOf(const QImage &src, double sigma, QImage *result)
{
    if (src.isNull() || src.hasAlphaChannel() || sigma <= 1e-12) return false;
    // The width: where the Gaussian's last weight no longer counts at 16 bits.
    int width = 5;
    {
        const double a = 1.0 / (2.0 * sigma * sigma), b = 1.0 / (std::sqrt(2.0 * M_PI) * sigma);
        for (;; width += 2) {
            const int j = (width - 1) / 2;
            double sum = 0;
            for (int i = -j; i <= j; ++i) sum += std::exp(-double(i * i) * a) * b;
            const double edge = std::exp(-double(j * j) * a) * b / sum;
            if (edge < 1.0 / 65535.0 || edge < 1e-12 || width > 401) break;
        }
        width -= 2;
    }
    std::vector<double> k(static_cast<size_t>(width), 0.0);
    {
        constexpr int rank = 3;
        const int v = (width * rank - 1) / 2;
        const double s = sigma * rank, a = 1.0 / (2.0 * s * s), b = 1.0 / (std::sqrt(2.0 * M_PI) * s);
        for (int u = -v; u <= v; ++u) k[size_t((u + v) / rank)] += std::exp(-double(u * u) * a) * b;
        double sum = 0;
        for (double x : k) sum += x;
        for (double &x : k) x /= sum;
    }
    std::vector<float> g(k.begin(), k.end());
    const QImage in = src.convertToFormat(QImage::Format_RGB32);
    QImage out = blankLike(in, QImage::Format_RGB32);
    if (in.isNull() || out.isNull()) return false;
    // Each pass is kept at 16 bits a channel.
    auto q16 = [](float v) { return v <= 0.0f ? 0.0f : v >= 65535.0f ? 65535.0f : std::floor(v + 0.5f); };
    gaussianPasses(
        in, out, g, [&](float v) { return q16(257.0f * v); },
        [](const QRgb *, const float *sum, QRgb *o, int w) {
            for (int x = 0; x < w; ++x)
                o[x] =
                    qRgb(fromQuantum(sum[3 * x]), fromQuantum(sum[3 * x + 1]), fromQuantum(sum[3 * x + 2]));
        });
    *result = out;
    return true;
}

// The kernels of the emboss directions and the edge filters.
void embossKernel(int direction, int value, double (&k)[9])
{
    // Neighbour offsets of the eight directions, north first, clockwise: a relief lit from
    // the chosen side, the neighbour on that side minus the one opposite, on top of the
    // picture, as strong as the value asks.
    static constexpr int dirX[8] = {0, 1, 1, 1, 0, -1, -1, -1};
    static constexpr int dirY[8] = {-1, -1, 0, 1, 1, 1, 0, -1};
    const int d = std::clamp(direction, 0, 7);
    const double s = std::clamp(value, 0, 1000) / 250.0;
    std::fill(std::begin(k), std::end(k), 0.0);
    k[4] = 1;
    k[(1 + dirY[d]) * 3 + 1 + dirX[d]] += s;
    k[(1 - dirY[d]) * 3 + 1 - dirX[d]] -= s;
}

const EffectsTable *table()
{
    static const EffectsTable *t = nullptr;
    static std::once_flag once;
    std::call_once(once, [] {
        // The codec module starts ImageMagick; its effects come from the same file.
        const QString module = QStringLiteral("libtw_codecs.so");
        const CodecTable *ct = moduleTable<CodecTable>(module, CodecTableSymbol);
        const EffectsTable *et = moduleTable<EffectsTable>(module, EffectsTableSymbol);
        if (!ct || !et || et->version != EffectsTableVersion) return;
        ct->initialise();
        t = et;
    });
    return t;
}

QImage viaMagick(const QImage &src, MagickEffect e, double a, double b = 0)
{
    if (src.isNull()) return src;
    if (const EffectsTable *t = table()) return t->apply(src, int(e), a, b);
    return src;
}

}  // namespace

bool magickAvailable() { return table() != nullptr; }

QImage brightness(const QImage &src, int value)
{
    uchar lut[256];
    const double shift = std::clamp(value, -1000, 1000) * 255.0 / 1000.0;
    for (int i = 0; i < 256; ++i) lut[i] = uchar(std::clamp(int(std::lround(i + shift)), 0, 255));
    return mapChannels(src, lut);
}

QImage contrast(const QImage &src, int value)
{
    uchar lut[256];
    const double v = std::clamp(value, -1000, 1000) / 1000.0;
    // Above 0 the slope grows without end towards 1000; below it flattens to gray at -1000.
    const double slope = v >= 0 ? (v >= 0.999 ? 255.0 : 1.0 / (1.0 - v)) : 1.0 + v;
    for (int i = 0; i < 256; ++i)
        lut[i] = uchar(std::clamp(int(std::lround((i - 127.5) * slope + 127.5)), 0, 255));
    return mapChannels(src, lut);
}

QImage gamma(const QImage &src, int hundredths)
{
    uchar lut[256];
    const double g = std::clamp(hundredths, 1, 499) / 100.0;
    for (int i = 0; i < 256; ++i)
        lut[i] = uchar(std::clamp(int(std::lround(255.0 * std::pow(i / 255.0, 1.0 / g))), 0, 255));
    return mapChannels(src, lut);
}

QImage invert(const QImage &src)
{
    QImage out = argb(src);
    out.invertPixels(QImage::InvertRgb);
    return out;
}

QImage grayScale(const QImage &src)
{
    return src.convertToFormat(QImage::Format_Grayscale8).convertToFormat(QImage::Format_RGB32);
}

QImage mosaic(const QImage &src, int tile)
{
    tile = std::max(1, tile);
    if (src.isNull() || tile == 1) return argb(src);
    QImage out = argb(src);
    const int w = out.width(), h = out.height();
    for (int ty = 0; ty < h; ty += tile) {
        for (int tx = 0; tx < w; tx += tile) {
            const int x1 = std::min(w, tx + tile), y1 = std::min(h, ty + tile);
            qint64 r = 0, g = 0, b = 0, a = 0, n = 0;
            for (int y = ty; y < y1; ++y) {
                const auto *p = reinterpret_cast<const QRgb *>(out.constScanLine(y));
                for (int x = tx; x < x1; ++x, ++n) {
                    r += qRed(p[x]);
                    g += qGreen(p[x]);
                    b += qBlue(p[x]);
                    a += qAlpha(p[x]);
                }
            }
            const QRgb c = qRgba(int(r / n), int(g / n), int(b / n), int(a / n));
            for (int y = ty; y < y1; ++y) {
                auto *p = reinterpret_cast<QRgb *>(out.scanLine(y));
                std::fill(p + tx, p + x1, c);
            }
        }
    }
    return out;
}

QImage halfTone(const QImage &src, int angleDegrees)
{
    if (src.isNull()) return src;
    const QImage gray = src.convertToFormat(QImage::Format_Grayscale8);
    QImage out(src.size(), QImage::Format_RGB32);
    const double rad = angleDegrees * M_PI / 180.0, c = std::cos(rad), s = std::sin(rad);
    constexpr double cell = 6.0;
    for (int y = 0; y < out.height(); ++y) {
        const uchar *g = gray.constScanLine(y);
        auto *p = reinterpret_cast<QRgb *>(out.scanLine(y));
        for (int x = 0; x < out.width(); ++x) {
            // Place in the turned screen's cell, -0.5..0.5 each way.
            const double u = (x * c + y * s) / cell, v = (-x * s + y * c) / cell;
            const double du = u - std::floor(u) - 0.5, dv = v - std::floor(v) - 0.5;
            const double dot = (du * du + dv * dv) * 2.0;  // 0 at the centre, 1 at a corner
            const double ink = 1.0 - g[x] / 255.0;  // the dot covers this much
            p[x] = dot < ink ? qRgb(0, 0, 0) : qRgb(255, 255, 255);
        }
    }
    return out;
}

QImage flip(const QImage &src) { return src.mirrored(false, true); }
QImage reverse(const QImage &src) { return src.mirrored(true, false); }

QImage rotate(const QImage &src, int hundredths, QRgb back)
{
    if (src.isNull()) return src;
    QImage out(src.size(), src.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    out.fill(QColor::fromRgb(back));
    if (hundredths % 36000 == 0) {
        QPainter(&out).drawImage(0, 0, src);
        return out;
    }
    QPainter p(&out);
    if (hundredths % 9000 == 0) {
        // Quarter turns move whole pixels: turned exactly, then centred on the background.
        const QImage turned = src.transformed(QTransform().rotate(hundredths / 100));
        p.drawImage((out.width() - turned.width()) / 2, (out.height() - turned.height()) / 2, turned);
        return out;
    }
    p.setRenderHint(QPainter::SmoothPixmapTransform, true);
    p.translate(src.width() / 2.0, src.height() / 2.0);
    p.rotate(hundredths / 100.0);
    p.translate(-src.width() / 2.0, -src.height() / 2.0);
    p.drawImage(0, 0, src);
    return out;
}

QImage posterize(const QImage &src, int levels)
{
    // Each channel to the nearest of `levels` evenly spaced values.
    const int n = std::clamp(levels, 2, 256) - 1;
    uchar lut[256];
    for (int i = 0; i < 256; ++i) {
        const double step = std::floor(i / 255.0 * n + 0.5);
        lut[i] = fromQuantum(double(unsigned(65535.0 * step / n)));
    }
    return mapChannels(src, lut);
}
QImage median(const QImage &src, int size)
{
    QImage out;
    return medianOf(src, size, &out) ? out : magick::median(src, size);
}
QImage sharpen(const QImage &src, int value)
{
    if (value == 0) return src;
    QImage out;
    const bool done = value > 0 ? sharpenOf(src, value / 250.0, &out) : blurOf(src, -value / 250.0, &out);
    return done ? out : magick::sharpen(src, value);
}
QImage noise(const QImage &src, int value, int channel)
{
    return viaMagick(src, MagickEffect::Noise, value, channel);
}
QImage emboss(const QImage &src, int direction, int value)
{
    double k[9];
    embossKernel(direction, value, k);
    QImage out;
    return convolve3(src, k, &out) ? out : magick::emboss(src, direction, value);
}
QImage histogramContrast(const QImage &src, int value)
{
    return viaMagick(src, MagickEffect::HistContrast, value);
}
QImage hue(const QImage &src, int degrees)
{
    return modulateHsl(src, 100.0, 100.0 + degrees * 100.0 / 180.0);
}
QImage saturation(const QImage &src, int value)
{
    return modulateHsl(src, std::max(0.0, 100.0 + value / 10.0), 100.0);
}
QImage stretchIntensity(const QImage &src) { return viaMagick(src, MagickEffect::StretchIntensity, 0); }
QImage edgeFilter(const QImage &src, int code)
{
    double k[9];
    if (!edgeKernel(code, k)) return src;
    QImage out;
    return convolve3(src, k, &out) ? out : magick::edgeFilter(src, code);
}
QImage colourResolution(const QImage &src, int bitsPerPixel, int colours)
{
    return viaMagick(src, MagickEffect::ColourResolution, bitsPerPixel, colours);
}

namespace magick {
QImage posterize(const QImage &src, int levels) { return viaMagick(src, MagickEffect::Posterize, levels); }
QImage emboss(const QImage &src, int direction, int value)
{
    return viaMagick(src, MagickEffect::Emboss, value, direction);
}
QImage hue(const QImage &src, int degrees) { return viaMagick(src, MagickEffect::Hue, degrees); }
QImage saturation(const QImage &src, int value) { return viaMagick(src, MagickEffect::Saturation, value); }
QImage edgeFilter(const QImage &src, int code) { return viaMagick(src, MagickEffect::EdgeFilter, code); }
QImage median(const QImage &src, int size) { return viaMagick(src, MagickEffect::Median, size); }
QImage sharpen(const QImage &src, int value)
{
    return value == 0 ? src : viaMagick(src, MagickEffect::Sharpen, value);
}
}  // namespace magick

}  // namespace tw::effects
