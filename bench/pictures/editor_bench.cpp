// The picture editors on a 12-megapixel picture: for each slider and filter, the time from
// the value change to Current painted (the preview copy, worked out on a worker thread), and
// the same operation on the full picture (what Apply and Save run), against ImageMagick's
// convert doing that operation on the same file (decode included on both sides) in the same
// run. A timed run, not a test: the slider best of three; the full picture and convert best
// of five, taken in turns so that a busy moment of the machine weighs on both alike.
#include "pictures/image_effects.h"
#include "bench_timing.h"
#include "pictures/picture_decoder.h"
#include "pictures/imaging_control.h"
#include "pictures/picture_editors.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextStream>
#include <functional>

using namespace tw;
using twbench::bestOf3;
using twbench::runTool;

namespace {

struct Case {
    const char *name;
    std::function<QScrollBar *(ColourEditor &, EffectsEditor &)> bar;  // the slider, or null
    int value;
    std::function<QImage(const QImage &)> op;
    QStringList convertArgs;
};

}  // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QTextStream out(stdout);
    QTemporaryDir dir;
    const QString convert = QStringLiteral("/usr/bin/convert");
    const QString src = dir.filePath(QStringLiteral("big.jpg"));
    runTool(convert,
            {QStringLiteral("-size"), QStringLiteral("4000x3000"), QStringLiteral("gradient:navy-orange"),
             QStringLiteral("-attenuate"), QStringLiteral("0.4"), QStringLiteral("+noise"),
             QStringLiteral("Gaussian"), QStringLiteral("JPEG:") + src});
    Picture pic;
    if (decodePictureFile(src, 1, false, &pic) != 0 || pic.isNull()) {
        out << "could not make the sample picture\n";
        return 1;
    }
    const QImage full = pic.frames.first();
    ColourEditor colours({});
    EffectsEditor fx({});
    colours.loadPicture(full);
    fx.loadPicture(full);
    colours.FirstActivation = false;
    colours.resize(900, 700);
    fx.resize(900, 700);
    colours.show();
    fx.show();
    auto S = [](const char *s) { return QString::fromLatin1(s).split(u' '); };
    const QList<Case> cases = {
        {"brightness", [](ColourEditor &c, EffectsEditor &) { return c.SCBrightness; }, 200,
         [](const QImage &i) { return effects::brightness(i, 200); }, S("-brightness-contrast 20x0")},
        {"contrast", [](ColourEditor &c, EffectsEditor &) { return c.SCContrast; }, 300,
         [](const QImage &i) { return effects::contrast(i, 300); }, S("-brightness-contrast 0x30")},
        {"gamma", [](ColourEditor &c, EffectsEditor &) { return c.SCGamma; }, 150,
         [](const QImage &i) { return effects::gamma(i, 150); }, S("-gamma 1.5")},
        {"hue", [](ColourEditor &c, EffectsEditor &) { return c.SCHue; }, 90,
         [](const QImage &i) { return effects::hue(i, 90); }, S("-modulate 100,100,150")},
        {"saturation", [](ColourEditor &c, EffectsEditor &) { return c.SCSaturation; }, 500,
         [](const QImage &i) { return effects::saturation(i, 500); }, S("-modulate 100,150,100")},
        {"posterize", [](ColourEditor &, EffectsEditor &f) { return f.SCPosterize; }, 10,
         [](const QImage &i) { return effects::posterize(i, 10); }, S("-posterize 10")},
        {"mosaic", [](ColourEditor &, EffectsEditor &f) { return f.SCMosiac; }, 16,
         [](const QImage &i) { return effects::mosaic(i, 16); }, S("-scale 6.25% -scale 1600%")},
        {"median", [](ColourEditor &, EffectsEditor &f) { return f.SCMedian; }, 5,
         [](const QImage &i) { return effects::median(i, 5); }, S("-median 2")},
        {"sharpen", [](ColourEditor &, EffectsEditor &f) { return f.SCSharpen; }, 300,
         [](const QImage &i) { return effects::sharpen(i, 300); }, S("-sharpen 0x1.2")},
        {"blur", [](ColourEditor &, EffectsEditor &f) { return f.SCSharpen; }, -300,
         [](const QImage &i) { return effects::sharpen(i, -300); }, S("-blur 0x1.2")},
        {"emboss", [](ColourEditor &, EffectsEditor &f) { return f.SCEmboss; }, 600,
         [](const QImage &i) { return effects::emboss(i, 0, 600); },
         S("-morphology Convolve 3:0,2.4,0,0,1,0,0,-2.4,0")},
        {"rotate 30", [](ColourEditor &, EffectsEditor &f) { return f.SCRotateFree; }, 30,
         [](const QImage &i) { return effects::rotate(i, 3000, 0xFFFFFFFF); }, S("-rotate 30")},
        {"prewitt", nullptr, 0, [](const QImage &i) { return effects::edgeFilter(i, 25); },
         S("-morphology Convolve Prewitt")},
    };
    out << "4000x3000 JPEG; times in ms (slider best of 3; full picture and convert best of 5, in turns)\n";
    out << "operation      slider-to-painted  full picture (decode+op)  convert (decode+op)  full/convert\n";
    for (const Case &c : cases) {
        double slider = 0;
        if (c.bar) {
            QScrollBar *b = c.bar(colours, fx);
            PictureEditor &editor = b->window() == &colours ? static_cast<PictureEditor &>(colours)
                                                            : static_cast<PictureEditor &>(fx);
            EditorPicture *target = editor.Image2;
            // A value not met before each time, so no move finds its result already worked out.
            int step = 0;
            slider = bestOf3([&] {
                b->setValue(c.value - step++);
                editor.settle();  // the worker's preview result, painted
                target->repaint();
            });
            editor.fullCurrent();  // the full picture's work done before the next timing
        }
        double ours = 1e12, theirs = 1e12;
        for (int round = 0; round < 5; ++round) {
            QElapsedTimer t;
            t.start();
            {
                Picture p;
                decodePictureFile(src, 1, false, &p);
                volatile int w = c.op(p.frames.first()).width();
                (void)w;
            }
            ours = std::min(ours, t.nsecsElapsed() / 1e6);
            t.restart();
            runTool(convert, QStringList{src} + c.convertArgs + QStringList{QStringLiteral("null:")});
            theirs = std::min(theirs, t.nsecsElapsed() / 1e6);
        }
        out << QStringLiteral("%1 %2 %3 %4 %5\n")
                   .arg(QString::fromLatin1(c.name), -14)
                   .arg(c.bar ? QString::number(slider, 'f', 1) : QStringLiteral("(button)"), 18)
                   .arg(ours, 25, 'f', 1)
                   .arg(theirs, 20, 'f', 1)
                   .arg(ours / theirs, 13, 'f', 2);
        out.flush();
    }
    return 0;
}
