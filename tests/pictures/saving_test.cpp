// Picture saving: the format table, the quality rule, a round trip through every format a
// save writes, the original's metadata, and writes that fail (a read-only folder, a full
// disk, a file size limit) leaving the old file whole and no temporary file behind.
#include "core/catalogue.h"
#include "core/file_copy.h"
#include "pictures/codecs/magick_write.h"
#include "pictures/file_dialogs.h"
#include "pictures/imaging_control.h"
#include "pictures/imaging_errors.h"
#include "pictures/picture_decoder.h"
#include "pictures/picture_saving.h"
#include "pictures/scanner.h"

#include <QColorSpace>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QImageWriter>
#include <QPainter>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <functional>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace tw;

namespace {

// A picture with every pixel its own colour along both axes, so any reordering shows.
QImage colourPicture(int w, int h)
{
    QImage img(w, h, QImage::Format_RGB32);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            img.setPixel(x, y, qRgb(x * 255 / w, y * 255 / h, (x * 7 + y * 13) & 0xFF));
    return img;
}

QImage blackWhitePicture(int w, int h)
{
    QImage img(w, h, QImage::Format_RGB32);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            img.setPixel(x, y, ((x / 3 + y / 2) % 2) ? qRgb(255, 255, 255) : qRgb(0, 0, 0));
    return img;
}

QStringList filesIn(const QString &dir)
{
    return QDir(dir).entryList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot);
}

QByteArray bytesOf(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

bool samePixels(const QImage &a, const QImage &b)
{
    if (a.size() != b.size()) return false;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            if ((a.pixel(x, y) & 0xFFFFFF) != (b.pixel(x, y) & 0xFFFFFF)) return false;
    return true;
}

}  // namespace

class SavingTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { Cat.fillExtensions(); }

    void formatCodes()
    {
        QCOMPARE(GetFormatCode("JPG"), 10);
        QCOMPARE(GetFormatCode("JPE"), 10);
        QCOMPARE(GetFormatCode("TIFF"), 3);
        QCOMPARE(GetFormatCode("MPT"), 3);
        QCOMPARE(GetFormatCode("DCX"), 1);
        QCOMPARE(GetFormatCode("CUR"), 92);
        QCOMPARE(GetFormatCode("FLI"), 61);
        // PBM and PNG share their code.
        QCOMPARE(GetFormatCode("PBM"), 75);
        QCOMPARE(GetFormatCode("PNG"), 75);
        // Not in the table: no code; the table is of upper-case extensions.
        QCOMPARE(GetFormatCode("JPEG"), 0);
        QCOMPARE(GetFormatCode("GIF"), 0);
        QCOMPARE(GetFormatCode("png"), 0);
        QCOMPARE(GetFormatCode(""), 0);
    }

    void jpegQualityRule()
    {
        QCOMPARE(jpegPercentOfQuality(9), 91);  // the stored default
        QCOMPARE(jpegPercentOfQuality(1), 99);
        QCOMPARE(jpegPercentOfQuality(99), 1);
        QCOMPARE(jpegPercentOfQuality(0), 91);
        QCOMPARE(jpegPercentOfQuality(255), 1);
    }

    void qualityAppliesToTheNextSave()
    {
        QTemporaryDir dir;
        const QImage img = colourPicture(200, 150);
        QCOMPARE(writePictureFile({img}, dir.filePath("fine.jpg"), 10, 24, 1, QString()), 0);
        QCOMPARE(writePictureFile({img}, dir.filePath("small.jpg"), 10, 24, 90, QString()), 0);
        QVERIFY(QFileInfo(dir.filePath("fine.jpg")).size() > 2 * QFileInfo(dir.filePath("small.jpg")).size());
    }

    void bitsRules()
    {
        QTemporaryDir dir;
        // A colour picture in a format of one bit per pixel is refused, and nothing is written.
        QCOMPARE(writePictureFile({colourPicture(20, 20)}, dir.filePath("x.jbg"), 115, 24, 9, QString()),
                 int(ImagingInvalidBitsPerPixel));
        QVERIFY(filesIn(dir.path()).isEmpty());
        QVERIFY(formatTakesBits(75, 1));
        QVERIFY(formatTakesBits(10, 8));
        QVERIFY(!formatTakesBits(129, 24));
        // A format nothing here writes.
        QCOMPARE(writePictureFile({colourPicture(20, 20)}, dir.filePath("x.wmf"), 15, 24, 9, QString()),
                 int(ImagingFormatNotAvailable));
        QCOMPARE(writePictureFile({QImage()}, dir.filePath("x.png"), 75, 24, 9, QString()),
                 int(ImagingInvalidBitmap));
    }

    // Every extension a save writes: saved, opened again, the same size; the lossless ones
    // with the same pixels.
    void roundTrip_data()
    {
        QTest::addColumn<QString>("ext");
        for (const QString &e : writableExtensions()) QTest::newRow(qPrintable(e)) << e;
    }
    void roundTrip()
    {
        QFETCH(QString, ext);
        // JPEG is lossy; EPS goes through PostScript and back; XPM keeps a palette of at most
        // 256 colours.
        static const QStringList lossy{"JPG", "JPE", "JPEG", "EPS", "GIF", "XPM"};
        static const QStringList oneBit{"JBG", "CAL"};
        QTemporaryDir dir;
        const int format = GetFormatCode(ext);
        const QString path = dir.filePath("round." + ext.toLower());
        const bool bw = oneBit.contains(ext);
        const QSize size(37, 23);
        const QImage img =
            bw ? blackWhitePicture(size.width(), size.height()) : colourPicture(size.width(), size.height());
        const int bits = bw ? 1 : 24;
        QString detail;
        QCOMPARE(writePictureFile({img}, path, format, bits, 9, QString(), &detail), 0);
        Picture back;
        const int status = decodePictureFile(path, 1, false, &back, &detail);
        QVERIFY2(status == 0, qPrintable(ext + ": " + detail));
        QCOMPARE(back.frames.first().size(), img.size());
        if (!lossy.contains(ext)) QVERIFY2(samePixels(back.frames.first(), img), qPrintable(ext));
    }

    void writableListIsTheReadmeColumn()
    {
        // The README's formats table lists exactly these as "saves".
        QCOMPARE(writableExtensions(), QStringList({"JPG", "JPE", "JPEG", "TIFF", "TIF", "MPT", "BMP", "ICO",
                                                    "CUR", "PCX", "DCX",  "XPM",  "PBM", "PSD", "PNG", "TGA",
                                                    "EPS", "JBG", "RAS",  "PCT",  "XWD", "SGI", "CAL"}));
    }

    void exifAndIccKept()
    {
        const QString fixture = qEnvironmentVariable("TW_SOURCE_DIR") + "/tests/fixtures/exif.jpg";
        if (!QFile::exists(fixture)) QSKIP("fixture exif.jpg not found");
        QTemporaryDir dir;
        Picture pic;
        QCOMPARE(decodePictureFile(fixture, 1, false, &pic), 0);
        for (const QString &name :
             {QStringLiteral("k.jpg"), QStringLiteral("k.png")}) {  // ImageMagick puts no EXIF in a TIFF
            const QString out = dir.filePath(name);
            const int format = GetFormatCode(GetFileExt(out));
            QCOMPARE(writePictureFile(pic.frames, out, format, 24, 9, fixture), 0);
            QStringList names, values;
            QCOMPARE(magick::exifFacts(out, &names, &values), magick::Status::Ok);
            QVERIFY2(names.contains("Make"), qPrintable(name));
            QCOMPARE(values.value(names.indexOf("Make")), QStringLiteral("Tarnwick Test Camera"));
        }
        // The JPEG keeps the segment as it stood, behind the JFIF marker.
        const QByteArray jpeg = bytesOf(dir.filePath("k.jpg"));
        QVERIFY(jpegMetadataSegments(jpeg).contains("Tarnwick Test Camera"));
        QCOMPARE(jpeg.mid(2, 2), QByteArray("\xFF\xE0", 2));

        // An ICC profile goes along too.
        const QString iccFile = "/usr/share/color/icc/ghostscript/srgb.icc";
        if (!QFile::exists(iccFile)) QSKIP("no ICC profile on this machine");
        const QByteArray icc = bytesOf(iccFile);
        QImage withIcc = colourPicture(30, 20);
        withIcc.setColorSpace(QColorSpace::fromIccProfile(icc));
        const QString src = dir.filePath("icc.jpg");
        QVERIFY(QImageWriter(src, "jpeg").write(withIcc));
        Picture p2;
        QCOMPARE(decodePictureFile(src, 1, false, &p2), 0);
        for (const QString &name :
             {QStringLiteral("i.jpg"), QStringLiteral("i.png"), QStringLiteral("i.tif")}) {
            const QString out = dir.filePath(name);
            QCOMPARE(writePictureFile(p2.frames, out, GetFormatCode(GetFileExt(out)), 24, 9, src), 0);
            QByteArray exif, got;
            QCOMPARE(magick::readProfiles(out, &exif, &got), magick::Status::Ok);
            QVERIFY2(!got.isEmpty(), qPrintable(name));
        }
    }

    // The multi-page choice of a conversion appends a page to a file that has pages.
    void multiPageAppends()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("pages.tif");
        ImagingControl c;
        c.setImage(colourPicture(20, 10), 24);
        QCOMPARE(c.save(path, 3, 24, 9, 0), 0);
        c.setImage(blackWhitePicture(20, 10), 24);
        QCOMPARE(c.save(path, 3, 24, 9, 1), 0);
        Picture all;
        QCOMPARE(decodePictureFile(path, 1, true, &all), 0);
        QCOMPARE(all.frames.size(), 2);
        QVERIFY(samePixels(all.frames[0], colourPicture(20, 10)));
        QVERIFY(samePixels(all.frames[1], blackWhitePicture(20, 10)));
        QCOMPARE(filesIn(dir.path()), QStringList{"pages.tif"});
    }

    void saveOverItself()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("self.png");
        QVERIFY(colourPicture(40, 30).save(path));
        Picture pic;
        QCOMPARE(decodePictureFile(path, 1, false, &pic), 0);
        QCOMPARE(writePictureFile(pic.frames, path, 75, 24, 9, path), 0);
        Picture back;
        QCOMPARE(decodePictureFile(path, 1, false, &back), 0);
        QVERIFY(samePixels(back.frames.first(), colourPicture(40, 30)));
        QCOMPARE(filesIn(dir.path()), QStringList{"self.png"});
    }

    void readOnlyFolderKeepsTheOldFile()
    {
        if (::geteuid() != 0) QSKIP("needs root to switch to the nobody user");
        QTemporaryDir dir;
        QFile::setPermissions(dir.path(),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadOther
                                  | QFile::ExeOther);
        const QString path = dir.filePath("old.png");
        QVERIFY(colourPicture(10, 10).save(path));
        const QByteArray before = bytesOf(path);
        const pid_t pid = ::fork();
        QVERIFY(pid >= 0);
        if (pid == 0) {
            if (::setgid(65534) != 0 || ::setuid(65534) != 0) ::_exit(100);
            const int s = writePictureFile({colourPicture(50, 50)}, path, 75, 24, 9, QString());
            ::_exit(s == 0 ? 1 : 0);
        }
        int status = 0;
        ::waitpid(pid, &status, 0);
        QVERIFY(WIFEXITED(status));
        QCOMPARE(WEXITSTATUS(status), 0);
        QCOMPARE(bytesOf(path), before);
        QCOMPARE(filesIn(dir.path()), QStringList{"old.png"});
    }

    void fileSizeLimitKeepsTheOldFile()
    {
        // A write stopped part way by the file size limit (a disk that fills up behaves the
        // same): the target stays as it was and the temporary file is gone.
        QTemporaryDir dir;
        const QString path = dir.filePath("old.bmp");
        QVERIFY(colourPicture(10, 10).save(path));
        const QByteArray before = bytesOf(path);
        const QString copyTarget = dir.filePath("copy.bmp");
        const QString big = dir.filePath("big.raw");
        {
            QFile f(big);
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write(QByteArray(600 * 1024, 'x'));
        }
        const pid_t pid = ::fork();
        QVERIFY(pid >= 0);
        if (pid == 0) {
            ::signal(SIGXFSZ, SIG_IGN);
            rlimit lim{256 * 1024, 256 * 1024};
            if (::setrlimit(RLIMIT_FSIZE, &lim) != 0) ::_exit(100);
            int failures = 0;
            if (writePictureFile({colourPicture(600, 400)}, path, 6, 24, 9, QString()) == 0) failures |= 1;
            std::error_code ec;
            if (copyFileNoReplace(big, copyTarget, &ec) != CopyResult::Failed) failures |= 2;
            ::_exit(failures);
        }
        int status = 0;
        ::waitpid(pid, &status, 0);
        QVERIFY(WIFEXITED(status));
        QCOMPARE(WEXITSTATUS(status), 0);
        QCOMPARE(bytesOf(path), before);
        QCOMPARE(filesIn(dir.path()), QStringList({"big.raw", "old.bmp"}));
    }

    void fullDiskKeepsTheOldFile()
    {
        QTemporaryDir dir;
        const QString mnt = dir.filePath("small-disk");
        QDir().mkpath(mnt);
        if (::mount("tmpfs", QFile::encodeName(mnt).constData(), "tmpfs", 0, "size=128k") != 0)
            QSKIP("cannot mount a small tmpfs here (not root)");
        struct Unmount {
            QString m;
            ~Unmount() { ::umount(QFile::encodeName(m).constData()); }
        } unmount{mnt};
        const QString path = mnt + "/old.bmp";
        QVERIFY(colourPicture(10, 10).save(path));
        const QByteArray before = bytesOf(path);
        QVERIFY(writePictureFile({colourPicture(600, 400)}, path, 6, 24, 9, QString()) != 0);
        QCOMPARE(bytesOf(path), before);
        QCOMPARE(filesIn(mnt), QStringList{"old.bmp"});
        // A copy that does not fit leaves nothing, the source as it was.
        {
            QFile f(dir.filePath("big.raw"));
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write(QByteArray(400 * 1024, 'y'));
        }
        QCOMPARE(copyFileNoReplace(dir.filePath("big.raw"), mnt + "/big.raw"), CopyResult::Failed);
        QCOMPARE(filesIn(mnt), QStringList{"old.bmp"});
    }

    void copyNeverReplaces()
    {
        QTemporaryDir dir;
        const QString a = dir.filePath("a.avi"), b = dir.filePath("b.avi");
        QFile fa(a), fb(b);
        QVERIFY(fa.open(QIODevice::WriteOnly) && fa.write("aaa") == 3);
        fa.close();
        QVERIFY(fb.open(QIODevice::WriteOnly) && fb.write("bbb") == 3);
        fb.close();
        QCOMPARE(copyFileNoReplace(a, b), CopyResult::TargetExists);
        QCOMPARE(bytesOf(b), QByteArray("bbb"));
        QCOMPARE(copyFileNoReplace(a, a), CopyResult::TargetExists);
        std::error_code ec;
        QCOMPARE(copyFileNoReplace(dir.filePath("none.avi"), dir.filePath("c.avi"), &ec), CopyResult::Failed);
        QVERIFY(ec == std::errc::no_such_file_or_directory);
        QCOMPARE(copyFileNoReplace(a, dir.filePath("c.avi")), CopyResult::Copied);
        QCOMPARE(bytesOf(dir.filePath("c.avi")), QByteArray("aaa"));
        QCOMPARE(filesIn(dir.path()), QStringList({"a.avi", "b.avi", "c.avi"}));
    }

    void jpegSegments()
    {
        const QByteArray jpeg("\xFF\xD8\xFF\xE0\x00\x04JF\xFF\xDA\x00\x02", 12);
        const QByteArray app1("\xFF\xE1\x00\x06"
                              "Exif",
                              8);
        const QByteArray out = insertJpegSegments(jpeg, app1);
        QCOMPARE(out, QByteArray("\xFF\xD8\xFF\xE0\x00\x04JF", 8) + app1 + QByteArray("\xFF\xDA\x00\x02", 4));
        QCOMPARE(jpegMetadataSegments(out), app1);
        // Not a JPEG, or damaged lengths: nothing found, nothing changed.
        QCOMPARE(insertJpegSegments("GIF89a", app1), QByteArray("GIF89a"));
        QCOMPARE(jpegMetadataSegments(QByteArray("\xFF\xD8\xFF\xE1\xFF\xFF", 6)), QByteArray());
    }

    void dialogFilters()
    {
        QCOMPARE(qtNameFilters("*.JPG|*.JPG"), QStringList{"*.JPG (*.JPG *.jpg)"});
        QCOMPARE(qtNameFilters("Microsoft Fax |*.AWD|Dr. Halo|*.CUT"),
                 QStringList({"Microsoft Fax (*.AWD *.awd)", "Dr. Halo (*.CUT *.cut)"}));
        QCOMPARE(firstExtensionOfFilter("TIFF Formats (*.TIFF *.tiff *.TIF *.tif)"), QStringLiteral("TIFF"));
        QCOMPARE(firstExtensionOfFilter("nothing"), QString());
    }

    // SANE reads its configuration folder once per process: each case runs in a child.
    static int inChild(const QByteArray &saneConfig, const std::function<int()> &body)
    {
        const pid_t pid = ::fork();
        if (pid < 0) return -1;
        if (pid == 0) {
            qputenv("SANE_CONFIG_DIR", saneConfig);
            ::_exit(body());
        }
        int status = 0;
        ::waitpid(pid, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -2;
    }

    void scannerTestBackend()
    {
        const QString conf = qEnvironmentVariable("TW_SOURCE_DIR") + "/tests/fixtures/sane";
        if (!QFile::exists(conf + "/dll.conf")) QSKIP("no SANE fixture");
        const int failures = inChild(QFile::encodeName(conf), [] {
            int f = 0;
            QList<scanner::Device> devices;
            if (scanner::listDevices(&devices) != 0 || devices.isEmpty()) f |= 1;
            else if (devices.first().name != QLatin1String("test:0")) f |= 2;
            QImage img;
            int bits = 0;
            if (scanner::scan(QString(), &img, &bits) != 0) f |= 4;
            if (img.isNull() || img.width() < 10 || img.height() < 10 || bits != 24) f |= 8;
            // Cancelled after the first piece of data: the cancel status, no picture.
            QImage none;
            int calls = 0;
            if (scanner::scan("test:0", &none, &bits, [&calls] { return ++calls < 2; }) != scanner::Cancelled)
                f |= 16;
            if (!none.isNull()) f |= 32;
            // A device that is not there.
            if (scanner::scan("test:9", &none, &bits) != scanner::NoDataSource) f |= 64;
            return f;
        });
        QCOMPARE(failures, 0);
        QCOMPARE(GetImagingErrorText(scanner::Cancelled), QStringLiteral("Twain operation was cancelled"));
    }

    void scannerNoDevice()
    {
        QTemporaryDir dir;
        QFile f(dir.filePath("dll.conf"));
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.close();
        const int failures = inChild(QFile::encodeName(dir.path()), [] {
            int r = 0;
            QList<scanner::Device> devices;
            if (scanner::listDevices(&devices) != 0 || !devices.isEmpty()) r |= 1;
            QImage img;
            int bits = 0;
            if (scanner::scan(QString(), &img, &bits) != scanner::NoDataSource) r |= 2;
            return r;
        });
        QCOMPARE(failures, 0);
        QCOMPARE(imagingErrorMessage(scanner::NoDataSource),
                 QStringLiteral("Error '20082, Twain no Data Source' was generated."));
    }
};

QTEST_MAIN(SavingTest)
#include "saving_test.moc"
