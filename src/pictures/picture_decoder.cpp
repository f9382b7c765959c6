#include "pictures/picture_decoder.h"

#include "pictures/decoder_pool.h"
#include "pictures/frame_decoders.h"
#include "pictures/imaging_errors.h"
#include "pictures/imaging_formats.h"
#include "pictures/codecs/magick_codec.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QMutex>
#include <QStringList>

#include <atomic>
#include <cstdio>

namespace tw {

namespace {

// libjpeg reports a file cut short as a warning and fills the rest with grey; Qt passes
// the warning to the message handler only. The handler below catches it while one JPEG
// decodes, so that a truncated file is a failure and not half a picture. Pictures decode on
// several threads at once (thumbnails on workers): each thread catches its own warnings, and
// the handler stays in place while any thread has a catcher.
thread_local QStringList *t_jpegWarnings = nullptr;
QMutex g_catcherMutex;
int g_catchers = 0;  // under g_catcherMutex
std::atomic<QtMessageHandler> g_previousHandler{nullptr};

void catchDecoderWarnings(QtMsgType type, const QMessageLogContext &ctx, const QString &msg)
{
    if (t_jpegWarnings && type == QtWarningMsg) {
        t_jpegWarnings->append(msg);
        return;
    }
    // Another thread's message, or not a warning: where it would have gone.
    if (const QtMessageHandler previous = g_previousHandler.load()) previous(type, ctx, msg);
    else std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, ctx, msg)));
}

class WarningCatcher {
public:
    WarningCatcher()
    {
        t_jpegWarnings = &messages;
        QMutexLocker lock(&g_catcherMutex);
        if (g_catchers++ == 0) g_previousHandler = qInstallMessageHandler(catchDecoderWarnings);
    }
    ~WarningCatcher()
    {
        {
            QMutexLocker lock(&g_catcherMutex);
            if (--g_catchers == 0) qInstallMessageHandler(g_previousHandler.load());
        }
        t_jpegWarnings = nullptr;
    }
    WarningCatcher(const WarningCatcher &) = delete;
    WarningCatcher &operator=(const WarningCatcher &) = delete;
    bool truncated() const
    {
        for (const QString &m : messages) {
            if (m.contains(QLatin1String("Premature end")) || m.contains(QLatin1String("premature end"))
                || m.contains(QLatin1String("Not enough image data"))
                || m.contains(QLatin1String("Read Error")))
                return true;
        }
        return false;
    }
    QStringList messages;
};

bool isQtFormat(const QByteArray &f)
{
    return f == "jpeg" || f == "png" || f == "bmp" || f == "gif" || f == "tiff";
}

int bitsOfFormat(QImage::Format f)
{
    switch (f) {
    case QImage::Format_Mono:
    case QImage::Format_MonoLSB:
        return 1;
    case QImage::Format_Indexed8:
    case QImage::Format_Grayscale8:
    case QImage::Format_Alpha8:
        return 8;
    case QImage::Format_Grayscale16:
        return 16;
    case QImage::Format_RGB16:
    case QImage::Format_RGB555:
        return 16;
    case QImage::Format_ARGB32:
    case QImage::Format_ARGB32_Premultiplied:
    case QImage::Format_RGBA8888:
    case QImage::Format_RGBA8888_Premultiplied:
    case QImage::Format_RGBA64:
    case QImage::Format_RGBA64_Premultiplied:
        return 32;
    default:
        return 24;
    }
}

QString coderOfQtFormat(const QByteArray &f)
{
    if (f == "jpeg") return QStringLiteral("JPEG");
    if (f == "png") return QStringLiteral("PNG");
    if (f == "bmp") return QStringLiteral("BMP");
    if (f == "gif") return QStringLiteral("GIF");
    return QStringLiteral("TIFF");
}

// The display form every frame is kept in: 32 bits a pixel, alpha only where the file has it.
QImage displayForm(const QImage &img)
{
    if (img.hasAlphaChannel()) {
        if (img.format() == QImage::Format_ARGB32 || img.format() == QImage::Format_ARGB32_Premultiplied)
            return img;
        return img.convertToFormat(QImage::Format_ARGB32);
    }
    if (img.format() == QImage::Format_RGB32) return img;
    return img.convertToFormat(QImage::Format_RGB32);
}

