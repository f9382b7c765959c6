#include "pictures/picture_saving.h"

#include "core/catalogue.h"
#include "pictures/codecs/magick_write.h"
#include "pictures/imaging_errors.h"

#include <QBuffer>
#include <QColorSpace>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QImageWriter>
#include <QPainter>
#include <QSaveFile>
#include <QSet>

namespace tw {

namespace {

struct FormatRule {
    QString encoder;  // ImageMagick's coder name, "" when nothing here writes the format
    QList<int> bits;  // bits per pixel the format stores
};

const QHash<int, FormatRule> &formatRules()
{
    static const QHash<int, FormatRule> rules{
        {1, {QStringLiteral("PCX"), {1, 4, 8, 24}}},
        {3, {QStringLiteral("TIFF"), {1, 4, 8, 16, 24, 32, 48, 64}}},
        {4, {QStringLiteral("TGA"), {8, 16, 24, 32}}},
        {6, {QStringLiteral("BMP3"), {1, 4, 8, 16, 24, 32}}},
        {10, {QStringLiteral("JPEG"), {1, 4, 8, 24, 32}}},
        {16, {QStringLiteral("EPS"), {1, 8, 24, 32}}},
        {55, {QStringLiteral("SUN"), {1, 8, 24, 32}}},
        {56, {QStringLiteral("PICT"), {8, 24, 32}}},
        {75, {QStringLiteral("PNG"), {1, 4, 8, 16, 24, 32, 48, 64}}},
        {76, {QStringLiteral("PSD"), {1, 8, 16, 24, 32, 48, 64}}},
        {91, {QStringLiteral("ICO"), {1, 4, 8, 24, 32}}},
        {92, {QStringLiteral("CUR"), {1, 4, 8, 24, 32}}},
        {109, {QStringLiteral("XPM"), {1, 4, 8, 24, 32}}},
        {113, {QStringLiteral("XWD"), {1, 8, 24, 32}}},
        {115, {QStringLiteral("JBIG"), {1}}},
        {129, {QStringLiteral("CALS"), {1}}},
        {142, {QStringLiteral("SGI"), {8, 24, 32, 48, 64}}},
    };
    return rules;
}

// Formats that the format table has no code for, written when the target's extension names
// them (a save passes code 0 for them); GIF keeps at most 256 colours of any picture.
const QHash<QString, FormatRule> &extensionRules()
{
    static const QHash<QString, FormatRule> rules{
        {QStringLiteral("JPEG"), {QStringLiteral("JPEG"), {1, 4, 8, 24, 32}}},
        {QStringLiteral("GIF"), {QStringLiteral("GIF"), {1, 4, 8, 24, 32}}},
    };
    return rules;
}

bool isJpeg(const QByteArray &b) { return b.size() > 3 && uchar(b[0]) == 0xFF && uchar(b[1]) == 0xD8; }

// Walks the marker segments of a JPEG header up to the start of the scan.
template <typename F> void forEachSegment(const QByteArray &jpeg, F f)
{
    if (!isJpeg(jpeg)) return;
    qsizetype i = 2;
    while (i + 4 <= jpeg.size()) {
        if (uchar(jpeg[i]) != 0xFF) return;
        const uchar marker = uchar(jpeg[i + 1]);
        if (marker == 0xD8 || marker == 0x01 || (marker >= 0xD0 && marker <= 0xD7)) {
            i += 2;
            continue;
        }
        if (marker == 0xDA || marker == 0xD9) return;
        const int len = (uchar(jpeg[i + 2]) << 8) | uchar(jpeg[i + 3]);
        if (len < 2 || i + 2 + len > jpeg.size()) return;
        if (!f(marker, i, qsizetype(len) + 2)) return;
        i += 2 + len;
    }
}

QByteArray segment(uchar marker, const QByteArray &payload)
{
    QByteArray s;
    const int len = int(payload.size()) + 2;
    s.append(char(0xFF)).append(char(marker)).append(char(len >> 8)).append(char(len & 0xFF));
    s.append(payload);
    return s;
}

// APP1 and APP2 segments carrying an EXIF block and an ICC profile (split into pieces of
// the size a segment holds).
QByteArray segmentsOf(const QByteArray &exif, const QByteArray &icc)
{
    QByteArray out;
    if (!exif.isEmpty() && exif.size() < 65000) {
        const QByteArray head("Exif\0\0", 6);
        out += segment(0xE1, exif.startsWith(head) ? exif : head + exif);
    }
    if (!icc.isEmpty()) {
        const qsizetype piece = 65519;
        const int count = int((icc.size() + piece - 1) / piece);
        if (count < 256)
            for (int n = 0; n < count; ++n) {
                QByteArray p("ICC_PROFILE\0", 12);
                p.append(char(n + 1)).append(char(count));
                p.append(icc.mid(n * piece, piece));
                out += segment(0xE2, p);
            }
    }
    return out;
}

// The EXIF block and ICC profile of a JPEG file's own segments.
void jpegProfiles(const QByteArray &jpeg, QByteArray *exif, QByteArray *icc)
{
    QList<QPair<int, QByteArray>> iccPieces;
    forEachSegment(jpeg, [&](uchar marker, qsizetype at, qsizetype size) {
        const QByteArray payload = jpeg.mid(at + 4, size - 4);
        if (marker == 0xE1 && payload.startsWith(QByteArray("Exif\0\0", 6)) && exif->isEmpty())
            *exif = payload;
        if (marker == 0xE2 && payload.startsWith(QByteArray("ICC_PROFILE\0", 12)) && payload.size() > 14)
            iccPieces.append({uchar(payload[12]), payload.mid(14)});
        return true;
    });
    std::sort(iccPieces.begin(), iccPieces.end(),
              [](const auto &a, const auto &b) { return a.first < b.first; });
    for (const auto &p : iccPieces) icc->append(p.second);
}

int statusOfMagick(magick::Status s)
{
    switch (s) {
    case magick::Status::Ok:
        return ImagingOk;
    case magick::Status::NoCoder:
        return ImagingFormatNotAvailable;
    case magick::Status::TooLarge:
        return ImagingNoMemory;
    default:
        return ImagingWriteError;
    }
}

// The frame as the format stores it at that depth, for Qt's encoders. A JPEG holds grey or
// colour only: a picture of 8 bits or fewer is stored grey when it is grey, else in colour,
// and transparency goes (onto white).
QImage jpegFrame(const QImage &img, int bits)
{
    if (bits <= 8 && img.allGray()) return img.convertToFormat(QImage::Format_Grayscale8);
    if (!img.hasAlphaChannel()) return img.convertToFormat(QImage::Format_RGB32);
    QImage flat(img.size(), QImage::Format_RGB32);
    flat.fill(Qt::white);
    QPainter p(&flat);
    p.drawImage(0, 0, img);
    p.end();
    return flat;
}

QImage atDepth(const QImage &img, int bits)
{
    if (bits == 8) return img.convertToFormat(QImage::Format_Grayscale8);
    if (bits == 32 && img.hasAlphaChannel()) return img.convertToFormat(QImage::Format_ARGB32);
    return img.convertToFormat(QImage::Format_RGB32);
}

}  // namespace

int GetFormatCode(const QString &extension)
{
    static const QHash<QString, int> codes{
        {QStringLiteral("CMP"), 5},   {QStringLiteral("JPG"), 10},  {QStringLiteral("JPE"), 10},
        {QStringLiteral("TIFF"), 3},  {QStringLiteral("TIF"), 3},   {QStringLiteral("MPT"), 3},
        {QStringLiteral("BMP"), 6},   {QStringLiteral("ICO"), 91},  {QStringLiteral("CUR"), 92},
        {QStringLiteral("PCX"), 1},   {QStringLiteral("DCX"), 1},   {QStringLiteral("PCD"), 57},
        {QStringLiteral("FPX"), 80},  {QStringLiteral("DIC"), 90},  {QStringLiteral("WMF"), 15},
        {QStringLiteral("EMF"), 116}, {QStringLiteral("DXF"), 58},  {QStringLiteral("FAX"), 68},
        {QStringLiteral("XPM"), 109}, {QStringLiteral("IFF"), 112}, {QStringLiteral("PBM"), 75},
        {QStringLiteral("CUT"), 108}, {QStringLiteral("PSD"), 76},  {QStringLiteral("ICA"), 73},
        {QStringLiteral("AWD"), 99},  {QStringLiteral("PNG"), 75},  {QStringLiteral("TGA"), 4},
        {QStringLiteral("EPS"), 16},  {QStringLiteral("JBG"), 115}, {QStringLiteral("RAS"), 55},
        {QStringLiteral("WPG"), 54},  {QStringLiteral("PCT"), 56},  {QStringLiteral("CLP"), 114},
        {QStringLiteral("XWD"), 113}, {QStringLiteral("FLC"), 134}, {QStringLiteral("ANI"), 119},
        {QStringLiteral("DRW"), 136}, {QStringLiteral("CGM"), 62},  {QStringLiteral("PLT"), 137},
        {QStringLiteral("DGN"), 124}, {QStringLiteral("SGI"), 142}, {QStringLiteral("MAC"), 51},
        {QStringLiteral("IMG"), 52},  {QStringLiteral("MSP"), 53},  {QStringLiteral("CAL"), 129},
        {QStringLiteral("FLI"), 61},
    };
    return codes.value(extension, 0);
}

int jpegPercentOfQuality(int quality)
{
    // 1 .. 99 as stored; the old scale ran on to 255 with the same sense.
    if (quality <= 0) quality = 9;
    if (quality <= 99) return std::clamp(100 - quality, 1, 100);
    return std::clamp(100 - quality * 100 / 255, 1, 100);
}

QString encoderOfFormat(int format) { return formatRules().value(format).encoder; }

bool formatTakesBits(int format, int bitsPerPixel)
{
    const auto it = formatRules().constFind(format);
    if (it == formatRules().constEnd()) return false;
    return it->bits.contains(bitsPerPixel == 0 ? 24 : bitsPerPixel);
}

QStringList writableExtensions()
{
    QStringList out;
    for (int row = PictureFirst; row <= PictureLast; ++row) {
        const QString ext = fileExtLiterals()[size_t(row)].trimmed();
        const int code = GetFormatCode(ext);
        if ((code != 0 && !encoderOfFormat(code).isEmpty()) || extensionRules().contains(ext)) out << ext;
    }
    return out;
}

QByteArray jpegMetadataSegments(const QByteArray &jpeg)
{
    QByteArray out;
    forEachSegment(jpeg, [&](uchar marker, qsizetype at, qsizetype size) {
        if (marker == 0xE1 || marker == 0xE2) out += jpeg.mid(at, size);
        return true;
    });
    return out;
}

QByteArray insertJpegSegments(const QByteArray &jpeg, const QByteArray &segments)
{
    if (!isJpeg(jpeg) || segments.isEmpty()) return jpeg;
    qsizetype at = 2;
    // Behind the JFIF marker when there is one, which readers expect first.
    if (jpeg.size() > 6 && uchar(jpeg[2]) == 0xFF && uchar(jpeg[3]) == 0xE0)
        at = 4 + ((uchar(jpeg[4]) << 8) | uchar(jpeg[5]));
    if (at > jpeg.size()) return jpeg;
    return jpeg.left(at) + segments + jpeg.mid(at);
}

int writePictureFile(const QList<QImage> &frames, const QString &path, int format, int bitsPerPixel,
                     int quality, const QString &metadataFrom, QString *detail)
{
    QString scratch;
    QString &why = detail ? *detail : scratch;
    why.clear();
    if (frames.isEmpty() || frames.first().isNull()) return ImagingInvalidBitmap;
    if (path.trimmed().isEmpty()) return ImagingInvalidFilename;

    // The encoder: by the format code, or for code 0 by the target name's extension.
    FormatRule rule = formatRules().value(format);
    if (format == 0) {
        const QString ext = GetFileExt(path);
        rule = extensionRules().contains(ext) ? extensionRules().value(ext)
                                              : formatRules().value(GetFormatCode(ext));
    }
    if (rule.encoder.isEmpty()) return ImagingFormatNotAvailable;
    const int bits = bitsPerPixel == 0 ? 24 : bitsPerPixel;
    if (!rule.bits.contains(bits)) return ImagingInvalidBitsPerPixel;
    const QString coder = rule.encoder;

    // The original's metadata.
    QByteArray exif, icc, sourceSegments;
    bool sourceIsJpeg = false;
    if (!metadataFrom.isEmpty() && QFileInfo(metadataFrom).isFile()) {
        QFile src(metadataFrom);
        if (src.open(QIODevice::ReadOnly)) {
            const QByteArray head = src.read(2);
            sourceIsJpeg = isJpeg(head + QByteArray(2, 0));
            if (sourceIsJpeg) {
                // The header alone: the segments stand before the picture data.
                src.seek(0);
                const QByteArray start = src.read(512 * 1024);
                jpegProfiles(start, &exif, &icc);
                sourceSegments = jpegMetadataSegments(start);
            }
        }
        if (!sourceIsJpeg) magick::readProfiles(metadataFrom, &exif, &icc);
    }

    // Written beside the target under a temporary name and renamed over it only when it is
    // complete: until then the old file stays as it is.
    QSaveFile out(path);
    out.setDirectWriteFallback(false);
    auto openOut = [&] {
        if (out.isOpen()) return true;
        if (out.open(QIODevice::WriteOnly)) return true;
        why = out.errorString();
        return false;
    };
    auto finish = [&](const QByteArray &bytes) {
        if (!openOut()) return int(ImagingCannotOpen);
        if (!bytes.isEmpty() && out.write(bytes) != bytes.size()) {
            why = out.errorString();
            out.cancelWriting();
            return int(ImagingWriteError);
        }
        if (!out.commit()) {
            why = out.errorString();
            return int(ImagingWriteError);
        }
        return int(ImagingOk);
    };

    const bool single = frames.size() == 1;
    if (single && coder == QLatin1String("JPEG")) {
        // libjpeg-turbo through Qt, then the original's segments put back in.
        QImage img = jpegFrame(frames.first(), bits);
        img.setColorSpace(QColorSpace());
        const QByteArray segments = sourceIsJpeg ? sourceSegments : segmentsOf(exif, icc);
        QByteArray bytes;
        QBuffer buf(&bytes);
        if (segments.isEmpty()) {
            if (!openOut()) return ImagingCannotOpen;
        } else {
            buf.open(QIODevice::WriteOnly);
        }
        QImageWriter w(segments.isEmpty() ? static_cast<QIODevice *>(&out) : &buf, "jpeg");
        w.setQuality(jpegPercentOfQuality(quality));
        if (!w.write(img)) {
            why = w.errorString();
            if (out.isOpen()) out.cancelWriting();
            return ImagingWriteError;
        }
        return finish(segments.isEmpty() ? QByteArray() : insertJpegSegments(bytes, segments));
    }
    if (single && (coder == QLatin1String("PNG") || coder == QLatin1String("TIFF")) && exif.isEmpty()
        && (bits == 24 || bits == 32 || (bits == 8 && frames.first().allGray()))) {
        // Qt's writers are the fastest here that keep every pixel, straight into the file;
        // the ICC profile goes with the picture's colour space.
        QImage img = atDepth(frames.first(), bits);
        img.setColorSpace(icc.isEmpty() ? QColorSpace() : QColorSpace::fromIccProfile(icc));
        if (!openOut()) return ImagingCannotOpen;
        const bool png = coder == QLatin1String("PNG");
        QImageWriter w(&out, png ? "png" : "tiff");
        // PNG at a low zlib level that still packs well; TIFF uncompressed, as ImageMagick
        // writes it (LZW gains little on a photograph and takes three times as long).
        if (png) w.setQuality(70);
        else w.setCompression(0);
        if (!w.write(img)) {
            why = w.errorString();
            out.cancelWriting();
            return ImagingWriteError;
        }
        return finish(QByteArray());
    }
    QByteArray bytes;
    const int percent = coder == QLatin1String("JPEG") ? jpegPercentOfQuality(quality) : 0;
    const magick::Status s =
        magick::encodeWithProfiles(frames, coder, bits, percent, exif, icc, &bytes, &why);
    if (s != magick::Status::Ok) return statusOfMagick(s);
    if (bytes.isEmpty()) return ImagingWriteError;
    return finish(bytes);
}

}  // namespace tw
