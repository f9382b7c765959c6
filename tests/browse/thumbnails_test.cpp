// The thumbnail side without the window: the run of extension rows, the colour depths, the
// desktop's thumbnail cache, the making of one thumbnail from good and bad files, and the
// producer's order of events and its stop, over folders of Qt's formats and of the legacy
// formats that the decoder helpers read on the worker threads.
#include "browse/thumbnail_cache.h"
#include "../common/process_status.h"
#include "browse/thumbnail_producer.h"
#include "browse/thumbnails.h"
#include "core/catalogue.h"
#include "pictures/decoder_pool.h"
#include "bad_files.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>
#include <QKeyEvent>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QThreadPool>
#include <QTimer>
#include <QUrl>
#include <QWidget>
#include <gtest/gtest.h>
#include <csignal>
#include <sys/resource.h>
#include <unistd.h>

using namespace tw;
using namespace tw::browse;

namespace {

struct CatalogueReady {
    CatalogueReady()
    {
        Cat.fillFilters();
        Cat.fillExtensions();
    }
};

QImage colourful(int w, int h)
{
    QImage img(w, h, QImage::Format_RGB32);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) img.setPixel(x, y, qRgb(x * 255 / w, y * 255 / h, (x + y) % 256));
    return img;
}

void writePicture(const QString &path, const QImage &img, const char *format = nullptr)
{
    QImageWriter w(path, format);
    ASSERT_TRUE(w.write(img)) << path.toStdString();
}

uint32_t crc32(const QByteArray &data)
{
    uint32_t c = 0xFFFFFFFFu;
    for (char ch : data) {
        c ^= uint8_t(ch);
        for (int k = 0; k < 8; ++k) c = (c >> 1) ^ (0xEDB88320u & (0u - (c & 1u)));
    }
    return c ^ 0xFFFFFFFFu;
}

// A PNG whose header claims width x height pixels, with no pixels behind it.
QByteArray pngHeaderOnly(uint32_t width, uint32_t height)
{
    QByteArray png("\x89PNG\r\n\x1a\n", 8);
    QByteArray ihdr("IHDR");
    for (uint32_t v : {width, height}) {
        ihdr.append(char(v >> 24)).append(char(v >> 16)).append(char(v >> 8)).append(char(v));
    }
    ihdr.append(char(8)).append(char(2)).append(char(0)).append(char(0)).append(char(0));
    png.append(QByteArray("\0\0\0\x0d", 4)).append(ihdr);
    const uint32_t c = crc32(ihdr);
    png.append(char(c >> 24)).append(char(c >> 16)).append(char(c >> 8)).append(char(c));
    // A first data chunk, so that a reader of the header finds where the pixels would begin.
    const QByteArray idat("IDAT\x78\x9c", 6);
    png.append(QByteArray("\0\0\0\x02", 4)).append(idat);
    const uint32_t d = crc32(idat);
    png.append(char(d >> 24)).append(char(d >> 16)).append(char(d >> 8)).append(char(d));
    return png;
}

int64_t mtimeSecs(const QString &p) { return QFileInfo(p).lastModified().toSecsSinceEpoch(); }

}  // namespace

TEST(ThumbnailRows, AllFilesRowRunsFromJpgToImgAndLeavesOutTheLastPictureCell)
{
    CatalogueReady ready;
    int first = 0, last = 0;
    thumbnailRows(35, Cat.FilterPatterns[35].trimmed(), &first, &last);
    EXPECT_EQ(first, 0);
    EXPECT_EQ(last, 38);
    EXPECT_EQ(Cat.FileExtTable[39], QStringLiteral("MSP"));
}

TEST(ThumbnailRows, APatternThatNamesTheLastPictureCellReachesIt)
{
    CatalogueReady ready;
    int first = 0, last = 0;
    thumbnailRows(0, QStringLiteral("*.JPG;*.MSP"), &first, &last);
    EXPECT_EQ(first, 0);
    EXPECT_EQ(last, 39);
    thumbnailRows(0, QStringLiteral("*.msp"), &first, &last);
    EXPECT_EQ(first, 39);
    EXPECT_EQ(last, 39);
}

TEST(ThumbnailRows, FirstFoundAndLastFoundNotSmallestAndLargest)
{
    CatalogueReady ready;
    int first = 0, last = 0;
    // Exif: TIFF (4), TIF (5), JPG (0): first 4, last 0; the caller swaps them to 0..4.
    thumbnailRows(7, Cat.FilterPatterns[7].trimmed(), &first, &last);
    EXPECT_EQ(first, 4);
    EXPECT_EQ(last, 0);
    // The 1-bit row: MAC (37) first, CAL (36) last; MSP (39) in the middle is not reached.
    thumbnailRows(30, Cat.FilterPatterns[30].trimmed(), &first, &last);
    EXPECT_EQ(first, 37);
    EXPECT_EQ(last, 36);
}

