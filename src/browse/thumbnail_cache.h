// The thumbnail cache shared with the desktop: ~/.cache/thumbnails/{normal,large,x-large,
// xx-large}/<MD5 of the file's URI>.png, each PNG carrying Thumb::URI and Thumb::MTime. An
// entry is good only while both match the file; a picture that cannot be made is recorded
// under fail/tarnwick-<version>/ so that it is not decoded again until it changes. Every
// call is safe from worker threads (each entry is its own file, written to a temporary
// file and renamed into place). A cache folder that cannot be made or written means no
// cache, quietly.
#pragma once

#include <QImage>
#include <QString>

namespace tw::browse {

class ThumbnailCache {
public:
    // root: the "thumbnails" folder; empty: $XDG_CACHE_HOME/thumbnails or ~/.cache/thumbnails.
    explicit ThumbnailCache(const QString &root = QString());

    // The size class (normal 128, large 256, x-large 512, xx-large 1024) that holds a
    // thumbnail of that many pixels on its longer side.
    static int classSize(int longerSide);
    static QString className(int classSize);
    // The file's URI as the cache names it, and the entry's file name (MD5 hex + ".png").
    static QByteArray fileUri(const QString &absolutePath);
    static QString entryName(const QByteArray &uri);

    QString root() const { return root_; }
    QString entryPath(const QString &file, int classSize) const;
    QString failPath(const QString &file) const;

    // The cached thumbnail of the file, or a null image when there is none, it is stale,
    // it is not a valid PNG or it names another file.
    QImage lookup(const QString &file, int classSize) const;
    // True when a failure of this very version of the file is on record.
    bool failedBefore(const QString &file) const;
    // Stores a thumbnail (scaled down to the class size when larger); false when the cache
    // cannot be written.
    bool store(const QString &file, int classSize, const QImage &thumb) const;
    bool storeFailure(const QString &file) const;

private:
    bool write(const QString &dir, const QString &name, const QImage &img, const QByteArray &uri,
               qint64 mtime, qint64 size) const;
    QString root_;
};

// The program's own folder name under fail/.
QString failFolderName();

}  // namespace tw::browse
