// Writing pictures to files: the format code of an extension, the quality and bits-per-pixel
// rules of each format, and the one writer behind every save and conversion. A write goes to
// a temporary file in the target folder that is renamed over the target only when it is
// complete, so a full disk or a failing encoder leaves the old file as it was. The EXIF block
// and ICC profile of the file the picture came from go with it where the format holds them.
#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QString>

namespace tw {

// The format code for an upper-case extension; 0 for an extension the table does not hold.
int GetFormatCode(const QString &extension);

// The stored JPEG quality (1 finest .. 99 smallest, the slider of the options) as the
// encoder's percentage (100 finest).
int jpegPercentOfQuality(int quality);

// The encoder (ImageMagick's coder name) behind a format code; "" when nothing here writes it.
QString encoderOfFormat(int format);

// Whether a format stores pictures of that many bits per pixel (0 counts as 24).
bool formatTakesBits(int format, int bitsPerPixel);

// Every extension of the picture rows that a save can write, in catalogue order.
QStringList writableExtensions();

// Writes the frames (one page each) to `path` in format `format` with `bitsPerPixel` and
// `quality` (the stored JPEG quality; other formats ignore it); format 0 writes what the
// target name's extension calls for, where anything here writes it. `metadataFrom` names the
// file whose EXIF and ICC profile go with the picture ("" for none). 0 or an imaging status.
int writePictureFile(const QList<QImage> &frames, const QString &path, int format, int bitsPerPixel,
                     int quality, const QString &metadataFrom, QString *detail = nullptr);

// The APP1 (EXIF) and APP2 (ICC profile) segments of a JPEG file's header, as they stand.
QByteArray jpegMetadataSegments(const QByteArray &jpeg);
// A JPEG with `segments` put in right after its start (behind a JFIF APP0 segment).
QByteArray insertJpegSegments(const QByteArray &jpeg, const QByteArray &segments);

}  // namespace tw