TEST(ThumbnailRows, NoPictureExtensionGivesNoRun)
{
    CatalogueReady ready;
    int first = 0, last = 0;
    thumbnailRows(26, Cat.FilterPatterns[26].trimmed(), &first, &last);
    EXPECT_EQ(first, -1);
    EXPECT_EQ(last, -1);
    thumbnailRows(3, QString(), &first, &last);
    EXPECT_EQ(first, -1);
}

TEST(ThumbnailColours, EachDepthLimitsTheColours)
{
    const QImage src = colourful(64, 48);
    EXPECT_EQ(reduceColors(src, 32).format(), QImage::Format_RGB32);
    EXPECT_EQ(reduceColors(src, 24).pixel(10, 10), src.pixel(10, 10));
    EXPECT_EQ(reduceColors(src, 16).format(), QImage::Format_RGB16);
    const QImage eight = reduceColors(src, 8);
    EXPECT_EQ(eight.format(), QImage::Format_Indexed8);
    EXPECT_LE(eight.colorCount(), 256);
    for (int bits = 2; bits <= 7; ++bits) {
        const QImage r = reduceColors(src, bits);
        EXPECT_EQ(r.format(), QImage::Format_Indexed8);
        EXPECT_EQ(r.colorCount(), 1 << bits) << bits;
    }
    const QImage mono = reduceColors(src, 1);
    EXPECT_EQ(mono.format(), QImage::Format_Mono);
    EXPECT_EQ(mono.size(), src.size());
}

class ThumbCacheTest : public ::testing::Test {
protected:
    QTemporaryDir tmp;
    QString root, pics;
    void SetUp() override
    {
        ASSERT_TRUE(tmp.isValid());
        root = tmp.path() + QStringLiteral("/cache/thumbnails");
        pics = tmp.path() + QStringLiteral("/pics");
        QDir().mkpath(pics);
    }
    ThumbEvent make(const QString &path, const ThumbnailCache &cache, int size = 105, int bits = 24)
    {
        bool other = false;
        ThumbEvent ev = makeThumbnail(path, size, size, bits, &cache, 16384LL * 16384, &other);
        EXPECT_FALSE(other);
        return ev;
    }
};

TEST_F(ThumbCacheTest, EntryNamedByMd5OfUriWithUriMtimeAndPrivateMode)
{
    const QString file = pics + QStringLiteral("/a b.jpg");
    writePicture(file, colourful(400, 300), "jpeg");
    ThumbnailCache cache(root);
    const ThumbEvent ev = make(file, cache);
    ASSERT_EQ(ev.status, ThumbOk);
    EXPECT_FALSE(ev.fromCache);
    EXPECT_LE(ev.picture.width(), 105);
    EXPECT_EQ(ev.sourceWidth, 400);

    const QByteArray uri = QUrl::fromLocalFile(file).toEncoded();
    EXPECT_TRUE(uri.startsWith("file:///"));
    EXPECT_TRUE(uri.contains("a%20b.jpg"));
    const QString md5 = QString::fromLatin1(QCryptographicHash::hash(uri, QCryptographicHash::Md5).toHex());
    const QString entry = root + QStringLiteral("/normal/") + md5 + QStringLiteral(".png");
    ASSERT_TRUE(QFileInfo::exists(entry));
    EXPECT_EQ(QFileInfo(entry).permissions(),
              QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadUser
                  | QFileDevice::WriteUser);
    const QImage stored(entry);
    EXPECT_EQ(stored.text(QStringLiteral("Thumb::URI")).toUtf8(), uri);
    EXPECT_EQ(stored.text(QStringLiteral("Thumb::MTime")), QString::number(mtimeSecs(file)));
    EXPECT_EQ(stored.size(), QSize(128, 96));
    // Nothing but the entry is left in the folder (the temporary file was renamed).
    EXPECT_EQ(QDir(root + QStringLiteral("/normal")).entryList(QDir::Files | QDir::Hidden).size(), 1);

    const ThumbEvent again = make(file, cache);
    EXPECT_EQ(again.status, ThumbOk);
    EXPECT_TRUE(again.fromCache);
}

TEST_F(ThumbCacheTest, LargerThumbnailsUseTheLargeFolder)
{
    const QString file = pics + QStringLiteral("/big.png");
    writePicture(file, colourful(600, 400));
    ThumbnailCache cache(root);
    EXPECT_EQ(make(file, cache, 200).status, ThumbOk);
    EXPECT_TRUE(QFileInfo::exists(cache.entryPath(file, 256)));
    EXPECT_TRUE(cache.entryPath(file, 256).contains(QStringLiteral("/large/")));
}

TEST_F(ThumbCacheTest, AnEntryMadeByAnotherProgramIsUsed)
{
    const QString file = pics + QStringLiteral("/blue.png");
    QImage blue(300, 200, QImage::Format_RGB32);
    blue.fill(Qt::blue);
    writePicture(file, blue);
    // The desktop's file manager made this one (red, so that it can be told apart).
    QImage red(128, 85, QImage::Format_RGB32);
    red.fill(Qt::red);
    red.setText(QStringLiteral("Thumb::URI"), QString::fromUtf8(ThumbnailCache::fileUri(file)));
    red.setText(QStringLiteral("Thumb::MTime"), QString::number(mtimeSecs(file)));
    ThumbnailCache cache(root);
    QDir().mkpath(root + QStringLiteral("/normal"));
    ASSERT_TRUE(red.save(cache.entryPath(file, 128), "PNG"));
    const ThumbEvent ev = make(file, cache);
    ASSERT_EQ(ev.status, ThumbOk);
    EXPECT_TRUE(ev.fromCache);
    EXPECT_EQ(QColor(ev.picture.pixel(10, 10)), QColor(Qt::red));
}

