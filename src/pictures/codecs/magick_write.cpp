// Encoding through ImageMagick with the original's metadata: the EXIF block and the ICC
// profile of the file a picture came from go with it into any format that holds them.
#include "pictures/codecs/magick_write.h"

#include <Magick++.h>

#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <cstring>

namespace tw::magick {

namespace {

std::string localName(const QString &path)
{
    return QFile::encodeName(QFileInfo(path).absoluteFilePath()).toStdString();
}

Magick::Image imageOf(const QImage &src)
{
    const QImage q = src.convertToFormat(QImage::Format_ARGB32);
    Magick::Image img(size_t(q.width()), size_t(q.height()), "BGRA", Magick::CharPixel, q.constBits());
    img.matte(src.hasAlphaChannel());
    return img;
}

// Reduces a picture to the bits per pixel asked for, as the format's encoder stores them.
void applyBits(Magick::Image &img, int bitsPerPixel)
{
    switch (bitsPerPixel) {
    case 1:
        img.type(MagickCore::BilevelType);
        break;
    case 4:
        img.quantizeColors(16);
        img.quantize();
        img.type(MagickCore::PaletteType);
        break;
    case 8:
        img.quantizeColors(256);
        img.quantize();
        img.type(MagickCore::PaletteType);
        break;
    case 16:
    case 24:
        img.matte(false);
        img.type(MagickCore::TrueColorType);
        img.depth(8);
        break;
    case 32:
        img.type(MagickCore::TrueColorMatteType);
        img.depth(8);
        break;
    default:
        break;
    }
}

// ImageMagick writes a PNG's EXIF block as an eXIf chunk but does not read that chunk back:
// the block, with the "Exif" header a JPEG gives it, straight from the file.
QByteArray pngExifBlock(const QString &path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) return QByteArray();
    if (f.read(8) != QByteArray("\x89PNG\r\n\x1a\n", 8)) return QByteArray();
    for (;;) {
        const QByteArray head = f.read(8);
        if (head.size() < 8) return QByteArray();
        const quint32 len = (quint32(uchar(head[0])) << 24) | (quint32(uchar(head[1])) << 16)
            | (quint32(uchar(head[2])) << 8) | quint32(uchar(head[3]));
        const QByteArray type = head.mid(4, 4);
        if (type == "IEND" || len > 64u * 1024 * 1024) return QByteArray();
        if (type == "eXIf") {
            const QByteArray data = f.read(len);
            return data.size() == qsizetype(len) ? QByteArray("Exif\0\0", 6) + data : QByteArray();
        }
        if (!f.seek(f.pos() + qint64(len) + 4)) return QByteArray();
    }
}

}  // namespace

Status readProfiles(const QString &path, QByteArray *exif, QByteArray *icc)
{
    initialise();
    if (exif) exif->clear();
    if (icc) icc->clear();
    if (!QFileInfo(path).isFile()) return Status::NoSuchFile;
    try {
        Magick::Image img;
        img.quiet(true);
        img.ping(localName(path) + "[0]");
        const Magick::Blob e = img.profile("exif");
        const Magick::Blob c = img.profile("icc");
        if (exif && e.length() > 0)
            *exif = QByteArray(static_cast<const char *>(e.data()), qsizetype(e.length()));
        if (icc && c.length() > 0)
            *icc = QByteArray(static_cast<const char *>(c.data()), qsizetype(c.length()));
        return Status::Ok;
    } catch (const Magick::Exception &) {
        return Status::NotAPicture;
    }
}

Status exifFacts(const QString &path, QStringList *names, QStringList *values)
{
    initialise();
    names->clear();
    values->clear();
    if (!QFileInfo(path).isFile()) return Status::NoSuchFile;
    try {
        Magick::Image img;
        img.quiet(true);
        img.ping(localName(path) + "[0]");
        if (img.magick() == "PNG" && img.profile("exif").length() == 0) {
            const QByteArray block = pngExifBlock(path);
            if (!block.isEmpty()) img.profile("exif", Magick::Blob(block.constData(), size_t(block.size())));
        }
        MagickCore::Image *im = img.image();
        // Asking for every EXIF property makes ImageMagick read them out of the profile.
        (void)MagickCore::GetImageProperty(im, "exif:*");
        MagickCore::ResetImagePropertyIterator(im);
        while (const char *key = MagickCore::GetNextImageProperty(im)) {
            if (std::strncmp(key, "exif:", 5) != 0) continue;
            const char *v = MagickCore::GetImageProperty(im, key);
            names->append(QString::fromUtf8(key + 5));
            values->append(v ? QString::fromUtf8(v).trimmed() : QString());
        }
        return Status::Ok;
    } catch (const Magick::Exception &) {
        return Status::NotAPicture;
    }
}

Status encodeWithProfiles(const QList<QImage> &frames, const QString &coder, int bitsPerPixel, int quality,
                          const QByteArray &exif, const QByteArray &icc, QByteArray *out, QString *message)
{
    initialise();
    if (frames.isEmpty()) return Status::WriteFailed;
    try {
        Magick::CoderInfo info(coder.toStdString());
        if (!info.isWritable()) {
            if (message) *message = QStringLiteral("no encoder for ") + coder;
            return Status::NoCoder;
        }
    } catch (const Magick::Exception &) {
        if (message) *message = QStringLiteral("no encoder for ") + coder;
        return Status::NoCoder;
    }
    try {
        std::list<Magick::Image> images;
        for (const QImage &f : frames) {
            Magick::Image img = imageOf(f);
            img.magick(coder.toStdString());
            if (quality > 0) img.quality(size_t(quality));
            applyBits(img, bitsPerPixel);
            if (!exif.isEmpty()) img.profile("exif", Magick::Blob(exif.constData(), size_t(exif.size())));
            if (!icc.isEmpty()) img.profile("icc", Magick::Blob(icc.constData(), size_t(icc.size())));
            images.push_back(img);
        }
        // Encoded in memory: the caller writes the bytes to a temporary file beside the target
        // and renames it over the target, so a failing encoder never touches the old file.
        Magick::Blob blob;
        Magick::writeImages(images.begin(), images.end(), &blob, true);
        out->clear();
        out->append(static_cast<const char *>(blob.data()), qsizetype(blob.length()));
    } catch (const Magick::Warning &w) {
        if (message) *message = QString::fromLocal8Bit(w.what());
    } catch (const Magick::Exception &e) {
        if (message) *message = QString::fromLocal8Bit(e.what());
        return Status::WriteFailed;
    } catch (const std::exception &e) {
        if (message) *message = QString::fromLocal8Bit(e.what());
        return Status::WriteFailed;
    }
    return out->isEmpty() ? Status::WriteFailed : Status::Ok;
}

}  // namespace tw::magick
