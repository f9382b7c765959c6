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
    magick::Status (*write)(const QList<QImage> &, const QString &, const QString &, int, int, QString *);
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

constexpr int CodecTableVersion = 3;
// The name of the function the module exports.
constexpr const char *CodecTableSymbol = "tw_codec_table";

}  // namespace tw