int statusOfMagick(magick::Status s)
{
    switch (s) {
    case magick::Status::Ok:
        return ImagingOk;
    case magick::Status::NoSuchFile:
        return ImagingFileNotFound;
    case magick::Status::NotAPicture:
        return ImagingInvalidFormat;
    case magick::Status::Corrupt:
        return ImagingReadError;
    case magick::Status::TooLarge:
        return ImagingNoMemory;
    case magick::Status::NoCoder:
        return ImagingSubtypeNotSupported;
    case magick::Status::BadPage:
        return ImagingInvalidParameter;
    case magick::Status::WriteFailed:
        return ImagingWriteError;
    case magick::Status::Stopped:
        return ImagingReadError;
    case magick::Status::Abandoned:
        return ImagingEscapePressed;
    }
    return ImagingGeneralFailure;
}

int statusOfFrames(FrameDecodeStatus s)
{
    switch (s) {
    case FrameDecodeStatus::Ok:
        return ImagingOk;
    case FrameDecodeStatus::NotThisFormat:
        return ImagingInvalidFormat;
    case FrameDecodeStatus::Corrupt:
        return ImagingReadError;
    case FrameDecodeStatus::TooLarge:
        return ImagingNoMemory;
    case FrameDecodeStatus::Stopped:
        return ImagingReadError;
    case FrameDecodeStatus::Abandoned:
        return ImagingEscapePressed;
    }
    return ImagingGeneralFailure;
}

enum class Route { Qt, AnimatedCursor, Flic, Other };

Route routeOf(const QString &path, QByteArray *qtFormat)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) return Route::Other;
    const QByteArray head = f.read(16);
    if (looksLikeAnimatedCursor(head)) return Route::AnimatedCursor;
    if (head.size() >= 6 && uchar(head[5]) == 0xAF && (uchar(head[4]) == 0x11 || uchar(head[4]) == 0x12))
        return Route::Flic;
    f.seek(0);
    const QByteArray fmt = QImageReader::imageFormat(&f);
    if (isQtFormat(fmt)) {
        *qtFormat = fmt;
        return Route::Qt;
    }
    return Route::Other;
}

int decodeWithQt(const QString &path, const QByteArray &format, int page, bool allPages, Picture *out,
                 QString *detail)
{
    const int64_t area = pictureAreaLimit();
    QImageReader::setAllocationLimit(int(std::min<int64_t>(area * 4 / (1024 * 1024) + 1, 1 << 20)));
    QImageReader r(path, format);
    r.setAutoTransform(false);
    const QSize size = r.size();
    if (!size.isValid()) {
        if (detail) *detail = r.errorString();
        return ImagingReadError;
    }
    if (int64_t(size.width()) * size.height() > area) {
        if (detail) *detail = QStringLiteral("picture exceeds the pixel area allowed");
        return ImagingNoMemory;
    }
    const int bits = bitsOfFormat(r.imageFormat());
    const int first = std::max(page, 1) - 1;
    if (first > 0 && !r.jumpToImage(first)) {
        if (detail) *detail = QStringLiteral("no such page");
        return ImagingInvalidParameter;
    }
    Picture pic;
    pic.bitsPerPixel = bits;
    int64_t used = 0;
    for (;;) {
        QImage img;
        bool ok;
        if (format == "jpeg") {
            WarningCatcher catcher;
            ok = r.read(&img);
            if (ok && catcher.truncated()) {
                if (detail) *detail = catcher.messages.join(QLatin1Char(' '));
                return ImagingReadError;
            }
        } else {
            ok = r.read(&img);
        }
        if (!ok) {
            if (detail) *detail = r.errorString();
            if (!pic.frames.isEmpty() && allPages) break;  // the pages before the damage stay
            if (r.error() == QImageReader::InvalidDataError && first > 0 && pic.frames.isEmpty())
                return ImagingInvalidParameter;
            return int64_t(size.width()) * size.height() * 4
                    > int64_t(QImageReader::allocationLimit()) * 1024 * 1024
                ? ImagingNoMemory
                : ImagingReadError;
        }
        used += int64_t(img.width()) * img.height() * 4;
        if (used > area * 4) {
            if (detail) *detail = QStringLiteral("pages exceed the memory allowed");
            return ImagingNoMemory;
        }
        pic.frames.append(displayForm(img));
        pic.delaysMs.append(std::max(r.nextImageDelay(), 0));
        if (!allPages || !r.canRead()) break;
        if (r.imageCount() > 0 && pic.frames.size() >= r.imageCount()) break;
        if (pic.frames.size() >= 100000) break;
    }
    *out = pic;
    return ImagingOk;
}

}  // namespace

