#include "pictures/image_effects.h"

#include "pictures/codecs/codec_table.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibrary>
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

// Every colour channel through one table.
QImage mapChannels(const QImage &src, const uchar (&lut)[256])
{
    QImage out = argb(src);
    for (int y = 0; y < out.height(); ++y) {
        auto *p = reinterpret_cast<QRgb *>(out.scanLine(y));
        for (int x = 0; x < out.width(); ++x) {
            const QRgb c = p[x];
            p[x] = qRgba(lut[qRed(c)], lut[qGreen(c)], lut[qBlue(c)], qAlpha(c));
        }
    }
    return out;
}

const EffectsTable *table()
{
    static const EffectsTable *t = nullptr;
    static std::once_flag once;
    std::call_once(once, [] {
        // The codec module starts ImageMagick; its effects come from the same file.
        const QString exe = QCoreApplication::instance() ? QCoreApplication::applicationDirPath() : QString();
        if (exe.isEmpty()) return;
        for (const QString &path : {exe + QStringLiteral("/../lib/libtw_codecs.so"),
                                    exe + QStringLiteral("/" TW_CODEC_MODULE_FROM_BIN "/libtw_codecs.so")}) {
            if (!QFileInfo::exists(path)) continue;
            QLibrary lib(QDir::cleanPath(path));
            lib.setLoadHints(QLibrary::PreventUnloadHint);
            using CodecEntry = const CodecTable *(*)();
            using Entry = const EffectsTable *(*)();
            auto codecs = reinterpret_cast<CodecEntry>(lib.resolve(CodecTableSymbol));
            auto entry = reinterpret_cast<Entry>(lib.resolve(EffectsTableSymbol));
            if (!codecs || !entry) continue;
            const CodecTable *ct = codecs();
            const EffectsTable *et = entry();
            if (!ct || !et || et->version != EffectsTableVersion) continue;
            ct->initialise();
            t = et;
            return;
        }
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

QImage posterize(const QImage &src, int levels) { return viaMagick(src, MagickEffect::Posterize, levels); }
QImage median(const QImage &src, int size) { return viaMagick(src, MagickEffect::Median, size); }
QImage sharpen(const QImage &src, int value)
{
    return value == 0 ? src : viaMagick(src, MagickEffect::Sharpen, value);
}
QImage noise(const QImage &src, int value, int channel)
{
    return viaMagick(src, MagickEffect::Noise, value, channel);
}
QImage emboss(const QImage &src, int direction, int value)
{
    return viaMagick(src, MagickEffect::Emboss, value, direction);
}
QImage histogramContrast(const QImage &src, int value)
{
    return viaMagick(src, MagickEffect::HistContrast, value);
}
QImage hue(const QImage &src, int degrees) { return viaMagick(src, MagickEffect::Hue, degrees); }
QImage saturation(const QImage &src, int value) { return viaMagick(src, MagickEffect::Saturation, value); }
QImage stretchIntensity(const QImage &src) { return viaMagick(src, MagickEffect::StretchIntensity, 0); }
QImage edgeFilter(const QImage &src, int code) { return viaMagick(src, MagickEffect::EdgeFilter, code); }
QImage colourResolution(const QImage &src, int bitsPerPixel, int colours)
{
    return viaMagick(src, MagickEffect::ColourResolution, bitsPerPixel, colours);
}

}  // namespace tw::effects