TEST_F(ThumbCacheTest, ALargerEntryOfAnotherProgramServesASmallerThumbnail)
{
    const QString file = pics + QStringLiteral("/wide.png");
    QImage blue(600, 300, QImage::Format_RGB32);
    blue.fill(Qt::blue);
    writePicture(file, blue);
    QImage red(256, 128, QImage::Format_RGB32);
    red.fill(Qt::red);
    red.setText(QStringLiteral("Thumb::URI"), QString::fromUtf8(ThumbnailCache::fileUri(file)));
    red.setText(QStringLiteral("Thumb::MTime"), QString::number(mtimeSecs(file)));
    ThumbnailCache cache(root);
    QDir().mkpath(root + QStringLiteral("/large"));
    ASSERT_TRUE(red.save(cache.entryPath(file, 256), "PNG"));
    const ThumbEvent ev = make(file, cache);
    ASSERT_EQ(ev.status, ThumbOk);
    EXPECT_TRUE(ev.fromCache);
    EXPECT_EQ(ev.picture.size(), QSize(105, 52));
    EXPECT_EQ(QColor(ev.picture.pixel(5, 5)), QColor(Qt::red));
    EXPECT_FALSE(QFileInfo::exists(cache.entryPath(file, 128)));
}

TEST_F(ThumbCacheTest, StaleInvalidAndForeignEntriesAreRebuilt)
{
    const QString file = pics + QStringLiteral("/c.png");
    writePicture(file, colourful(300, 300));
    ThumbnailCache cache(root);
    ASSERT_EQ(make(file, cache).status, ThumbOk);
    const QString entry = cache.entryPath(file, 128);

    // Stale: the file changed since.
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::ReadWrite));
    ASSERT_TRUE(
        f.setFileTime(QDateTime::currentDateTime().addSecs(-3600), QFileDevice::FileModificationTime));
    f.close();
    EXPECT_TRUE(cache.lookup(file, 128).isNull());
    ThumbEvent ev = make(file, cache);
    EXPECT_FALSE(ev.fromCache);
    EXPECT_EQ(QImage(entry).text(QStringLiteral("Thumb::MTime")), QString::number(mtimeSecs(file)));
    EXPECT_TRUE(make(file, cache).fromCache);

    // Not a PNG.
    {
        QFile e(entry);
        ASSERT_TRUE(e.open(QIODevice::WriteOnly | QIODevice::Truncate));
        e.write("not a png at all");
    }
    ev = make(file, cache);
    EXPECT_EQ(ev.status, ThumbOk);
    EXPECT_FALSE(ev.fromCache);
    EXPECT_TRUE(make(file, cache).fromCache);

    // The entry of another file under this name.
    QImage other(64, 64, QImage::Format_RGB32);
    other.fill(Qt::green);
    other.setText(QStringLiteral("Thumb::URI"), QStringLiteral("file:///somewhere/else.png"));
    other.setText(QStringLiteral("Thumb::MTime"), QString::number(mtimeSecs(file)));
    ASSERT_TRUE(other.save(entry, "PNG"));
    ev = make(file, cache);
    EXPECT_FALSE(ev.fromCache);
    EXPECT_EQ(QImage(entry).text(QStringLiteral("Thumb::URI")).toUtf8(), ThumbnailCache::fileUri(file));
}

TEST_F(ThumbCacheTest, FailuresAreRecordedUnderTheProgramsFailFolder)
{
    const QString file = pics + QStringLiteral("/broken.jpg");
    {
        QFile f(file);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("\xff\xd8\xff\xe0 this is not really a JPEG");
    }
    ThumbnailCache cache(root);
    EXPECT_FALSE(cache.failedBefore(file));
    const ThumbEvent ev = make(file, cache);
    EXPECT_EQ(ev.status, ThumbUnreadable);
    const QString fail = cache.failPath(file);
    EXPECT_TRUE(fail.contains(QStringLiteral("/fail/tarnwick-2.0/")));
    EXPECT_TRUE(QFileInfo::exists(fail));
    EXPECT_TRUE(cache.failedBefore(file));
    EXPECT_EQ(make(file, cache).status, ThumbUnreadable);
    EXPECT_FALSE(QFileInfo::exists(cache.entryPath(file, 128)));
}

