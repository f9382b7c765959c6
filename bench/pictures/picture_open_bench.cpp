// Opening a 24-megapixel JPEG until its first paint, in Normal and in Fit mode, against
// djpeg decoding the same file in the same run; peak memory while it is shown; and the
// time of one repaint during keyboard zoom and pan. A timed run, not a test.
#include "app/tarnwick1.h"
#include "../../tests/common/process_status.h"
#include "core/tool_manager.h"
#include "core/options_store.h"
#include "pictures/decoder_pool.h"
#include "pictures/imaging_control.h"
#include "pictures/picture_decoder.h"
#include "pictures/pictures_module.h"

#include <QDir>
#include <QListWidget>

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextStream>
#include <cstdio>

using namespace tw;

namespace {

void resetPeak()
{
    QFile f(QStringLiteral("/proc/self/clear_refs"));
    if (f.open(QIODevice::WriteOnly)) f.write("5");
}

double djpegMs(const QString &file)
{
    double best = 1e9;
    for (int i = 0; i < 3; ++i) {
        QElapsedTimer t;
        t.start();
        QProcess p;
        p.start(QStringLiteral("djpeg"), {QStringLiteral("-outfile"), QStringLiteral("/dev/null"), file});
        p.waitForFinished(-1);
        best = std::min(best, t.nsecsElapsed() / 1e6);
    }
    return best;
}

double openUntilPaint(const QString &file, int sizeMode)
{
    double best = 1e9;
    for (int i = 0; i < 3; ++i) {
        QWidget frame;
        frame.resize(1024, 700);
        auto *c = new ImagingControl(&frame);
        c->resize(1000, 680);
        c->setSizeMode(sizeMode);
        frame.show();
        QApplication::processEvents();
        const int before = c->paintCount();
        QElapsedTimer t;
        t.start();
        if (c->load(file, 0, 1, 1) != 0) return -1;
        c->getFileInfo(file, 1, 0);
        while (c->paintCount() == before) QApplication::processEvents(QEventLoop::AllEvents, 5);
        best = std::min(best, t.nsecsElapsed() / 1e6);
    }
    return best;
}

// The whole road of a double click: DisplayFile on the main window until Image1 has painted
// the picture. Fit: the Fit command right after the load, until it has painted again.
double displayFileUntilPaint(const QString &file, bool fit)
{
    double best = 1e9;
    for (int i = 0; i < 3; ++i) {
        tw::Tarnwick1 w{QString()};
        w.resize(1024, 700);
        w.show();
        w.activated();
        QApplication::processEvents();
        auto *pictures = static_cast<PicturesModule *>(w.page(2));
        pictures->ensureBuilt();
        ImagingControl *img = pictures->Image1;
        const int before = img->paintCount();
        QElapsedTimer t;
        t.start();
        w.DisplayFile(file);
        while (img->paintCount() == before) QApplication::processEvents(QEventLoop::AllEvents, 5);
        if (fit) {
            const int again = img->paintCount();
            w.ToolBarComp1->action(QStringLiteral("ID_ViewFitImage"))->trigger();
            while (img->paintCount() == again) QApplication::processEvents(QEventLoop::AllEvents, 5);
        }
        best = std::min(best, t.nsecsElapsed() / 1e6);
    }
    return best;
}

// Best of `runs` decodes of `file` (page 1), in milliseconds.
double decodeMs(const QString &file, int runs)
{
    double best = 1e9;
    for (int i = 0; i < runs; ++i) {
        Picture pic;
        QElapsedTimer t;
        t.start();
        QString detail;
        if (const int status = decodePictureFile(file, 1, false, &pic, &detail); status != 0) {
            std::fprintf(stderr, "%s: %d %s\n", qPrintable(file), status, qPrintable(detail));
            return -1;
        }
        best = std::min(best, t.nsecsElapsed() / 1e6);
    }
    return best;
}

// A legacy picture decoded in a helper process against the same decode in this process.
void helperCost(QTextStream &out, const QTemporaryDir &dir)
{
    out << "legacy pictures, 3000x2000, decoded in a helper against in this process (best of 9, "
           "alternated):\n";
    const QString convert = QFile::exists(QStringLiteral("/usr/bin/convert"))
        ? QStringLiteral("/usr/bin/convert")
        : QStringLiteral("convert");
    for (const char *coder : {"PCX", "TGA", "PSD"}) {
        const QString file = dir.filePath(QStringLiteral("legacy.") + QString::fromLatin1(coder).toLower());
        QProcess gen;
        gen.start(convert,
                  {QStringLiteral("-size"), QStringLiteral("3000x2000"), QStringLiteral("plasma:fractal"),
                   QStringLiteral("-seed"), QStringLiteral("7"), QString::fromLatin1(coder) + u':' + file});
        gen.waitForFinished(-1);
        if (!QFile::exists(file)) continue;
        // Warm both ways, then alternate them so that the load of the machine falls on both.
        decoding::setInProcess(true);
        decodeMs(file, 1);
        decoding::setInProcess(false);
        decodeMs(file, 1);
        double here = 1e9, helper = 1e9;
        for (int i = 0; i < 9; ++i) {
            decoding::setInProcess(true);
            here = std::min(here, decodeMs(file, 1));
            decoding::setInProcess(false);
            helper = std::min(helper, decodeMs(file, 1));
        }
        out << "  " << coder << ": helper " << helper << " ms, in process " << here << " ms  ("
            << helper / here << " x)\n";
    }
}

}  // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QTextStream out(stdout);
    QTemporaryDir dir;
    // --legacy: only the decoder helper's cost on legacy pictures.
    if (QCoreApplication::arguments().contains(QStringLiteral("--legacy"))) {
        helperCost(out, dir);
        return 0;
    }
    const QString file = dir.filePath(QStringLiteral("big.jpg"));
    QProcess gen;
    gen.start(QFile::exists(QStringLiteral("/usr/bin/convert")) ? QStringLiteral("/usr/bin/convert")
                                                                : QStringLiteral("convert"),
              {QStringLiteral("-size"), QStringLiteral("6000x4000"), QStringLiteral("gradient:navy-orange"),
               QStringLiteral("-attenuate"), QStringLiteral("0.4"), QStringLiteral("+noise"),
               QStringLiteral("Gaussian"), QStringLiteral("-quality"), QStringLiteral("90"),
               QStringLiteral("JPEG:") + file});
    gen.waitForFinished(-1);
    if (!QFile::exists(file)) {
        out << "could not make the sample picture\n";
        return 1;
    }
    const double djpeg = djpegMs(file);
    const double normal = openUntilPaint(file, ImagingControl::SizeNormal);
    const double fit = openUntilPaint(file, ImagingControl::SizeFit);
    out << "file: 6000x4000 JPEG, " << QFile(file).size() / 1024 << " KiB\n";
    out << "djpeg to /dev/null:        " << djpeg << " ms\n";
    out << "open to first paint, Normal: " << normal << " ms  (" << normal / djpeg << " x djpeg)\n";
    out << "open to first paint, Fit:    " << fit << " ms  (" << fit / djpeg << " x djpeg)\n";
    {
        // The main window reads its settings from a program folder of this run.
        const QString data = dir.filePath(QStringLiteral("data"));
        qputenv("XDG_DATA_HOME", data.toLocal8Bit());
        const QString prog = data + QStringLiteral("/tarnwick");
        QDir().mkpath(prog);
        tw::ColorSettings cs;
        tw::SaveColors(cs, prog);
        tw::OptionSettings os;
        tw::SetDefaultOptions(os, prog);
        os.SaveLastFolder = false;
        tw::SaveOptions(os, prog);
        const double dn = displayFileUntilPaint(file, false);
        const double df = displayFileUntilPaint(file, true);
        out << "DisplayFile to first paint, Normal: " << dn << " ms  (" << dn / djpeg << " x djpeg)\n";
        out << "DisplayFile then Fit, painted:      " << df << " ms  (" << df / djpeg << " x djpeg)\n";
    }

    // Memory while the picture is shown.
    const long base = twtest::statusKiB("VmRSS:");
    resetPeak();
    QWidget frame;
    frame.resize(1024, 700);
    auto *c = new ImagingControl(&frame);
    c->resize(1000, 680);
    frame.show();
    c->load(file, 0, 1, 1);
    ImagingControl copy;  // the untouched copy the picture tab keeps
    copy.assignFrom(*c);
    c->repaint();
    QApplication::processEvents();
    const long hwm = twtest::statusKiB("VmHWM:");
    const double rgba = 6000.0 * 4000.0 * 4.0 / 1024.0;
    out << "decoded RGBA size: " << rgba / 1024 << " MiB\n";
    out << "peak RSS while shown: " << hwm / 1024 << " MiB = " << hwm / rgba
        << " x RGBA (process before the load: " << base / 1024 << " MiB; growth " << (hwm - base) / rgba
        << " x)\n";

    // Keyboard zoom: +5 % steps, one synchronous repaint each; pan: 40-pixel drags.
    QElapsedTimer t;
    int zoom = 100;
    t.start();
    for (int i = 0; i < 20; ++i) {
        zoom += 5;
        c->setZoomPercent(zoom);
        c->viewport()->repaint();
    }
    out << "keyboard zoom repaint: " << t.nsecsElapsed() / 1e6 / 20 << " ms each\n";
    t.restart();
    for (int i = 0; i < 50; ++i) {
        c->setScrollPosition(c->scrollPosition() + QPoint(40, 25));
        c->viewport()->repaint();
    }
    out << "pan repaint: " << t.nsecsElapsed() / 1e6 / 50 << " ms each\n";
    // Keyboard zoom below 100 %: -5 % steps from 100 down to 10 and back up, one synchronous
    // repaint each, the scroll position in the middle; the slowest step, and the memory the
    // process takes on top of the picture meanwhile.
    c->setZoomPercent(100);
    c->setScrollPosition(QPoint(2500, 1600));
    c->viewport()->repaint();
    const long beforeZoom = twtest::statusKiB("VmRSS:");
    resetPeak();
    double slowest = 0, total = 0;
    int steps = 0;
    for (int dir = -1; dir <= 1; dir += 2) {
        for (int i = 0; i < 18; ++i) {
            zoom = dir < 0 ? 95 - 5 * i : 15 + 5 * i;
            c->setZoomPercent(zoom);
            QElapsedTimer one;
            one.start();
            c->viewport()->repaint();
            const double ms = one.nsecsElapsed() / 1e6;
            slowest = std::max(slowest, ms);
            total += ms;
            ++steps;
        }
    }
    const long zoomPeak = twtest::statusKiB("VmHWM:");
    out << "keyboard zoom below 100 % (95..10..100): " << total / steps << " ms each, slowest " << slowest
        << " ms\n";
    out << "memory while zooming: peak " << (zoomPeak - beforeZoom) / 1024.0
        << " MiB over the shown picture (" << (double(zoomPeak) - base) / rgba
        << " x RGBA beyond the process before the load)\n";
    helperCost(out, dir);
    c->setSizeMode(ImagingControl::SizeFit);
    t.restart();
    for (int i = 0; i < 20; ++i) c->viewport()->repaint();
    out << "fit repaint (cached): " << t.nsecsElapsed() / 1e6 / 20 << " ms each\n";
    return 0;
}