// The page asked for (1-based), or every frame, of frames decoded outside ImageMagick.
static int pictureOfFrames(const DecodedFrames &frames, int page, bool allPages, Picture *out)
{
    Picture pic;
    pic.bitsPerPixel = frames.bitsPerPixel;
    const int first = std::max(page, 1) - 1;
    if (allPages) {
        for (const QImage &img : frames.frames) pic.frames.append(displayForm(img));
        pic.delaysMs = frames.delaysMs;
    } else {
        if (first >= frames.frames.size()) return ImagingInvalidParameter;
        pic.frames.append(displayForm(frames.frames[first]));
        pic.delaysMs.append(frames.delaysMs[first]);
    }
    *out = pic;
    return ImagingOk;
}

int64_t pictureAreaLimit() { return magick::areaLimit(); }

QImage decodeIconData(const QByteArray &data)
{
    magick::Decoded d;
    QString msg;
    const magick::Status s = magick::readBlob(data, QStringLiteral("ICO"), &d, &msg);
    // A decoder that had to be stopped, or a wait the user gave up, ends the whole file.
    if (s == magick::Status::Stopped || s == magick::Status::Abandoned) return QImage();
    if (s == magick::Status::Ok && !d.frames.isEmpty()) {
        // An icon file may hold several sizes; the largest is the picture.
        QImage best = d.frames.first();
        for (const QImage &f : d.frames) {
            if (f.width() * f.height() > best.width() * best.height()) best = f;
        }
        return best;
    }
    QImage img;
    img.loadFromData(data, "ICO");
    return img;
}

int decodePictureFile(const QString &path, int page, bool allPages, Picture *out, QString *detail)
{
    const QFileInfo info(path);
    if (!info.exists() || !info.isFile()) return ImagingFileNotFound;
    if (info.size() == 0) return ImagingInvalidFormat;
    if (!info.isReadable()) return ImagingCannotOpen;
    // The decoder helpers start with the first picture, so that they are ready by the
    // time one is needed.
    if (!decoding::inProcess()) decoding::warmUp();
    const int64_t maxBytes = pictureAreaLimit() * 4;

    QByteArray qtFormat;
    const Route route = routeOf(path, &qtFormat);
    // Qt's TIFF reader loses its place between the pages of a multi-page file (it reads
    // the first page again and again): pages after the first go through ImageMagick.
    const bool tiffPages = qtFormat == "tiff" && (page > 1 || allPages);
    if (route == Route::Qt && !tiffPages) return decodeWithQt(path, qtFormat, page, allPages, out, detail);

    if (route == Route::AnimatedCursor) {
        QFile f(path);
        if (!f.open(QIODevice::ReadOnly)) return ImagingCannotOpen;
        if (f.size() > maxBytes) return ImagingNoMemory;
        DecodedFrames frames;
        const FrameDecodeStatus s =
            decodeAnimatedCursor(f.readAll(), decodeIconData, maxBytes, &frames, detail);
        if (s != FrameDecodeStatus::Ok) return statusOfFrames(s);
        return pictureOfFrames(frames, page, allPages, out);
    }

    auto viaFrames = [&](int *status) -> bool {
        DecodedFrames frames;
        const FrameDecodeStatus s = decodeWithAv(path, allPages || page > 1, maxBytes, &frames, detail);
        *status = statusOfFrames(s);
        if (s != FrameDecodeStatus::Ok) return false;
        *status = pictureOfFrames(frames, page, allPages, out);
        return *status == ImagingOk;
    };

    int status = ImagingInvalidFormat;
    if (route == Route::Flic) {
        viaFrames(&status);
        return status;
    }

    magick::Decoded d;
    QString msg;
    const magick::Status ms = magick::read(path, page, allPages, &d, &msg);
    if (ms == magick::Status::Ok) {
        Picture pic;
        pic.bitsPerPixel = d.facts.bitsPerPixel;
        for (const QImage &img : d.frames) pic.frames.append(displayForm(img));
        pic.delaysMs = d.delaysMs;
        *out = pic;
        return ImagingOk;
    }
    if (detail) *detail = msg;
    // A decoder that had to be stopped, or a wait the user gave up, is not tried again.
    if (ms == magick::Status::TooLarge || ms == magick::Status::NoSuchFile || ms == magick::Status::Stopped
        || ms == magick::Status::Abandoned)
        return statusOfMagick(ms);
    // Formats ImageMagick has no coder for, or whose files its coder refuses (PICT
    // without its 512-byte header), may still be FFmpeg's.
    if (viaFrames(&status)) return ImagingOk;
    if (status == ImagingNoMemory) return status;
    return statusOfMagick(ms);
}