TEST_F(ThumbCacheTest, AnUnwritableCacheMeansNoCacheAndStillAThumbnail)
{
    const QString file = pics + QStringLiteral("/d.png");
    writePicture(file, colourful(200, 100));
    // The cache's place is taken by a plain file: no folder can be made there.
    const QString blocked = tmp.path() + QStringLiteral("/blocked");
    {
        QFile b(blocked);
        ASSERT_TRUE(b.open(QIODevice::WriteOnly));
    }
    ThumbnailCache cache(blocked + QStringLiteral("/thumbnails"));
    const ThumbEvent ev = make(file, cache);
    EXPECT_EQ(ev.status, ThumbOk);
    EXPECT_FALSE(ev.picture.isNull());
    EXPECT_FALSE(cache.store(file, 128, ev.picture));
    EXPECT_TRUE(make(file, cache).status == ThumbOk);
}

TEST_F(ThumbCacheTest, AnUnreadableCacheFolderMeansNoCacheAndStillAThumbnail)
{
    const QString file = pics + QStringLiteral("/u.png");
    writePicture(file, colourful(200, 100));
    ASSERT_EQ(make(file, ThumbnailCache(root)).status, ThumbOk);
    ASSERT_TRUE(make(file, ThumbnailCache(root)).fromCache);
    // The cache folder can no longer be read: without its rights, or (for the super-user,
    // whom rights do not stop) behind a link that leads back to itself.
    const QString moved = tmp.path() + QStringLiteral("/moved");
    const bool super = ::getuid() == 0;
    if (super) {
        ASSERT_TRUE(QDir().rename(root, moved));
        ASSERT_TRUE(QFile::link(root, root));
    } else {
        ASSERT_TRUE(QFile::setPermissions(root, QFileDevice::Permissions()));
    }
    ThumbnailCache cache(root);
    EXPECT_TRUE(cache.lookup(file, 128).isNull());
    EXPECT_FALSE(cache.failedBefore(file));
    const ThumbEvent ev = make(file, cache);
    EXPECT_EQ(ev.status, ThumbOk);
    EXPECT_FALSE(ev.fromCache);
    EXPECT_EQ(ev.picture.size(), QSize(105, 52));
    EXPECT_FALSE(cache.store(file, 128, ev.picture));
    // A whole browse goes the same way, with every picture.
    ThumbnailProducer p;
    p.setCacheRoot(root);
    p.thumbWidth = p.thumbHeight = 105;
    p.fileMask = QStringLiteral("*.PNG");
    int ok = 0;
    p.onEvent = [&](const ThumbEvent &e) {
        ok += e.status == ThumbOk && !e.fromCache;
        return true;
    };
    BrowseError err;
    EXPECT_EQ(p.browse(pics, &err), 1);
    EXPECT_EQ(err.number, 0);
    EXPECT_EQ(ok, 1);
    if (super) {
        QFile::remove(root);
        QDir().rename(moved, root);
    } else {
        QFile::setPermissions(root, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    }
}

TEST_F(ThumbCacheTest, AFullCacheFolderMeansNoCacheAndStillAThumbnail)
{
    const QString file = pics + QStringLiteral("/f.png");
    writePicture(file, colourful(300, 200));
    ThumbnailCache cache(root);
    // No file may grow beyond 64 bytes, as on a disk that is full: the entry's writing fails.
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    rlimit small = before;
    small.rlim_cur = 64;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const ThumbEvent ev = make(file, cache);
    const bool stored = cache.store(file, 128, ev.picture);
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(ev.status, ThumbOk);
    EXPECT_FALSE(ev.fromCache);
    EXPECT_EQ(ev.picture.width(), 105);
    EXPECT_FALSE(stored);
    // No entry, and no half-written one under any name.
    EXPECT_FALSE(QFileInfo::exists(cache.entryPath(file, 128)));
    EXPECT_TRUE(QDir(root + QStringLiteral("/normal")).entryList(QDir::Files | QDir::Hidden).isEmpty());
    // With room again, the entry is written.
    EXPECT_FALSE(make(file, cache).fromCache);
    EXPECT_TRUE(make(file, cache).fromCache);
}

TEST_F(ThumbCacheTest, ExifOrientationIsHonoured)
{
    // A JPEG of 400 x 100 pixels whose Exif block says "turn a quarter" (orientation 6).
    const QString plain = pics + QStringLiteral("/plain.jpg");
    writePicture(plain, colourful(400, 100), "jpeg");
    QFile f(plain);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    QByteArray data = f.readAll();
    f.close();
    const QByteArray app1("\xff\xe1\x00\x22"
                          "Exif\0\0"
                          "MM\0\x2a\0\0\0\x08"
                          "\0\x01"
                          "\x01\x12\x00\x03\x00\x00\x00\x01\x00\x06\x00\x00"
                          "\0\0\0\0",
                          36);
    data.insert(2, app1);
    const QString file = pics + QStringLiteral("/turned.jpg");
    QFile g(file);
    ASSERT_TRUE(g.open(QIODevice::WriteOnly));
    g.write(data);
    g.close();
    QImageReader plainReader(file);
    plainReader.setAutoTransform(false);
    ASSERT_EQ(plainReader.read().size(), QSize(400, 100));
    const ThumbEvent ev = make(file, ThumbnailCache(root));
    ASSERT_EQ(ev.status, ThumbOk);
    EXPECT_EQ(ev.picture.size(), QSize(26, 105));
}

TEST_F(ThumbCacheTest, AJpegIsDecodedScaledNeverWhole)
{
    // 6000 x 4000 pixels: 96 MB once decoded whole, 1.5 MB at an eighth of its size.
    const QString file = pics + QStringLiteral("/big.jpg");
    {
        QImage img(6000, 4000, QImage::Format_RGB32);
        for (int y = 0; y < img.height(); ++y) {
            auto *line = reinterpret_cast<QRgb *>(img.scanLine(y));
            for (int x = 0; x < img.width(); ++x)
                line[x] = qRgb(x & 0xFF, y & 0xFF, (x / 16 + y / 16) & 0xFF);
        }
        writePicture(file, img, "jpeg");
    }
    // The peak of memory use is set back to what is in use now, then read after the thumbnail.
    QFile clear(QStringLiteral("/proc/self/clear_refs"));
    if (!clear.open(QIODevice::WriteOnly) || clear.write("5") != 1) GTEST_SKIP() << "cannot reset the peak";
    clear.close();
    const long before = twtest::statusKiB("VmRSS:");
    const ThumbEvent ev = make(file, ThumbnailCache(root));
    const long peak = twtest::statusKiB("VmHWM:");
    ASSERT_EQ(ev.status, ThumbOk);
    EXPECT_EQ(ev.sourceWidth, 6000);
    EXPECT_EQ(ev.picture.width(), 105);
    EXPECT_LT(peak - before, 24 * 1024) << "the picture was decoded whole: " << (peak - before) << " KB more";
    // The measure itself: a whole decode of the same file shows.
    ASSERT_TRUE(clear.open(QIODevice::WriteOnly) && clear.write("5") == 1);
    clear.close();
    const long before2 = twtest::statusKiB("VmRSS:");
    QImageReader whole(file);
    whole.setAllocationLimit(1024);
    EXPECT_EQ(whole.read().size(), QSize(6000, 4000));
    EXPECT_GT(twtest::statusKiB("VmHWM:") - before2, 64 * 1024);
}

TEST_F(ThumbCacheTest, AHugeHeaderIsRefusedBeforeAnyPixel)
{
    // A PNG whose header says 40000 x 40000 pixels.
    const QString png = pics + QStringLiteral("/huge.png");
    {
        QFile f(png);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(pngHeaderOnly(40000, 40000));
    }
    ASSERT_EQ(QImageReader(png).size(), QSize(40000, 40000));
    // A JPEG whose frame header says the same.
    const QString jpg = pics + QStringLiteral("/huge.jpg");
    writePicture(jpg, colourful(64, 48), "jpeg");
    {
        QFile f(jpg);
        ASSERT_TRUE(f.open(QIODevice::ReadWrite));
        QByteArray d = f.readAll();
        const int sof = d.indexOf(QByteArray("\xff\xc0", 2));
        ASSERT_GT(sof, 0);
        d[sof + 5] = char(0x9C);
        d[sof + 6] = char(0x40);
        d[sof + 7] = char(0x9C);
        d[sof + 8] = char(0x40);
        f.seek(0);
        f.write(d);
    }
    ASSERT_EQ(QImageReader(jpg).size(), QSize(40000, 40000));
    for (const QString &file : {png, jpg}) {
        QElapsedTimer t;
        t.start();
        const ThumbEvent ev = make(file, ThumbnailCache(root));
        EXPECT_EQ(ev.status, ThumbTooLarge);
        EXPECT_EQ(ev.sourceWidth, 40000);
        EXPECT_LT(t.elapsed(), 2000);
    }
}

TEST_F(ThumbCacheTest, MissingEmptyAndForeignFiles)
{
    ThumbnailCache cache(root);
    EXPECT_EQ(make(pics + QStringLiteral("/nothing.jpg"), cache).status, ThumbFileMissing);
    const QString empty = pics + QStringLiteral("/empty.png");
    QFile(empty).open(QIODevice::WriteOnly);
    EXPECT_EQ(make(empty, cache).status, ThumbUnreadable);
    // A format Qt does not read goes to the picture subsystem's decoder, which refuses junk.
    const QString pcx = pics + QStringLiteral("/junk.pcx");
    {
        QFile f(pcx);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("junk junk junk junk");
    }
    bool other = false;
    makeThumbnail(pcx, 105, 105, 24, &cache, 1 << 28, &other);
    EXPECT_TRUE(other);
    EXPECT_EQ(makeThumbnailWithPictureDecoder(pcx, 105, 105, 24, &cache, 1 << 28).status, ThumbUnreadable);
}

TEST_F(ThumbCacheTest, PictureDecoderFormatMakesAThumbnail)
{
    // A Targa file: not one of Qt's own five formats, so the picture subsystem decodes it.
    const QString tga = pics + QStringLiteral("/t.tga");
    {
        // Uncompressed true-colour Targa, 120 x 80, rows from the top.
        QByteArray d(18, '\0');
        d[2] = 2;
        d[12] = char(120);
        d[14] = char(80);
        d[16] = 24;
        d[17] = 0x20;
        const QImage img = colourful(120, 80);
        for (int y = 0; y < 80; ++y)
            for (int x = 0; x < 120; ++x) {
                const QRgb c = img.pixel(x, y);
                d.append(char(qBlue(c))).append(char(qGreen(c))).append(char(qRed(c)));
            }
        QFile f(tga);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(d);
    }
    ThumbnailCache cache(root);
    bool other = false;
    makeThumbnail(tga, 105, 105, 24, &cache, 1 << 28, &other);
    EXPECT_TRUE(other);
    const ThumbEvent ev = makeThumbnailWithPictureDecoder(tga, 105, 105, 24, &cache, 1 << 28);
    ASSERT_EQ(ev.status, ThumbOk);
    EXPECT_EQ(ev.picture.size(), QSize(105, 70));
    EXPECT_TRUE(cache.lookup(tga, 128).size() == QSize(120, 80));
}

class ProducerTest : public ThumbCacheTest {};

TEST_F(ProducerTest, EventsArriveInListOrderAndStopEndsTheBrowse)
{
    QImage small(20, 20, QImage::Format_RGB32);
    small.fill(Qt::yellow);
    for (int i = 1; i <= 30; ++i) writePicture(pics + QStringLiteral("/n%1.png").arg(i), small);
    writePicture(pics + QStringLiteral("/other.jpg"), small, "jpeg");
    ThumbnailProducer p;
    p.setCacheRoot(root);
    p.thumbWidth = p.thumbHeight = 50;
    p.bitsPerPixel = 16;
    p.fileMask = QStringLiteral("*.PNG");
    QStringList seen;
    p.onEvent = [&](const ThumbEvent &ev) {
        seen << QFileInfo(ev.path).fileName();
        EXPECT_EQ(ev.status, ThumbOk);
        EXPECT_EQ(ev.picture.format(), QImage::Format_RGB16);
        return true;
    };
    BrowseError err;
    EXPECT_EQ(p.browse(pics, &err), 30);
    EXPECT_EQ(err.number, 0);
    QStringList expected;
    for (int i = 1; i <= 30; ++i) expected << QStringLiteral("n%1.png").arg(i);
    EXPECT_EQ(seen, expected);

    seen.clear();
    p.onEvent = [&](const ThumbEvent &ev) {
        seen << QFileInfo(ev.path).fileName();
        return seen.size() < 5;
    };
    EXPECT_EQ(p.browse(pics, &err), 5);
    EXPECT_EQ(err.number, ThumbErrStopped);
    EXPECT_EQ(seen.size(), 5);

    int events = 0;
    p.onEvent = [&](const ThumbEvent &) { return ++events > 0; };
    p.abandoned = [&] { return events >= 3; };
    p.browse(pics, &err);
    EXPECT_EQ(err.number, ThumbErrAborted);
    EXPECT_EQ(events, 3);

    p.abandoned = nullptr;
    p.fileMask = QStringLiteral("*.GIF");
    EXPECT_EQ(p.browse(pics, &err), 0);
    EXPECT_EQ(err.number, 0);
    EXPECT_EQ(p.browse(tmp.path() + QStringLiteral("/no such folder"), &err), 0);
}

TEST_F(ProducerTest, SettingsAreChecked)
{
    ThumbnailProducer p;
    // One worker per core.
    EXPECT_EQ(p.pool()->maxThreadCount(), QThread::idealThreadCount());
    p.thumbWidth = 0;
    p.thumbHeight = 10;
    EXPECT_EQ(p.validate().number, ThumbErrInvalidValue);
    EXPECT_EQ(p.validate().description, QStringLiteral("Invalid property value"));
    p.thumbWidth = 10;
    p.bitsPerPixel = 12;
    EXPECT_EQ(p.validate().number, ThumbErrInvalidValue);
    p.bitsPerPixel = 1;
    EXPECT_EQ(p.validate().number, 0);
    BrowseError err;
    p.thumbWidth = -3;
    EXPECT_EQ(p.browse(pics, &err), 0);
    EXPECT_EQ(err.number, ThumbErrInvalidValue);
}

// ---------------------------------------------------------------- folders of mixed formats

namespace {

bool copyTo(const QString &from, const QString &to)
{
    QFile::remove(to);
    return QFile::copy(from, to);
}

// A program started for a file (Ghostscript for PostScript) that is still running.
bool stillRunningFor(const QString &path)
{
    QProcess ps;
    ps.start(QStringLiteral("pgrep"), {QStringLiteral("-f"), path});
    ps.waitForFinished();
    return !ps.readAllStandardOutput().trimmed().isEmpty();
}

// Counts the key presses that reach a widget while a decoder helper is at work. While the
// interface thread itself waits for a helper, input is held back: a key that arrives then
// proves that the decode runs elsewhere.
struct KeyCounter : QObject {
    int whileDecoding = 0;
    bool eventFilter(QObject *, QEvent *e) override
    {
        if (e->type() == QEvent::KeyPress && decoding::helpersBusy() > 0) ++whileDecoding;
        return false;
    }
};

const QString Mask = QStringLiteral("*.PNG;*.PCX;*.JPG;*.TGA;*.EPS;*.PSD;*.JBG;*.BMP");

}  // namespace

class MixedFolderTest : public ThumbCacheTest {
protected:
    void TearDown() override { decoding::setTimeoutMs(5000); }
};

TEST_F(MixedFolderTest, LegacyFormatsAreMadeOnTheWorkersAndArriveInOrder)
{
    if (!twtest::haveCorpus()) GTEST_SKIP() << "no corpus";
    // Qt's formats and the codec module's, interleaved in the list's order, with an endless
    // PostScript file, a JBIG file that crashes its decoder and a Photoshop file cut short.
    const QImage img = colourful(160, 120);
    writePicture(pics + QStringLiteral("/01.png"), img);
    ASSERT_TRUE(copyTo(twtest::corpus(QStringLiteral("pcx/input.pcx")), pics + QStringLiteral("/02.pcx")));
    writePicture(pics + QStringLiteral("/03.jpg"), img, "jpeg");
    ASSERT_TRUE(copyTo(twtest::corpus(QStringLiteral("tga/input.tga")), pics + QStringLiteral("/04.tga")));
    ASSERT_FALSE(twtest::endlessEps(pics, QStringLiteral("05.eps")).isEmpty());
    ASSERT_TRUE(copyTo(twtest::corpus(QStringLiteral("psd/input.psd")), pics + QStringLiteral("/06.psd")));
    ASSERT_FALSE(twtest::jbigWithSize(pics, QStringLiteral("07.jbg"), twtest::CrashingJbigSize).isEmpty());
    ASSERT_TRUE(
        copyTo(twtest::corpus(QStringLiteral("pcx/p_4_planes.pcx")), pics + QStringLiteral("/08.pcx")));
    {
        QFile in(twtest::corpus(QStringLiteral("psd/hopper.psd")));
        ASSERT_TRUE(in.open(QIODevice::ReadOnly));
        QFile out(pics + QStringLiteral("/09.psd"));
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(in.read(400));
    }
    writePicture(pics + QStringLiteral("/10.bmp"), img, "bmp");
    const QStringList names{QStringLiteral("01.png"), QStringLiteral("02.pcx"), QStringLiteral("03.jpg"),
                            QStringLiteral("04.tga"), QStringLiteral("05.eps"), QStringLiteral("06.psd"),
                            QStringLiteral("07.jbg"), QStringLiteral("08.pcx"), QStringLiteral("09.psd"),
                            QStringLiteral("10.bmp")};
    const QList<int> expected{ThumbOk, ThumbOk,         ThumbOk, ThumbOk,         ThumbUnreadable,
                              ThumbOk, ThumbUnreadable, ThumbOk, ThumbUnreadable, ThumbOk};
    decoding::setTimeoutMs(1500);

    ThumbnailProducer p;
    p.setCacheRoot(root);
    p.thumbWidth = p.thumbHeight = 105;
    p.bitsPerPixel = 24;
    p.fileMask = Mask;
    QList<ThumbEvent> events;
    p.onEvent = [&](const ThumbEvent &ev) {
        events << ev;
        return true;
    };
    // The interface thread meanwhile: a timer that ticks, and keys typed while a helper works.
    QWidget w;
    w.show();
    KeyCounter keys;
    w.installEventFilter(&keys);
    QElapsedTimer clock;
    qint64 last = 0, longestGap = 0;
    int ticks = 0;
    QTimer tick;
    tick.setInterval(10);
    QObject::connect(&tick, &QTimer::timeout, [&] {
        longestGap = qMax(longestGap, clock.elapsed() - last);
        last = clock.elapsed();
        ++ticks;
        if (decoding::helpersBusy() > 0)
            QCoreApplication::postEvent(&w, new QKeyEvent(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, "a"));
    });
    clock.start();
    tick.start();
    BrowseError err;
    EXPECT_EQ(p.browse(pics, &err), 10);
    tick.stop();
    const qint64 cold = clock.elapsed();
    EXPECT_EQ(err.number, 0);
    ASSERT_EQ(events.size(), 10);
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(QFileInfo(events[i].path).fileName(), names[i]);
        EXPECT_EQ(events[i].status, expected[i]) << names[i].toStdString();
        if (expected[i] == ThumbOk) {
            EXPECT_FALSE(events[i].picture.isNull()) << names[i].toStdString();
            EXPECT_LE(qMax(events[i].picture.width(), events[i].picture.height()), 105);
        }
    }
    // The endless file held a helper for the whole time allowed, and the interface thread
    // took input all the while.
    EXPECT_GE(cold, 1400);
    EXPECT_GT(keys.whileDecoding, 10) << ticks << " ticks";
    EXPECT_LT(longestGap, 300);
    EXPECT_FALSE(stillRunningFor(pics + QStringLiteral("/05.eps")));
    // A worker's thumbnail is the one the interface thread would have made.
    bool other = false;
    makeThumbnail(pics + QStringLiteral("/02.pcx"), 105, 105, 24, nullptr, 1 << 28, &other);
    EXPECT_TRUE(other);
    EXPECT_EQ(
        makeThumbnailWithPictureDecoder(pics + QStringLiteral("/02.pcx"), 105, 105, 24, nullptr, 1 << 28)
            .picture,
        events[1].picture);

    // Again: the legacy pictures come from the cache, the failures are known and skipped.
    events.clear();
    clock.restart();
    EXPECT_EQ(p.browse(pics, &err), 10);
    const qint64 warm = clock.elapsed();
    ASSERT_EQ(events.size(), 10);
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(events[i].status, expected[i]) << names[i].toStdString();
        EXPECT_EQ(events[i].fromCache, expected[i] == ThumbOk) << names[i].toStdString();
    }
    EXPECT_LT(warm, 1000);
    qInfo("mixed folder: cold %lld ms (one file held for the 1.5 s allowed), warm %lld ms, %d keys taken "
          "while helpers worked, longest pause %lld ms",
          cold, warm, keys.whileDecoding, longestGap);
}

