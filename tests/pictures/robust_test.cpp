// Files that crash, freeze or swell a picture decoder: the program survives each of them,
// its window keeps running while the decoder works, Escape gives up the wait, and the
// decoder helper that failed is replaced for the next picture.
#include "pictures/decoder_pool.h"
#include "../common/process_status.h"
#include "pictures/imaging_control.h"
#include "pictures/imaging_errors.h"
#include "pictures/picture_decoder.h"
#include "bad_files.h"
#include "test_support.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <csignal>
#include <tiffio.h>

using namespace tw;

namespace {

using twtest::endlessEps;
using twtest::jbigWithSize;
const QByteArray CrashingSize = twtest::CrashingJbigSize;
const QByteArray FreezingSize = twtest::FreezingJbigSize;

// A TIFF of `pages` grey pages of w x h, deflate-compressed (small on disk, large decoded).
bool writeManyPageTiff(const QString &path, int pages, int w, int h)
{
    TIFF *t = TIFFOpen(QFile::encodeName(path).constData(), "w");
    if (!t) return false;
    QByteArray row(w, '\x80');
    for (int p = 0; p < pages; ++p) {
        TIFFSetField(t, TIFFTAG_IMAGEWIDTH, w);
        TIFFSetField(t, TIFFTAG_IMAGELENGTH, h);
        TIFFSetField(t, TIFFTAG_BITSPERSAMPLE, 8);
        TIFFSetField(t, TIFFTAG_SAMPLESPERPIXEL, 1);
        TIFFSetField(t, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
        TIFFSetField(t, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
        TIFFSetField(t, TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE);
        TIFFSetField(t, TIFFTAG_ROWSPERSTRIP, h);
        TIFFSetField(t, TIFFTAG_SUBFILETYPE, FILETYPE_PAGE);
        TIFFSetField(t, TIFFTAG_PAGENUMBER, p, pages);
        for (int y = 0; y < h; ++y) {
            if (TIFFWriteScanline(t, row.data(), uint32_t(y), 0) < 0) {
                TIFFClose(t);
                return false;
            }
        }
        TIFFWriteDirectory(t);
    }
    TIFFClose(t);
    return true;
}

}  // namespace

class RobustTest : public QObject {
    Q_OBJECT
private slots:
    void init() { decoding::setTimeoutMs(5000); }

    void helpersAreReadyBeforeTheFirstLegacyPicture()
    {
        QVERIFY2(!decoding::helperPath().isEmpty(), "tarnwick-decoder not found beside the codec module");
        decoding::warmUp();
        QVERIFY(decoding::helpersRunning() >= 2);
    }

    void aWaitingHelperThatDiedIsPassedOver()
    {
        if (!twtest::haveCorpus()) QSKIP("no corpus");
        decoding::warmUp();
        // Kill every helper there is from outside, as the system might.
        QProcess ps;
        ps.start(QStringLiteral("pgrep"),
                 {QStringLiteral("-P"), QString::number(QCoreApplication::applicationPid()),
                  QStringLiteral("^tarnwick-decod")});  // the name as the kernel keeps it (15 characters)
        ps.waitForFinished();
        const QList<QByteArray> pids = ps.readAllStandardOutput().split('\n');
        int killed = 0;
        for (const QByteArray &p : pids)
            if (p.trimmed().toInt() > 0) killed += ::kill(p.trimmed().toInt(), SIGKILL) == 0;
        QVERIFY(killed >= 2);
        QTest::qWait(100);
        Picture good;
        QCOMPARE(decodePictureFile(twtest::corpus(QStringLiteral("pcx/input.pcx")), 1, false, &good), 0);
        QVERIFY(!good.isNull());
    }

    void crashingJbigFailsAndTheNextPictureOpens()
    {
        if (!twtest::haveCorpus()) QSKIP("no corpus");
        QTemporaryDir dir;
        const QString bad = jbigWithSize(dir.path(), QStringLiteral("crash.jbg"), CrashingSize);
        QVERIFY(!bad.isEmpty());
        Picture pic;
        QString detail;
        const int started = decoding::helpersStarted();
        const int status = decodePictureFile(bad, 1, false, &pic, &detail);
        QVERIFY2(status == ImagingReadError || status == ImagingNoMemory || status == ImagingInvalidFormat,
                 qPrintable(QString::number(status) + QLatin1Char(' ') + detail));
        QVERIFY(!GetImagingErrorText(status).isEmpty());
        QVERIFY(pic.isNull());
        // The program is still here; the next legacy picture opens in a helper as before.
        Picture good;
        QCOMPARE(decodePictureFile(twtest::corpus(QStringLiteral("pcx/input.pcx")), 1, false, &good), 0);
        QVERIFY(!good.isNull());
        QVERIFY(decoding::helpersRunning() >= 2);
        qInfo() << "crashing JBIG:" << status << detail << "helpers started"
                << decoding::helpersStarted() - started;
    }

    void freezingJbigIsStoppedAndTheWindowKeepsRunning()
    {
        if (!twtest::haveCorpus()) QSKIP("no corpus");
        QTemporaryDir dir;
        const QString bad = jbigWithSize(dir.path(), QStringLiteral("freeze.jbg"), FreezingSize);
        decoding::setTimeoutMs(2000);
        int ticks = 0;
        QTimer tick;
        connect(&tick, &QTimer::timeout, this, [&] { ++ticks; });
        tick.start(50);
        QElapsedTimer t;
        t.start();
        Picture pic;
        QString detail;
        const int status = decodePictureFile(bad, 1, false, &pic, &detail);
        const qint64 ms = t.elapsed();
        QVERIFY2(status != ImagingOk, qPrintable(detail));
        QVERIFY(!GetImagingErrorText(status).isEmpty());
        // Within the time allowed (twice: the load tries the file as a picture, then its facts).
        QVERIFY2(ms < 2 * 2000 + 2000, qPrintable(QString::number(ms)));
        qInfo() << "freezing JBIG:" << status << detail << ms << "ms," << ticks << "timer ticks meanwhile";
        if (ms > 500) QVERIFY2(ticks > 0, "the event loop did not run while the picture decoded");
    }

    void aDecoderThatHangsIsKilledInTime()
    {
        QTemporaryDir dir;
        const QString bad = endlessEps(dir.path());
        decoding::setTimeoutMs(1500);
        int ticks = 0;
        QTimer tick;
        connect(&tick, &QTimer::timeout, this, [&] { ++ticks; });
        tick.start(50);
        QElapsedTimer t;
        t.start();
        Picture pic;
        QString detail;
        const int status = decodePictureFile(bad, 1, false, &pic, &detail);
        const qint64 ms = t.elapsed();
        QCOMPARE(status, int(ImagingReadError));
        QCOMPARE(GetImagingErrorText(status), QStringLiteral("Error reading file"));
        QVERIFY2(ms >= 1400 && ms < 3500, qPrintable(QString::number(ms)));
        QVERIFY2(detail.contains(QLatin1String("took longer")), qPrintable(detail));
        QVERIFY2(ticks >= 10, qPrintable(QString::number(ticks)));  // the event loop ran meanwhile
        // No Ghostscript left spinning after its helper was killed.
        QProcess ps;
        ps.start(QStringLiteral("pgrep"), {QStringLiteral("-f"), bad});
        ps.waitForFinished();
        QCOMPARE(ps.readAllStandardOutput().trimmed(), QByteArray());
        QVERIFY(decoding::helpersRunning() >= 2);
    }

    void escapeAbandonsADecode()
    {
        if (!twtest::haveCorpus()) QSKIP("no corpus");
        QTemporaryDir dir;
        const QString bad = endlessEps(dir.path());
        decoding::setTimeoutMs(8000);
        QWidget w;
        w.show();
        QTimer::singleShot(300, &w, [&w] {
            QKeyEvent *e = new QKeyEvent(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
            QCoreApplication::postEvent(&w, e);
        });
        QElapsedTimer t;
        t.start();
        Picture pic;
        QString detail;
        const int status = decodePictureFile(bad, 1, false, &pic, &detail);
        const qint64 ms = t.elapsed();
        QCOMPARE(status, int(ImagingEscapePressed));
        QCOMPARE(GetImagingErrorText(status), QStringLiteral("Escape key pressed"));
        QVERIFY2(ms < 3000, qPrintable(QString::number(ms)));
    }

    void closingTheWindowAbandonsADecodeAndThenCloses()
    {
        if (!twtest::haveCorpus()) QSKIP("no corpus");
        QTemporaryDir dir;
        const QString bad = endlessEps(dir.path());
        decoding::setTimeoutMs(8000);
        QWidget w;
        w.show();
        QTimer::singleShot(300, &w, [&w] { w.close(); });
        QElapsedTimer t;
        t.start();
        Picture pic;
        const int status = decodePictureFile(bad, 1, false, &pic);
        QCOMPARE(status, int(ImagingEscapePressed));
        QVERIFY(t.elapsed() < 3000);
        QVERIFY(w.isVisible());  // not closed in the middle of the load ...
        QTRY_VERIFY(!w.isVisible());  // ... but right after it
    }

    void inputWaitsWhileAPictureDecodes()
    {
        if (!twtest::haveCorpus()) QSKIP("no corpus");
        QTemporaryDir dir;
        const QString bad = endlessEps(dir.path());
        decoding::setTimeoutMs(1000);
        QWidget w;
        w.show();
        int keys = 0;
        struct Counter : QObject {
            int *n;
            bool eventFilter(QObject *, QEvent *e) override
            {
                if (e->type() == QEvent::KeyPress) ++*n;
                return false;
            }
        } counter;
        counter.n = &keys;
        w.installEventFilter(&counter);
        QTimer::singleShot(200, &w, [&w] {
            QCoreApplication::postEvent(&w, new QKeyEvent(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, "a"));
        });
        Picture pic;
        decodePictureFile(bad, 1, false, &pic);
        QCOMPARE(keys, 0);
    }

    void manyPageTiffAsAnimationIsCappedInAll()
    {
        QTemporaryDir dir;
        // 160 pages of a megapixel: 640 MB decoded, over the cap on all frames together.
        const QString path = dir.path() + QStringLiteral("/pages.ani");
        QVERIFY(writeManyPageTiff(path, 160, 1000, 1000));
        QVERIFY(QFileInfo(path).size() < 4 * 1024 * 1024);
        decoding::setTimeoutMs(20000);
        QElapsedTimer t;
        t.start();
        Picture pic;
        QString detail;
        const int status = decodePictureFile(path, 0, true, &pic, &detail);
        QCOMPARE(status, int(ImagingNoMemory));
        QVERIFY(pic.isNull());
        qInfo() << "160-page TIFF as .ani:" << detail << t.elapsed() << "ms";
        // A few pages are an animation like any other.
        const QString few = dir.path() + QStringLiteral("/few.ani");
        QVERIFY(writeManyPageTiff(few, 3, 64, 48));
        QCOMPARE(decodePictureFile(few, 0, true, &pic), 0);
        QCOMPARE(pic.frames.size(), 3);
        QCOMPARE(pic.frames.first().size(), QSize(64, 48));
    }

    void aLargePictureUnderZoomStaysWithinItsMemory()
    {
        // 6000 x 4000 (24 megapixels, 96 MB decoded), zoomed by keyboard steps from 100 % down
        // to 5 % and up to 300 %, repainted at each step.
        QWidget frame;
        frame.resize(1024, 700);
        auto *c = new ImagingControl(&frame);
        c->resize(1000, 680);
        frame.show();
        {
            QImage big(6000, 4000, QImage::Format_RGB32);
            for (int y = 0; y < big.height(); ++y) {
                auto *line = reinterpret_cast<QRgb *>(big.scanLine(y));
                for (int x = 0; x < big.width(); ++x) line[x] = qRgb(x & 0xFF, y & 0xFF, (x ^ y) & 0xFF);
            }
            Picture p;
            p.frames.append(big);
            p.delaysMs.append(0);
            p.bitsPerPixel = 24;
            c->setPicture(p);
        }
        QVERIFY(QTest::qWaitForWindowExposed(&frame));
        QApplication::processEvents();
        const double decoded = 6000.0 * 4000 * 4;
        const int64_t viewBytes = int64_t(c->viewport()->width()) * c->viewport()->height() * 4;
        QFile clear(QStringLiteral("/proc/self/clear_refs"));
        const bool canReset = clear.open(QIODevice::WriteOnly) && clear.write("5") == 1;
        clear.close();
        const long before = twtest::statusKiB("VmRSS:");
        QList<int> steps;
        for (int z = 95; z >= 5; z -= 5) steps << z;
        for (int z = 10; z <= 300; z += 5) steps << z;
        for (int z : steps) {
            c->setZoomPercent(z);
            const int painted = c->paintCount();
            c->viewport()->repaint();
            QCOMPARE(c->paintCount(), painted + 1);
            // Only the part that shows is kept scaled: never more than the control's own size.
            QVERIFY2(c->paintCacheBytes()
                         <= viewBytes + 4 * (c->viewport()->width() + c->viewport()->height() + 4),
                     qPrintable(QStringLiteral("zoom %1: %2 bytes kept").arg(z).arg(c->paintCacheBytes())));
        }
        // The scroll position at a small zoom moves the part that is scaled, not the whole.
        c->setZoomPercent(50);
        c->setScrollPosition(QPoint(1200, 700));
        c->viewport()->repaint();
        QVERIFY(c->paintCacheBytes() <= viewBytes + 4 * 4000);
        if (canReset) {
            const long peak = twtest::statusKiB("VmHWM:");
            // Beyond the picture itself (already counted in `before`), at most half of it more.
            QVERIFY2(
                (peak - before) * 1024.0 <= 0.5 * decoded,
                qPrintable(QStringLiteral("peak grew by %1 MiB while zooming").arg((peak - before) / 1024)));
            qInfo() << "zoom 100 -> 5 -> 300 %: peak grew by" << (peak - before) / 1024 << "MiB over the"
                    << decoded / 1048576 << "MiB picture";
        }
    }

    void legacyPicturesMatchInProcessDecoding()
    {
        if (!twtest::haveCorpus()) QSKIP("no corpus");
        for (const char *f :
             {"pcx/input.pcx", "tga/200x32_rgb_bl_rle.tga", "psd/input.psd", "flc/2422.flc"}) {
            const QString path = twtest::corpus(QLatin1String(f));
            if (!QFile::exists(path)) continue;
            Picture viaHelper, here;
            const int a = decodePictureFile(path, 1, false, &viaHelper);
            decoding::setInProcess(true);
            const int b = decodePictureFile(path, 1, false, &here);
            decoding::setInProcess(false);
            QCOMPARE(a, b);
            if (a != 0) continue;
            QCOMPARE(viaHelper.frames.size(), here.frames.size());
            QCOMPARE(viaHelper.bitsPerPixel, here.bitsPerPixel);
            const QImage x = viaHelper.frames.first(), y = here.frames.first();
            QCOMPARE(x.size(), y.size());
            QCOMPARE(x.format(), y.format());
            int differ = 0;
            for (int r = 0; r < x.height(); ++r)
                for (int c = 0; c < x.width(); ++c) {
                    if (x.pixel(c, r) != y.pixel(c, r) && !differ)
                        qInfo() << f << c << r << Qt::hex << x.pixel(c, r) << y.pixel(c, r);
                    differ += x.pixel(c, r) != y.pixel(c, r);
                }
            QVERIFY2(differ == 0,
                     qPrintable(QString::fromLatin1(f) + QStringLiteral(": ") + QString::number(differ)
                                + QStringLiteral(" pixels differ")));
        }
    }
};

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    RobustTest t;
    return QTest::qExec(&t, argc, argv);
}

#include "robust_test.moc"
