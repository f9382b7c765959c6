#include "browse/thumbnail_cache.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>
#include <QStandardPaths>
#include <QTemporaryFile>
#include <QUrl>

#include <cstdio>

namespace tw::browse {

namespace {

QString defaultRoot()
{
    const QString base = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    if (base.isEmpty()) return QString();
    return base + QStringLiteral("/thumbnails");
}

// Seconds since the epoch of the file's last change, as the cache writes it.
qint64 mtimeOf(const QFileInfo &fi) { return fi.lastModified().toSecsSinceEpoch(); }

bool makePrivateDir(const QString &path)
{
    QDir d;
    if (!d.mkpath(path)) return false;
    QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    return true;
}

}  // namespace

QString failFolderName() { return QStringLiteral("tarnwick-2.0"); }

ThumbnailCache::ThumbnailCache(const QString &root) : root_(root.isEmpty() ? defaultRoot() : root) {}

int ThumbnailCache::classSize(int longerSide)
{
    if (longerSide <= 128) return 128;
    if (longerSide <= 256) return 256;
    if (longerSide <= 512) return 512;
    return 1024;
}

QString ThumbnailCache::className(int size)
{
    switch (size) {
    case 128:
        return QStringLiteral("normal");
    case 256:
        return QStringLiteral("large");
    case 512:
        return QStringLiteral("x-large");
    default:
        return QStringLiteral("xx-large");
    }
}

QByteArray ThumbnailCache::fileUri(const QString &absolutePath)
{
    return QUrl::fromLocalFile(QFileInfo(absolutePath).absoluteFilePath()).toEncoded();
}

QString ThumbnailCache::entryName(const QByteArray &uri)
{
    return QString::fromLatin1(QCryptographicHash::hash(uri, QCryptographicHash::Md5).toHex())
        + QStringLiteral(".png");
}

QString ThumbnailCache::entryPath(const QString &file, int size) const
{
    if (root_.isEmpty()) return QString();
    return root_ + u'/' + className(size) + u'/' + entryName(fileUri(file));
}

QString ThumbnailCache::failPath(const QString &file) const
{
    if (root_.isEmpty()) return QString();
    return root_ + QStringLiteral("/fail/") + failFolderName() + u'/' + entryName(fileUri(file));
}

// The keys are read from the decoded entry: QImageReader::text() splits keys at their
// colons, so "Thumb::URI" is only whole on the image. Entries are small.
static bool entryMatches(const QImage &entry, const QByteArray &uri, qint64 mtime)
{
    return entry.text(QStringLiteral("Thumb::URI")).toUtf8() == uri
        && entry.text(QStringLiteral("Thumb::MTime")) == QString::number(mtime);
}

QImage ThumbnailCache::lookup(const QString &file, int size) const
{
    const QString entry = entryPath(file, size);
    if (entry.isEmpty()) return QImage();
    const QFileInfo fi(file);
    if (!fi.exists()) return QImage();
    QImageReader r(entry, "png");
    if (!r.canRead()) return QImage();
    // A cache entry is small: anything above the class size is not ours to trust.
    const QSize s = r.size();
    if (!s.isValid() || s.width() > size || s.height() > size) return QImage();
    QImage img = r.read();
    if (img.isNull() || !entryMatches(img, fileUri(file), mtimeOf(fi))) return QImage();
    return img;
}

bool ThumbnailCache::failedBefore(const QString &file) const
{
    const QString entry = failPath(file);
    if (entry.isEmpty() || !QFileInfo::exists(entry)) return false;
    const QFileInfo fi(file);
    if (!fi.exists()) return false;
    QImageReader r(entry, "png");
    if (!r.canRead()) return false;
    const QSize s = r.size();
    if (!s.isValid() || s.width() > 16 || s.height() > 16) return false;
    return entryMatches(r.read(), fileUri(file), mtimeOf(fi));
}

bool ThumbnailCache::write(const QString &dir, const QString &name, const QImage &img, const QByteArray &uri,
                           qint64 mtime, qint64 size) const
{
    if (!makePrivateDir(dir)) return false;
    QImage out = img;
    out.setText(QStringLiteral("Thumb::URI"), QString::fromUtf8(uri));
    out.setText(QStringLiteral("Thumb::MTime"), QString::number(mtime));
    out.setText(QStringLiteral("Thumb::Size"), QString::number(size));
    out.setText(QStringLiteral("Software"), QStringLiteral("Tarnwick 2.0"));
    // The entry is made in memory first: a disk that fails (full) fails the file's one write,
    // never the PNG writer in the middle of its work (which then leaves memory behind).
    QByteArray png;
    {
        QBuffer buf(&png);
        buf.open(QIODevice::WriteOnly);
        QImageWriter w(&buf, "png");
        // The quickest deflate level: an entry is written once per picture and read many
        // times, and at this size the stronger levels save little.
        w.setCompression(1);
        if (!w.write(out)) return false;
    }
    // A temporary file in the same folder, made private (0600), renamed into place so a
    // reader never sees half an entry.
    QTemporaryFile tmp(dir + QStringLiteral("/.tarnwick-XXXXXX.png"));
    tmp.setAutoRemove(true);
    if (!tmp.open()) return false;
    if (tmp.write(png) != png.size() || !tmp.flush()) return false;
    tmp.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    const QString target = dir + u'/' + name;
    if (std::rename(QFile::encodeName(tmp.fileName()).constData(), QFile::encodeName(target).constData())
        != 0)
        return false;
    tmp.setAutoRemove(false);
    return true;
}

bool ThumbnailCache::store(const QString &file, int size, const QImage &thumb) const
{
    if (root_.isEmpty() || thumb.isNull()) return false;
    const QFileInfo fi(file);
    if (!fi.exists()) return false;
    QImage img = thumb;
    if (img.width() > size || img.height() > size)
        img = img.scaled(size, size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    if (img.format() != QImage::Format_ARGB32 && img.format() != QImage::Format_RGB32)
        img = img.convertToFormat(img.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    const QByteArray uri = fileUri(file);
    return write(root_ + u'/' + className(size), entryName(uri), img, uri, mtimeOf(fi), fi.size());
}

bool ThumbnailCache::storeFailure(const QString &file) const
{
    if (root_.isEmpty()) return false;
    const QFileInfo fi(file);
    if (!fi.exists()) return false;
    QImage one(1, 1, QImage::Format_ARGB32);
    one.fill(Qt::transparent);
    const QByteArray uri = fileUri(file);
    return write(root_ + QStringLiteral("/fail/") + failFolderName(), entryName(uri), one, uri, mtimeOf(fi),
                 fi.size());
}

}  // namespace tw::browse
