// Thumb1, the thumbnail producer: given a folder and a file mask it makes one small picture
// per matching file and reports one event per file, in the order of the file list, on the
// interface thread. Every file is made on a worker pool that uses every core: the pictures
// that Qt reads (JPEG, PNG, BMP, GIF, TIFF) with Qt's readers, JPEG scaled inside the
// decoder, never at full size; the other formats of the catalogue with the picture
// subsystem's decoders (helper processes, which worker threads may call at once). Thumbnails
// come from and go to the desktop's thumbnail cache.
#pragma once

#include "browse/thumbnail_cache.h"

#include <QImage>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

class QThreadPool;

namespace tw::browse {

// The producer's own error numbers.
constexpr int ThumbErrStopped = 20010;  // the event handler said stop
constexpr int ThumbErrAborted = 20100;  // a browse given up before its end (a newer load began)
constexpr int ThumbErrInvalidValue = 380;
constexpr int ThumbErrSubscript = 9;
constexpr int ThumbErrDisconnected = int(0x80010108u);  // no worker to make thumbnails

// Per-file status of an event: 0 when the picture was made.
enum ThumbStatus {
    ThumbOk = 0,
    ThumbFileMissing = 1,  // deleted since the folder was read
    ThumbUnreadable = 2,  // not a picture, damaged, or too large to decode
    ThumbTooLarge = 3,  // refused from its header, before any pixel was decoded
};

struct ThumbEvent {
    int status = ThumbOk;
    QString path;
    QImage picture;  // the finished thumbnail, colours reduced to bitsPerPixel
    int sourceWidth = 0, sourceHeight = 0;
    bool fromCache = false;
};

struct BrowseError {
    int number = 0;
    QString description;
};

// Cuts a picture down to a colour depth as the user would see it at that depth: 32 and 24
// bits as they are, 16 bits as 5-6-5, 8 bits and below to a palette of 2^bits colours (1 bit
// black and white), dithered.
QImage reduceColors(const QImage &img, int bitsPerPixel);

// Makes one thumbnail of at most width x height pixels from a file (the work of one file,
// on any thread). Formats other than Qt's give ThumbUnreadable with needsOtherDecoder set.
ThumbEvent makeThumbnail(const QString &path, int width, int height, int bitsPerPixel,
                         const ThumbnailCache *cache, int64_t maxPixels, bool *needsOtherDecoder);
// The same for the formats that only the picture subsystem reads (any thread; a worker's wait
// for the decoder ends early through a decoding::CancelScope).
ThumbEvent makeThumbnailWithPictureDecoder(const QString &path, int width, int height, int bitsPerPixel,
                                           const ThumbnailCache *cache, int64_t maxPixels);

class ThumbnailProducer {
public:
    ThumbnailProducer();
    ~ThumbnailProducer();

    // The settings of the control.
    int thumbWidth = 0, thumbHeight = 0;
    int bitsPerPixel = 24;
    QString fileMask;  // "*.JPG"
    int setting1 = 0, setting2 = 0;
    // Largest picture decoded, in pixels; larger headers are refused.
    int64_t maxPixels = 16384LL * 16384LL;
    // Where the cache lives; empty: the desktop's own.
    void setCacheRoot(const QString &root) { cache_ = ThumbnailCache(root); }
    const ThumbnailCache &cache() const { return cache_; }
    void setUseCache(bool on) { useCache_ = on; }

    // The files of a folder in the order of the events. Unset: the folder's files in the
    // order the file list shows them.
    std::function<QStringList(const QString &folder)> folderFiles;
    // Called once per file on the interface thread; returns the continue flag.
    std::function<bool(const ThumbEvent &)> onEvent;
    // Checked before each event: true ends the browse with ThumbErrAborted.
    std::function<bool()> abandoned;
    // Checked while an event is waited for: true when the event handler is going to say stop
    // at the next event (Stop was pressed). The decodes under way are then given up, so that
    // the next event, and with it the stop, comes at once.
    std::function<bool()> stopPending;

    // Checks the settings; 0 or an error number with its description.
    BrowseError validate() const;
    // Walks the folder. Returns the count of events delivered (0 when nothing matched) or
    // sets *error (ThumbErrStopped when onEvent said stop).
    int browse(const QString &folder, BrowseError *error);
    bool busy() const { return depth_ > 0; }
    // The files of a folder in the order the file list shows them.
    static QStringList listFolder(const QString &folder);

    QThreadPool *pool() const { return pool_.get(); }

private:
    std::unique_ptr<QThreadPool> pool_;
    ThumbnailCache cache_;
    bool useCache_ = true;
    int depth_ = 0;
};

}  // namespace tw::browse