int readPictureFacts(const QString &path, int page, FileFacts *out, QString *detail)
{
    const QFileInfo info(path);
    if (!info.exists() || !info.isFile()) return ImagingFileNotFound;
    if (info.size() == 0) return ImagingInvalidFormat;
    FileFacts f;
    f.page = std::max(page, 1);
    f.sizeDisk = info.size();
    const QString ext = info.suffix().toUpper();

    QByteArray qtFormat;
    const Route route = routeOf(path, &qtFormat);
    bool done = false;
    if (route == Route::Qt) {
        QImageReader r(path, qtFormat);
        const QSize size = r.size();
        if (size.isValid()) {
            f.width = size.width();
            f.height = size.height();
            f.bitsPerPixel = bitsOfFormat(r.imageFormat());
            f.format = formatNumberOfCoder(coderOfQtFormat(qtFormat), ext);
            f.totalPages = qtFormat == "gif" ? std::max(r.imageCount(), 1) : 1;
            // Resolution: ImageMagick's header read gives it without decoding the pixels.
            magick::Facts mf;
            QString msg;
            if (magick::ping(path, page, &mf, &msg) == magick::Status::Ok) {
                f.xResolution = mf.xResolution;
                f.yResolution = mf.yResolution;
                f.colors = mf.colors;
                if (qtFormat == "tiff") f.totalPages = std::max(mf.pages, 1);
            }
            done = true;
        }
    } else if (route == Route::Other) {
        magick::Facts mf;
        QString msg;
        // Raw fax and the vector formats have no size in their header that ImageMagick
        // reports on a header read; those are decoded below.
        static const QStringList unreliable{
            QStringLiteral("FAX"),  QStringLiteral("G3"),   QStringLiteral("G4"),  QStringLiteral("EPS"),
            QStringLiteral("EPSF"), QStringLiteral("EPSI"), QStringLiteral("EPT"), QStringLiteral("PS"),
            QStringLiteral("PDF"),  QStringLiteral("WMF"),  QStringLiteral("WMZ")};
        const magick::Status pinged = magick::ping(path, page, &mf, &msg);
        if (pinged == magick::Status::Ok && mf.width > 0 && !unreliable.contains(mf.coder)) {
            f.width = mf.width;
            f.height = mf.height;
            f.bitsPerPixel = mf.bitsPerPixel;
            f.colors = mf.colors;
            f.xResolution = mf.xResolution;
            f.yResolution = mf.yResolution;
            f.totalPages = std::max(mf.pages, 1);
            f.format = formatNumberOfCoder(mf.coder, ext);
            done = true;
        } else {
            if (detail) *detail = msg;
            // A decoder that had to be stopped even for the header, or a wait the user gave
            // up, is not tried again on the whole picture.
            if (pinged == magick::Status::Stopped || pinged == magick::Status::Abandoned)
                return statusOfMagick(pinged);
        }
    }
    if (!done) {
        // The frame decoders have no header-only read: decode the page.
        Picture pic;
        const int status = decodePictureFile(path, page, route == Route::AnimatedCursor, &pic, detail);
        if (status != ImagingOk) return status;
        f.width = pic.frames.first().width();
        f.height = pic.frames.first().height();
        f.bitsPerPixel = pic.bitsPerPixel;
        f.totalPages = pic.frames.size();
        if (route == Route::AnimatedCursor) f.format = 119;
        else if (route == Route::Flic) f.format = formatNumberOfCoder(QStringLiteral("FLIC"), ext);
        else {
            magick::Facts mf;
            QString msg;
            if (magick::ping(path, page, &mf, &msg) == magick::Status::Ok) {
                f.format = formatNumberOfCoder(mf.coder, ext);
                f.xResolution = mf.xResolution;
                f.yResolution = mf.yResolution;
            }
            if (f.format == 0) f.format = formatNumberOfCoder(ext, ext);
        }
    }
    if (f.colors == 0) f.colors = f.bitsPerPixel >= 24 ? (int64_t(1) << 24) : (int64_t(1) << f.bitsPerPixel);
    const int64_t stride = (int64_t(f.width) * std::max(f.bitsPerPixel, 1) + 31) / 32 * 4;
    f.sizeMem = stride * f.height;
    f.formatName = GetImageFormatName(f.format);
    *out = f;
    return ImagingOk;
}

}  // namespace tw
