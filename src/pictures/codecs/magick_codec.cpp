#include "pictures/codecs/magick_codec.h"

#include <Magick++.h>
#include <magick/policy.h>
#include <magick/resource_.h>

#include <tiffio.h>

#include <QFile>
#include <QFileInfo>
#include <cstring>
#include <mutex>

namespace tw::magick {

namespace {

std::once_flag initOnce;

// ImageMagick's TIFF coder installs process-wide libtiff error handlers that expect one of
// its own reads to be running; any other user of libtiff (Qt's TIFF reader probing a file)
// would then land in them and abort. So its handlers are in force only while ImageMagick
// works, and libtiff's own defaults the rest of the time.
struct TiffHandlers {
    TIFFErrorHandler error = nullptr, warning = nullptr;
    TIFFErrorHandlerExt errorExt = nullptr, warningExt = nullptr;
    void install() const
    {
        TIFFSetErrorHandler(error);
        TIFFSetWarningHandler(warning);
        TIFFSetErrorHandlerExt(errorExt);
        TIFFSetWarningHandlerExt(warningExt);
    }
    static TiffHandlers current()
    {
        TiffHandlers h;
        h.error = TIFFSetErrorHandler(nullptr);
        h.warning = TIFFSetWarningHandler(nullptr);
        h.errorExt = TIFFSetErrorHandlerExt(nullptr);
        h.warningExt = TIFFSetWarningHandlerExt(nullptr);
        h.install();
        return h;
    }
};
TiffHandlers g_libtiffDefaults, g_magickTiff;

class MagickTiffScope {
public:
    MagickTiffScope() { g_magickTiff.install(); }
    ~MagickTiffScope() { g_libtiffDefaults.install(); }
    MagickTiffScope(const MagickTiffScope &) = delete;
    MagickTiffScope &operator=(const MagickTiffScope &) = delete;
};

// Debian's policy refuses the PostScript coders outright; the program's EPS row needs them,
// and Ghostscript renders them. Everything else of the system policy, its resource caps
// included, stays as it is.
const char *const kPostScriptPolicy =
    "<policymap>"
    "  <policy domain=\"coder\" rights=\"read|write\" pattern=\"{PS,PS2,PS3,EPS,EPSF,EPSI,EPT,PDF}\"/>"
    "</policymap>";

std::string localPath(const QString &path)
{
    return QFile::encodeName(QFileInfo(path).absoluteFilePath()).toStdString();
}

Status statusOf(const Magick::Exception &e)
{
    const QString what = QString::fromLocal8Bit(e.what());
    if (dynamic_cast<const Magick::ErrorResourceLimit *>(&e)
        || dynamic_cast<const Magick::WarningResourceLimit *>(&e)
        || what.contains(QLatin1String("width or height exceeds limit"))
        || what.contains(QLatin1String("cache resources exhausted"))
        || what.contains(QLatin1String("MemoryAllocationFailed")))
        return Status::TooLarge;
    if (dynamic_cast<const Magick::ErrorMissingDelegate *>(&e)
        || what.contains(QLatin1String("no decode delegate"))
        || what.contains(QLatin1String("NoDecodeDelegateForThisImageFormat")))
        return Status::NotAPicture;
    if (dynamic_cast<const Magick::ErrorBlob *>(&e) && what.contains(QLatin1String("unable to open")))
        return Status::NoSuchFile;
    if (dynamic_cast<const Magick::ErrorCorruptImage *>(&e)
        || dynamic_cast<const Magick::WarningCorruptImage *>(&e))
        return Status::Corrupt;
    return Status::NotAPicture;
}

// A page past the last one comes back as an empty scene or a "scene" complaint.
Status readStatusOf(const Magick::Exception &e, int page, bool allPages)
{
    const Status s = statusOf(e);
    if (!allPages && page > 1 && (s == Status::NotAPicture || s == Status::TooLarge)
        && QString::fromLocal8Bit(e.what()).contains(QLatin1String("scene")))
        return Status::BadPage;
    return s;
}

int bitsOf(const Magick::Image &img)
{
    if (img.classType() == MagickCore::PseudoClass) {
        const size_t n = img.colorMapSize();
        if (n <= 2) return 1;
        if (n <= 16) return 4;
        return 8;
    }
    const size_t depth = img.depth();
    switch (img.colorSpace()) {
    case MagickCore::GRAYColorspace:
    case MagickCore::Rec601LumaColorspace:
    case MagickCore::Rec709LumaColorspace:
        if (depth <= 1) return 1;
        return depth > 8 ? 16 : 8;
    case MagickCore::CMYKColorspace:
        return 32;
    default:
        if (img.matte()) return depth > 8 ? 64 : 32;
        return depth > 8 ? 48 : 24;
    }
}

Facts factsOf(const Magick::Image &img)
{
    Facts f;
    f.coder = QString::fromStdString(img.magick());
    f.width = int(img.columns());
    f.height = int(img.rows());
    f.bitsPerPixel = bitsOf(img);
    f.colors = img.classType() == MagickCore::PseudoClass ? int64_t(img.colorMapSize())
                                                          : (int64_t(1) << std::min(f.bitsPerPixel, 24));
    const Magick::Geometry density = img.density();
    f.xResolution = img.xResolution();
    f.yResolution = img.yResolution();
    if (f.xResolution <= 0 && density.width() > 0) f.xResolution = density.width();
    if (f.yResolution <= 0 && density.height() > 0) f.yResolution = density.height();
    return f;
}

PixelAllocator g_pixelAllocator = nullptr;

QImage toQImage(Magick::Image &img, bool decodedFrame = false)
{
    if (img.colorSpace() == MagickCore::CMYKColorspace || img.colorSpace() == MagickCore::YCbCrColorspace
        || img.colorSpace() == MagickCore::YCCColorspace)
        img.colorSpace(MagickCore::sRGBColorspace);
    const int w = int(img.columns()), h = int(img.rows());
    if (w <= 0 || h <= 0) throw Magick::ErrorOption("no such scene in the file");
    QImage q;
    if (decodedFrame && g_pixelAllocator) {
        QImageCleanupFunction release = nullptr;
        void *info = nullptr;
        if (uchar *p = g_pixelAllocator(qsizetype(w) * h * 4, &release, &info))
            q = QImage(p, w, h, qsizetype(w) * 4, QImage::Format_ARGB32, release, info);
    } else {
        q = QImage(w, h, QImage::Format_ARGB32);
    }
    if (q.isNull()) throw Magick::ErrorResourceLimit("MemoryAllocationFailed");
    img.write(0, 0, size_t(w), size_t(h), "BGRA", Magick::CharPixel, q.bits());
    // A picture without alpha is opaque: some coders (TGA's run-length reader) leave the
    // opacity of the pixels they fill unset, and it would come out as whatever was there.
    if (!img.matte()) {
        for (int y = 0; y < h; ++y) {
            auto *line = reinterpret_cast<uint32_t *>(q.scanLine(y));
            for (int x = 0; x < w; ++x) line[x] |= 0xFF000000u;
        }
    }
    return q;
}

Magick::Image fromQImage(const QImage &src)
{
    const QImage q = src.convertToFormat(QImage::Format_ARGB32);
    Magick::Image img(size_t(q.width()), size_t(q.height()), "BGRA", Magick::CharPixel, q.constBits());
    img.matte(q.hasAlphaChannel() && src.hasAlphaChannel());
    return img;
}

// Hands decoded frames over, tolerating warnings but not damage: a coder that stopped
// part way leaves a picture that is not the file's, and that is a failure.
Status collect(std::list<Magick::Image> &images, Decoded *out)
{
    out->frames.clear();
    out->delaysMs.clear();
    for (auto &img : images) {
        out->frames.append(toQImage(img, true));
        out->delaysMs.append(int(img.animationDelay()) * 10);
    }
    if (!images.empty()) out->facts = factsOf(images.front());
    return out->frames.isEmpty() ? Status::NotAPicture : Status::Ok;
}

}  // namespace

void initialise()
{
    std::call_once(initOnce, [] {
        g_libtiffDefaults = TiffHandlers::current();
        Magick::InitializeMagick(nullptr);
        MagickCore::ExceptionInfo *ex = MagickCore::AcquireExceptionInfo();
        MagickCore::SetMagickSecurityPolicy(kPostScriptPolicy, ex);
        // Load the TIFF coder now, so that the handlers it installs can be put aside.
        MagickCore::GetMagickInfo("TIFF", ex);
        MagickCore::DestroyExceptionInfo(ex);
        g_magickTiff = TiffHandlers::current();
        g_libtiffDefaults.install();
    });
}

Status read(const QString &path, int page, bool allPages, Decoded *out, QString *message,
            const QString &coderHint)
{
    initialise();
    MagickTiffScope tiffScope;
    if (!QFileInfo(path).isFile()) return Status::NoSuchFile;
    std::string source = localPath(path);
    if (!coderHint.isEmpty()) source = coderHint.toStdString() + ":" + source;
    try {
        std::list<Magick::Image> images;
        Magick::ReadOptions opts;
        opts.quiet(false);
        if (allPages) {
            Magick::readImages(&images, source, opts);
        } else {
            // The page is chosen with ImageMagick's scene suffix, "file[n]".
            Magick::Image img;
            img.quiet(false);
            img.read(source + "[" + std::to_string(std::max(page, 1) - 1) + "]");
            images.push_back(img);
        }
        return collect(images, out);
    } catch (const Magick::Warning &w) {
        // Warnings from a coder that finished (an unknown tag, a profile it skipped) keep
        // the picture; damage reported as a warning does not.
        if (message) *message = QString::fromLocal8Bit(w.what());
        if (dynamic_cast<const Magick::WarningCorruptImage *>(&w)) return Status::Corrupt;
        Magick::Image img;
        try {
            img.quiet(true);
            img.read(source + "[" + std::to_string(std::max(page, 1) - 1) + "]");
            std::list<Magick::Image> images{img};
            return collect(images, out);
        } catch (const Magick::Exception &e) {
            if (message) *message = QString::fromLocal8Bit(e.what());
            return readStatusOf(e, page, allPages);
        }
    } catch (const Magick::Exception &e) {
        if (message) *message = QString::fromLocal8Bit(e.what());
        return readStatusOf(e, page, allPages);
    } catch (const std::exception &e) {
        if (message) *message = QString::fromLocal8Bit(e.what());
        return Status::TooLarge;
    }
}

Status readBlob(const QByteArray &data, const QString &coderHint, Decoded *out, QString *message)
{
    initialise();
    MagickTiffScope tiffScope;
    try {
        Magick::Blob blob(data.constData(), size_t(data.size()));
        Magick::Image img;
        img.quiet(false);
        if (!coderHint.isEmpty()) img.magick(coderHint.toStdString());
        img.read(blob);
        std::list<Magick::Image> images{img};
        return collect(images, out);
    } catch (const Magick::Exception &e) {
        if (message) *message = QString::fromLocal8Bit(e.what());
        return statusOf(e);
    } catch (const std::exception &e) {
        if (message) *message = QString::fromLocal8Bit(e.what());
        return Status::TooLarge;
    }
}

Status ping(const QString &path, int page, Facts *out, QString *message)
{
    initialise();
    MagickTiffScope tiffScope;
    if (!QFileInfo(path).isFile()) return Status::NoSuchFile;
    try {
        Magick::Image img;
        img.quiet(true);
        img.ping(localPath(path) + "[" + std::to_string(std::max(page, 1) - 1) + "]");
        *out = factsOf(img);
        // Counting pages needs a pass over the file; only the multi-page coders have them.
        out->pages = 1;
        const QString c = out->coder;
        if (c == QLatin1String("TIFF") || c == QLatin1String("DCX") || c == QLatin1String("PSD")
            || c == QLatin1String("ICO") || c == QLatin1String("GIF")) {
            MagickCore::ImageInfo *info = MagickCore::CloneImageInfo(nullptr);
            const std::string local = localPath(path);
            std::strncpy(info->filename, local.c_str(), MaxTextExtent - 1);
            MagickCore::ExceptionInfo *ex = MagickCore::AcquireExceptionInfo();
            MagickCore::Image *list = MagickCore::PingImage(info, ex);
            if (list) {
                out->pages = int(MagickCore::GetImageListLength(list));
                MagickCore::DestroyImageList(list);
            }
            MagickCore::DestroyExceptionInfo(ex);
            MagickCore::DestroyImageInfo(info);
        }
        return Status::Ok;
    } catch (const Magick::Exception &e) {
        if (message) *message = QString::fromLocal8Bit(e.what());
        return statusOf(e);
    }
}

bool canWrite(const QString &coder)
{
    initialise();
    MagickTiffScope tiffScope;
    try {
        Magick::CoderInfo info(coder.toStdString());
        return info.isWritable();
    } catch (const Magick::Exception &) {
        return false;
    }
}

bool canRead(const QString &coder)
{
    initialise();
    MagickTiffScope tiffScope;
    try {
        Magick::CoderInfo info(coder.toStdString());
        return info.isReadable();
    } catch (const Magick::Exception &) {
        return false;
    }
}

QImage resample(const QImage &src, int width, int height)
{
    initialise();
    MagickTiffScope tiffScope;
    try {
        Magick::Image img = fromQImage(src);
        img.filterType(MagickCore::LanczosFilter);
        Magick::Geometry g{size_t(width), size_t(height)};
        g.aspect(true);
        img.resize(g);
        return toQImage(img);
    } catch (const Magick::Exception &) {
        return src.scaled(width, height, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
}

QImage brightnessContrast(const QImage &src, double brightness, double contrast)
{
    initialise();
    MagickTiffScope tiffScope;
    try {
        Magick::Image img = fromQImage(src);
        img.brightnessContrast(brightness, contrast);
        QImage out = toQImage(img);
        if (!src.hasAlphaChannel()) out = out.convertToFormat(QImage::Format_RGB32);
        return out;
    } catch (const Magick::Exception &) {
        return src;
    }
}

void setPixelAllocator(PixelAllocator allocator) { g_pixelAllocator = allocator; }

int64_t areaLimit()
{
    initialise();
    MagickTiffScope tiffScope;
    return int64_t(MagickCore::GetMagickResourceLimit(MagickCore::AreaResource));
}

int64_t sideLimit()
{
    initialise();
    MagickTiffScope tiffScope;
    const auto w = MagickCore::GetMagickResourceLimit(MagickCore::WidthResource);
    const auto h = MagickCore::GetMagickResourceLimit(MagickCore::HeightResource);
    return int64_t(std::min(w, h));
}

}  // namespace tw::magick