TEST_F(MixedFolderTest, AHugeLegacyHeaderIsRefusedBeforeAnyPixel)
{
    // Targa and PCX headers that say 40000 x 40000 pixels, with a few bytes behind them.
    const QString tga = pics + QStringLiteral("/huge.tga");
    {
        QByteArray d(18, '\0');
        d[2] = 2;  // true colour, uncompressed
        d[12] = char(0x40);
        d[13] = char(0x9C);
        d[14] = char(0x40);
        d[15] = char(0x9C);
        d[16] = 24;
        d.append(QByteArray(3000, '\x7f'));
        QFile f(tga);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(d);
    }
    const QString pcx = pics + QStringLiteral("/huge.pcx");
    {
        QByteArray d(128, '\0');
        d[0] = 10;  // PCX
        d[1] = 5;
        d[2] = 1;  // run-length encoded
        d[3] = 8;
        // Window 0,0 to 39999,39999, one plane of 8 bits, 40000 bytes a line.
        d[8] = char(0x3F);
        d[9] = char(0x9C);
        d[10] = char(0x3F);
        d[11] = char(0x9C);
        d[65] = 1;
        d[66] = char(0x40);
        d[67] = char(0x9C);
        d.append(QByteArray(3000, '\x01'));
        QFile f(pcx);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(d);
    }
    for (const QString &file : {tga, pcx}) {
        bool other = false;
        makeThumbnail(file, 105, 105, 24, nullptr, 16384LL * 16384, &other);
        EXPECT_TRUE(other);
        QElapsedTimer t;
        t.start();
        const ThumbEvent ev = makeThumbnailWithPictureDecoder(file, 105, 105, 24, nullptr, 16384LL * 16384);
        // Refused from the header that the decoder helper read, before a pixel.
        EXPECT_EQ(ev.status, ThumbTooLarge);
        EXPECT_EQ(ev.sourceWidth, 40000);
        EXPECT_EQ(ev.sourceHeight, 40000);
        EXPECT_TRUE(ev.picture.isNull());
        EXPECT_LT(t.elapsed(), 2000);
        qInfo("%s: status %d, %d x %d from its header, %lld ms", qPrintable(QFileInfo(file).fileName()),
              ev.status, ev.sourceWidth, ev.sourceHeight, t.elapsed());
    }
}

