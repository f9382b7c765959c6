#include "browse/thumbnail_producer.h"

#include "browse/dir_scan.h"
#include "core/catalogue.h"
#include "pictures/decoder_pool.h"
#include "pictures/imaging_errors.h"
#include "pictures/picture_decoder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QThread>
#include <QThreadPool>

#include <atomic>
#include <deque>

namespace tw::browse {

namespace {

// The extensions whose files Qt's own readers decode on the worker pool.
bool isQtExtension(const QString &path)
{
    static const QStringList exts{QStringLiteral("JPG"),  QStringLiteral("JPEG"), QStringLiteral("JPE"),
                                  QStringLiteral("JFIF"), QStringLiteral("PNG"),  QStringLiteral("BMP"),
                                  QStringLiteral("GIF"),  QStringLiteral("TIF"),  QStringLiteral("TIFF")};
    return exts.contains(QFileInfo(path).suffix().toUpper());
}

bool isQtFormat(const QByteArray &f)
{
    return f == "jpeg" || f == "jpg" || f == "png" || f == "bmp" || f == "gif" || f == "tiff" || f == "tif";
}

// The finished thumbnail: fitted into width x height (never enlarged), colours reduced.
ThumbEvent finish(ThumbEvent ev, const QImage &img, int width, int height, int bits)
{
    QImage fit = img;
    if (fit.width() > width || fit.height() > height)
        fit = fit.scaled(width, height, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    ev.picture = reduceColors(fit, bits);
    ev.status = ev.picture.isNull() ? ThumbUnreadable : ThumbOk;
    return ev;
}

ThumbEvent failed(ThumbEvent ev, int status, const ThumbnailCache *cache)
{
    ev.status = status;
    if (cache && status != ThumbFileMissing) cache->storeFailure(ev.path);
    return ev;
}

QList<QRgb> paletteOf(int bits)
{
    QList<QRgb> table;
    if (bits == 2) {
        for (int i = 0; i < 4; ++i) table << qRgb(i * 85, i * 85, i * 85);
        return table;
    }
    const int rb = (bits + 2) / 3, gb = (bits + 1) / 3, bb = bits / 3;
    const auto levels = [](int b) {
        QList<int> l;
        const int n = 1 << b;
        for (int i = 0; i < n; ++i) l << (n == 1 ? 128 : i * 255 / (n - 1));
        return l;
    };
    for (int r : levels(rb))
        for (int g : levels(gb))
            for (int b : levels(bb)) table << qRgb(r, g, b);
    return table;
}

}  // namespace

QImage reduceColors(const QImage &img, int bits)
{
    if (img.isNull()) return img;
    const Qt::ImageConversionFlags dither = Qt::DiffuseDither | Qt::ColorOnly;
    if (bits >= 24) {
        const QImage::Format f = img.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32;
        return img.format() == f ? img : img.convertToFormat(f);
    }
    if (bits >= 16) return img.convertToFormat(QImage::Format_RGB16, dither);
    const QImage opaque = img.convertToFormat(QImage::Format_RGB32);
    if (bits == 8) return opaque.convertToFormat(QImage::Format_Indexed8, dither);
    if (bits <= 1) return opaque.convertToFormat(QImage::Format_Mono, Qt::DiffuseDither | Qt::MonoOnly);
    return opaque.convertToFormat(QImage::Format_Indexed8, paletteOf(bits), dither);
}

ThumbEvent makeThumbnail(const QString &path, int width, int height, int bits, const ThumbnailCache *cache,
                         int64_t maxPixels, bool *needsOtherDecoder)
{
    *needsOtherDecoder = false;
    ThumbEvent ev;
    ev.path = path;
    const QFileInfo fi(path);
    if (!fi.exists() || !fi.isFile()) return failed(ev, ThumbFileMissing, nullptr);
    const int cls = ThumbnailCache::classSize(qMax(width, height));
    if (cache) {
        // The entry of the thumbnail's own size, else one of a larger size that another
        // program made (scaled down here, and left as it is).
        for (int size = cls; size <= 1024; size *= 2) {
            const QImage cached = cache->lookup(path, size);
            if (!cached.isNull()) {
                ev.fromCache = true;
                return finish(ev, cached, width, height, bits);
            }
        }
        if (cache->failedBefore(path)) return failed(ev, ThumbUnreadable, nullptr);
    }
    QImageReader r(path);
    r.setAutoTransform(true);
    r.setAllocationLimit(1024);
    const bool qtExt = isQtExtension(path);
    if (!r.canRead() || !isQtFormat(r.format())) {
        if (qtExt) return failed(ev, ThumbUnreadable, cache);
        *needsOtherDecoder = true;
        return ev;
    }
    const QSize size = r.size();
    if (!size.isValid() || size.isEmpty()) return failed(ev, ThumbUnreadable, cache);
    ev.sourceWidth = size.width();
    ev.sourceHeight = size.height();
    // The header decides: a picture beyond the limit is refused before a pixel is read.
    if (int64_t(size.width()) * size.height() > maxPixels) return failed(ev, ThumbTooLarge, cache);
    // The cache's size class: JPEG decodes straight to it (the decoder's DCT scaling).
    if (size.width() > cls || size.height() > cls)
        r.setScaledSize(size.scaled(cls, cls, Qt::KeepAspectRatio));
    const QImage img = r.read();
    if (img.isNull()) {
        if (!QFileInfo::exists(path)) return failed(ev, ThumbFileMissing, nullptr);
        return failed(ev, ThumbUnreadable, cache);
    }
    if (cache) cache->store(path, cls, img);
    return finish(ev, img, width, height, bits);
}

// The one call into the picture subsystem's decoders, for the formats Qt does not read.
ThumbEvent makeThumbnailWithPictureDecoder(const QString &path, int width, int height, int bits,
                                           const ThumbnailCache *cache, int64_t maxPixels)
{
    ThumbEvent ev;
    ev.path = path;
    if (!QFileInfo(path).isFile()) return failed(ev, ThumbFileMissing, nullptr);
    FileFacts facts;
    const int factsStatus = readPictureFacts(path, 1, &facts);
    // A wait given up (the browse stopped) says nothing of the file: no failure is recorded.
    if (factsStatus == ImagingEscapePressed) return failed(ev, ThumbUnreadable, nullptr);
    if (factsStatus == ImagingFileNotFound) return failed(ev, ThumbFileMissing, nullptr);
    // Facts that no decoder could give (where the header says too little, they come from a
    // decode): a second decode would fail the same way, and take as long.
    if (factsStatus != ImagingOk) return failed(ev, ThumbUnreadable, cache);
    ev.sourceWidth = facts.width;
    ev.sourceHeight = facts.height;
    if (int64_t(facts.width) * facts.height > maxPixels) return failed(ev, ThumbTooLarge, cache);
    Picture pic;
    const int st = decodePictureFile(path, 1, false, &pic);
    if (st == ImagingFileNotFound) return failed(ev, ThumbFileMissing, nullptr);
    if (st == ImagingEscapePressed) return failed(ev, ThumbUnreadable, nullptr);
    if (st != ImagingOk || pic.isNull()) return failed(ev, ThumbUnreadable, cache);
    const QImage &img = pic.frames.first();
    ev.sourceWidth = img.width();
    ev.sourceHeight = img.height();
    const int cls = ThumbnailCache::classSize(qMax(width, height));
    const QImage small = (img.width() > cls || img.height() > cls)
        ? img.scaled(cls, cls, Qt::KeepAspectRatio, Qt::SmoothTransformation)
        : img;
    if (cache) cache->store(path, cls, small);
    return finish(ev, small, width, height, bits);
}

QStringList ThumbnailProducer::listFolder(const QString &folder)
{
    // The folder's own files, whatever the list's pattern, in file manager order.
    const QDir dir(folder);
    QStringList names = dir.entryList(QDir::Files, QDir::NoSort);
    std::stable_sort(names.begin(), names.end(), naturalLess);
    QStringList files;
    files.reserve(names.size());
    for (const QString &name : names) files << dir.filePath(name);
    return files;
}

ThumbnailProducer::ThumbnailProducer() : pool_(std::make_unique<QThreadPool>())
{
    pool_->setMaxThreadCount(qMax(1, QThread::idealThreadCount()));
}

ThumbnailProducer::~ThumbnailProducer()
{
    pool_->clear();
    pool_->waitForDone();
}

BrowseError ThumbnailProducer::validate() const
{
    if (thumbWidth < 1 || thumbHeight < 1 || thumbWidth > 1024 || thumbHeight > 1024)
        return {ThumbErrInvalidValue, QStringLiteral("Invalid property value")};
    static const int depths[] = {32, 24, 16, 8, 7, 6, 5, 4, 3, 2, 1};
    if (std::find(std::begin(depths), std::end(depths), bitsPerPixel) == std::end(depths))
        return {ThumbErrInvalidValue, QStringLiteral("Invalid property value")};
    if (!pool_ || pool_->maxThreadCount() < 1)
        return {ThumbErrDisconnected,
                QStringLiteral("The object invoked has disconnected from its clients.")};
    return {};
}

namespace {
struct Slot {
    std::atomic<bool> done{false};
    ThumbEvent ev;
};
}  // namespace

int ThumbnailProducer::browse(const QString &folder, BrowseError *error)
{
    *error = {};
    const BrowseError bad = validate();
    if (bad.number) {
        *error = bad;
        return 0;
    }
    // This browse keeps the handlers it began with: a browse begun inside one of its events
    // sets its own.
    const auto handler = onEvent;
    const auto isAbandoned = abandoned;
    const auto isStopPending = stopPending;
    ++depth_;
    struct Leave {
        int &d;
        ~Leave() { --d; }
    } leave{depth_};

    const QStringList files = folderFiles ? folderFiles(folder) : listFolder(folder);
    QStringList matching;
    // The mask of a row is "*." and one extension: a plain comparison of the name's end.
    const QString mask = fileMask.trimmed();
    const bool plainExt = mask.startsWith(QLatin1String("*.")) && !mask.mid(2).contains(u'*')
        && !mask.mid(2).contains(u'?') && !mask.contains(u';');
    const QString dotExt = mask.mid(1);
    for (const QString &f : files) {
        const bool match = plainExt ? f.endsWith(dotExt, Qt::CaseInsensitive) && f.size() > dotExt.size()
                && f[f.size() - dotExt.size() - 1] != u'/'
                                    : matchesPatternList(QFileInfo(f).fileName(), mask);
        if (match) matching << f;
    }
    if (matching.isEmpty()) return 0;

    auto cancelled = std::make_shared<std::atomic<bool>>(false);
    const int w = thumbWidth, h = thumbHeight, bits = bitsPerPixel;
    const int64_t limit = maxPixels;
    const ThumbnailCache cacheCopy = cache_;
    const bool withCache = useCache_;
    // Enough work queued ahead to keep every worker busy, little enough to keep memory small.
    const int window = qMax(8, pool_->maxThreadCount() * 4);
    std::deque<std::shared_ptr<Slot>> pending;
    int next = 0;
    QObject *app = QCoreApplication::instance();
    const auto submit = [&] {
        while (int(pending.size()) < window && next < matching.size()) {
            auto slot = std::make_shared<Slot>();
            const QString path = matching[next++];
            pool_->start([slot, path, w, h, bits, limit, cacheCopy, withCache, cancelled, app] {
                const ThumbnailCache *c = withCache ? &cacheCopy : nullptr;
                bool other = false, made = false;
                if (!cancelled->load()) {
                    slot->ev = makeThumbnail(path, w, h, bits, c, limit, &other);
                    made = !other;
                }
                if (other && !cancelled->load()) {
                    // The picture subsystem's decoders, on this worker too; a browse given up
                    // ends the wait for the decoder.
                    const decoding::CancelScope scope(cancelled.get());
                    slot->ev = makeThumbnailWithPictureDecoder(path, w, h, bits, c, limit);
                    made = true;
                }
                if (!made) {
                    slot->ev = ThumbEvent();
                    slot->ev.path = path;
                    slot->ev.status = ThumbUnreadable;
                }
                slot->done.store(true);
                // Wakes the interface thread, which may be waiting for this very file.
                if (app)
                    QMetaObject::invokeMethod(
                        app, [] {}, Qt::QueuedConnection);
            });
            pending.push_back(std::move(slot));
        }
    };
    const auto giveUp = [&] {
        // Jobs not started yet end at once when their turn comes; those running finish their
        // one file. The pool is not cleared: an outer browse may still wait for its own jobs.
        cancelled->store(true);
    };

    int delivered = 0;
    submit();
    while (!pending.empty()) {
        std::shared_ptr<Slot> slot = pending.front();
        while (!slot->done.load()) {
            if (isAbandoned && isAbandoned()) break;
            // Stop pressed: the handler ends the browse at this very event, so the files
            // under way need not be finished.
            if (isStopPending && isStopPending()) cancelled->store(true);
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        if (isAbandoned && isAbandoned()) {
            giveUp();
            *error = {ThumbErrAborted, QStringLiteral("Thumbnail browse aborted")};
            return delivered;
        }
        pending.pop_front();
        submit();
        ++delivered;
        const bool more = handler ? handler(slot->ev) : true;
        if (!more) {
            giveUp();
            *error = {ThumbErrStopped, QStringLiteral("Thumbnail browse stopped")};
            return delivered;
        }
    }
    return delivered;
}

}  // namespace tw::browse
