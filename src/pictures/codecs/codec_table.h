// The codec module's entry table. ImageMagick and FFmpeg bring well over a hundred shared
// libraries with them; loading them only when the first picture needs them keeps the
// program's start as light as a plain Qt program's.
#pragma once

#include "pictures/codecs/magick_codec.h"
#include "pictures/codecs/magick_write.h"
#include "pictures/frame_decoders.h"

namespace tw {

struct CodecTable {
    int version;
    void (*initialise)();
    magick::Status (*read)(const QString &, int, bool, magick::Decoded *, QString *, const QString &);
    magick::Status (*readBlob)(const QByteArray &, const QString &, magick::Decoded *, QString *);
    magick::Status (*ping)(const QString &, int, magick::Facts *, QString *);
    bool (*canWrite)(const QString &);
    bool (*canRead)(const QString &);
    QImage (*resample)(const QImage &, int, int);
    QImage (*brightnessContrast)(const QImage &, double, double);
    int64_t (*areaLimit)();
    int64_t (*sideLimit)();
    FrameDecodeStatus (*decodeWithAv)(const QString &, bool, int64_t, DecodedFrames *, QString *);
    // Saving with the original's metadata.
    magick::Status (*readProfiles)(const QString &, QByteArray *, QByteArray *);
    magick::Status (*encodeWithProfiles)(const QList<QImage> &, const QString &, int, int, const QByteArray &,
                                         const QByteArray &, QByteArray *, QString *);
    magick::Status (*exifFacts)(const QString &, QStringList *, QStringList *);
    void (*setPixelAllocator)(magick::PixelAllocator);
};

constexpr int CodecTableVersion = 4;
// The name of the function the module exports.
constexpr const char *CodecTableSymbol = "tw_codec_table";

}  // namespace tw

namespace tw {

// The picture editors' pixel operations that ImageMagick does, exported by the codec module
// under a symbol of their own (pictures/codecs/magick_effects.cpp).
enum class MagickEffect {
    Posterize,      // a: levels per channel
    Median,         // a: window size
    Sharpen,        // a: -1000..1000, below 0 blurs
    Noise,          // a: 0..1000 strength, b: channel (0 all)
    Emboss,         // a: 0..1000 strength, b: direction 0 north .. 7 north-west
    HalfTone,       // a: screen angle in degrees
    HistContrast,   // a: -1000..1000
    Hue,            // a: -360..360 degrees
    Saturation,     // a: -1000..1000
    StretchIntensity,
    EdgeFilter,     // a: filter code (22 to 28)
    ColourResolution,  // a: bits per pixel, b: colours (0 for all that the bits hold)
};

struct EffectsTable {
    int version;
    QImage (*apply)(const QImage &src, int effect, double a, double b);
};

constexpr int EffectsTableVersion = 1;
constexpr const char *EffectsTableSymbol = "tw_effects_table";

}  // namespace tw
