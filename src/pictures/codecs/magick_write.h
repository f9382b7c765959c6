// Encoding that keeps the original's metadata (EXIF, ICC profile) where the format holds it.
#pragma once

#include "pictures/codecs/magick_codec.h"

#include <QByteArray>
#include <QStringList>

namespace tw::magick {

// The EXIF block and ICC profile of a file's first page; empty where it has none.
Status readProfiles(const QString &path, QByteArray *exif, QByteArray *icc);
// The EXIF facts of a file's first page, as names ("Make", "DateTime") and their values.
Status exifFacts(const QString &path, QStringList *names, QStringList *values);
// Encodes `frames` (one page each) into `out` with the coder named, reduced to bitsPerPixel (0 keeps
// what the encoder chooses), at quality 1..100 (0 the encoder's default), carrying the
// EXIF block and ICC profile given.
Status encodeWithProfiles(const QList<QImage> &frames, const QString &coder, int bitsPerPixel, int quality,
                          const QByteArray &exif, const QByteArray &icc, QByteArray *out, QString *message);

}  // namespace tw::magick