TEST_F(MixedFolderTest, StopDuringALegacyDecodeIsSeenAtOnce)
{
    if (!twtest::haveCorpus()) GTEST_SKIP() << "no corpus";
    const QString eps = twtest::endlessEps(pics, QStringLiteral("01.eps"));
    ASSERT_TRUE(copyTo(twtest::corpus(QStringLiteral("pcx/input.pcx")), pics + QStringLiteral("/02.pcx")));
    decoding::setTimeoutMs(8000);
    ThumbnailProducer p;
    p.setCacheRoot(root);
    p.thumbWidth = p.thumbHeight = 105;
    p.fileMask = Mask;
    bool stop = false;
    QList<ThumbEvent> events;
    p.onEvent = [&](const ThumbEvent &ev) {
        events << ev;
        return !stop;
    };
    p.stopPending = [&] { return stop; };
    QTimer::singleShot(300, [&] { stop = true; });
    QElapsedTimer clock;
    clock.start();
    BrowseError err;
    EXPECT_EQ(p.browse(pics, &err), 1);
    EXPECT_EQ(err.number, ThumbErrStopped);
    EXPECT_LT(clock.elapsed(), 1500);
    ASSERT_EQ(events.size(), 1);
    EXPECT_EQ(events[0].status, ThumbUnreadable);
    // A decode given up is no failure of the file: it is tried again next time.
    EXPECT_FALSE(ThumbnailCache(root).failedBefore(eps));
    for (int i = 0; i < 100 && stillRunningFor(eps); ++i) QTest::qWait(20);
    EXPECT_FALSE(stillRunningFor(eps));
}
