// The picture editors and the print window driven directly: the order and accumulation of
// operations, the preview copy of a large picture, rotations by 0, 360 and -45 degrees, a
// 1 x 1 picture, the edge filters, and the print job written to a PDF file and read back
// with pdftotext and pdfimages.
#include "core/globals.h"
#include "pictures/image_effects.h"
#include "pictures/picture_editors.h"
#include "pictures/print_picture.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPrinter>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>
#include <atomic>
#include <functional>
#include <thread>

using namespace tw;

namespace {

QImage testPicture(int w, int h)
{
    QImage img(w, h, QImage::Format_RGB32);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            img.setPixel(x, y,
                         qRgb(x * 255 / std::max(1, w), y * 255 / std::max(1, h), (x * 7 + y * 13) & 0xFF));
    return img;
}

// Current once the work of the latest change has been painted.
QImage shown(PictureEditor &ed)
{
    ed.settle();
    return ed.currentPreview();
}

QImage undoShown(PictureEditor &ed)
{
    ed.settle();
    return ed.undoPreview();
}

QString run(const QString &program, const QStringList &args)
{
    QProcess p;
    p.start(program, args);
    p.waitForFinished(30000);
    return QString::fromUtf8(p.readAllStandardOutput());
}

}  // namespace

class EditorsTest : public QObject {
    Q_OBJECT
private slots:
    void magickIsThere() { QVERIFY(effects::magickAvailable()); }

    void slidersRebuildFromOriginal()
    {
        ColourEditor ed({});
        ed.loadPicture(testPicture(64, 48));
        ed.FirstActivation = false;
        ed.InvertBtn->click();
        QCOMPARE(ed.operationCount(), 1);
        ed.SCBrightness->setValue(10);
        QCOMPARE(ed.operationCount(), 1);
        QVERIFY(ed.BrightnessSet);
        QCOMPARE(shown(ed), effects::brightness(ed.originalPreview(), 10));
        ed.SCBrightness->setValue(0);
        QVERIFY(!ed.BrightnessSet);
        QVERIFY(ed.EditChanged);
        QCOMPARE(shown(ed), ed.originalPreview());
    }

    void acceptThenUndo()
    {
        ColourEditor ed({});
        ed.loadPicture(testPicture(64, 48));
        ed.FirstActivation = false;
        ed.InvertBtn->click();
        const QImage inverted = shown(ed);
        ed.AcceptBtn[0]->click();
        ed.SCBrightness->setValue(300);
        QVERIFY(shown(ed) != inverted);
        ed.UndoBtn->click();
        QCOMPARE(shown(ed), inverted);
        QVERIFY(!ed.EditChanged);
    }

    void gammaLabel()
    {
        QCOMPARE(ColourEditor::gammaText(150), QStringLiteral("1.5"));
        QCOMPARE(ColourEditor::gammaText(100), QStringLiteral("1"));
        QCOMPARE(ColourEditor::gammaText(1), QStringLiteral("0.01"));
        QCOMPARE(ColourEditor::gammaText(499), QStringLiteral("4.99"));
    }

    void edgeFiltersChangeThePicture()
    {
        const QImage src = testPicture(40, 30);
        for (int code : {22, 23, 24, 25, 27, 28})
            QVERIFY2(effects::edgeFilter(src, code) != src, qPrintable(QString::number(code)));
        QVERIFY(effects::stretchIntensity(src).size() == src.size());
        QVERIFY(effects::hue(src, 90) != src);
        QVERIFY(effects::saturation(src, -1000) != src);
        QVERIFY(effects::histogramContrast(src, 500) != src);
        QVERIFY(effects::colourResolution(src, 1, 0) != src);
    }

    void ownCodeMatchesImageMagick()
    {
        // Posterize, hue, saturation, emboss and the edge filters are worked out here on the
        // picture's own pixels: on a real photograph they give ImageMagick's pixels, each
        // channel within 1.
        QImage photo(QStringLiteral(TW_CORPUS_DIR "/jpg/hopper.jpg"));
        if (photo.isNull()) QSKIP("the corpus photograph is not there");
        photo = photo.convertToFormat(QImage::Format_RGB32);
        auto maxDiff = [](const QImage &a, const QImage &b) {
            if (a.size() != b.size()) return 999;
            int worst = 0;
            for (int y = 0; y < a.height(); ++y) {
                const auto *pa = reinterpret_cast<const QRgb *>(a.constScanLine(y));
                const auto *pb = reinterpret_cast<const QRgb *>(b.constScanLine(y));
                for (int x = 0; x < a.width(); ++x)
                    worst = std::max({worst, std::abs(qRed(pa[x]) - qRed(pb[x])),
                                      std::abs(qGreen(pa[x]) - qGreen(pb[x])),
                                      std::abs(qBlue(pa[x]) - qBlue(pb[x]))});
            }
            return worst;
        };
        auto check = [&](const char *what, const QImage &ours, const QImage &theirs) {
            QVERIFY2(ours != photo || theirs == photo, what);
            const int d = maxDiff(ours, theirs);
            QVERIFY2(d <= 1, qPrintable(QStringLiteral("%1: %2").arg(QLatin1String(what)).arg(d)));
        };
        for (int levels : {2, 3, 10, 64})
            check("posterize", effects::posterize(photo, levels), effects::magick::posterize(photo, levels));
        for (int degrees : {-360, -180, -45, 4, 90, 180, 359})
            check(qPrintable(QStringLiteral("hue %1").arg(degrees)), effects::hue(photo, degrees),
                  effects::magick::hue(photo, degrees));
        for (int value : {-1000, -500, -10, 10, 500, 1000})
            check("saturation", effects::saturation(photo, value), effects::magick::saturation(photo, value));
        for (int direction = 0; direction < 8; ++direction)
            for (int value : {0, 250, 600, 1000})
                check("emboss", effects::emboss(photo, direction, value),
                      effects::magick::emboss(photo, direction, value));
        for (int code : {22, 23, 24, 25, 27, 28})
            check("filter", effects::edgeFilter(photo, code), effects::magick::edgeFilter(photo, code));
        for (int size = 3; size <= 11; ++size)
            check(qPrintable(QStringLiteral("median %1").arg(size)), effects::median(photo, size),
                  effects::magick::median(photo, size));
        for (int value : {-1000, -300, -10, 10, 100, 300, 700, 1000})
            check(qPrintable(QStringLiteral("sharpen %1").arg(value)), effects::sharpen(photo, value),
                  effects::magick::sharpen(photo, value));
        // The measure tells a wrong direction or a wrong hue apart.
        QVERIFY(maxDiff(effects::emboss(photo, 0, 600), effects::magick::emboss(photo, 4, 600)) > 1);
        QVERIFY(maxDiff(effects::hue(photo, 90), effects::magick::hue(photo, -90)) > 1);
        // A picture with transparency goes to ImageMagick for the filters.
        QImage clear = photo.convertToFormat(QImage::Format_ARGB32);
        clear.setPixel(0, 0, qRgba(10, 20, 30, 40));
        QCOMPARE(effects::edgeFilter(clear, 25), effects::magick::edgeFilter(clear, 25));
    }

    void imageMagickFromWorkerThreads()
    {
        // The editors call ImageMagick (through the codec module) from their worker threads,
        // several at a time: each thread's results are what one thread alone gets.
        const QImage src = testPicture(120, 90);
        const std::vector<std::function<QImage()>> ops = {
            [&] { return effects::histogramContrast(src, 400); },
            [&] { return effects::stretchIntensity(src); },
            [&] { return effects::colourResolution(src, 4, 0); },
            [&] { return effects::magick::sharpen(src, -300); },
            [&] { return effects::magick::median(src, 7); },
            [&] { return effects::magick::hue(src, 60); },
            [&] { return effects::magick::edgeFilter(src, 23); },
        };
        std::vector<QImage> alone;
        for (const auto &op : ops) alone.push_back(op());
        std::atomic<int> wrong{0};
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t)
            threads.emplace_back([&] {
                for (int round = 0; round < 2; ++round)
                    for (size_t i = 0; i < ops.size(); ++i)
                        if (ops[i]() != alone[i]) ++wrong;
                if (effects::noise(src, 500, 0).size() != src.size()) ++wrong;
            });
        for (std::thread &t : threads) t.join();
        QCOMPARE(wrong.load(), 0);
    }

    void posterizeStepsDifferFromOneJump()
    {
        EffectsEditor stepped({});
        stepped.loadPicture(testPicture(80, 60));
        for (int v = 3; v <= 10; ++v) stepped.SCPosterize->setValue(v);
        EffectsEditor jumped({});
        jumped.loadPicture(testPicture(80, 60));
        jumped.SCPosterize->setValue(10);
        QCOMPARE(stepped.operationCount(), 8);
        QCOMPARE(jumped.operationCount(), 1);
        QVERIFY(shown(stepped) != shown(jumped));
        QCOMPARE(stepped.Label3[0]->text(), QStringLiteral("10"));
    }

    void restoreAtRestRunsNothing()
    {
        EffectsEditor ed({});
        ed.loadPicture(testPicture(50, 40));
        ed.RestoreBtn->click();
        QCOMPARE(ed.operationCount(), 0);
        QCOMPARE(shown(ed), ed.originalPreview());
        QVERIFY(!ed.EditChanged);
    }

    void rotationCountsFromTheLastPosition()
    {
        EffectsEditor ed({});
        const QImage src = testPicture(60, 60);
        ed.loadPicture(src);
        ed.SCRotateFree->setValue(30);
        ed.SCRotateFree->setValue(40);
        QCOMPARE(ed.RotatePosition, 40);
        QCOMPARE(ed.RotateDegrees, 40);
        QCOMPARE(ed.Text1->text(), QStringLiteral("40"));
        QCOMPARE(shown(ed), effects::rotate(effects::rotate(src, 3000, 0xFFFFFFFF), 1000, 0xFFFFFFFF));
        // Accept makes one clean turn from the undo copy and counts the slider from 0 again.
        ed.AcceptBtn[6]->click();
        QCOMPARE(shown(ed), effects::rotate(src, 4000, 0xFFFFFFFF));
        QCOMPARE(ed.RotatePosition, 0);
        QCOMPARE(ed.SCRotateFree->value(), 40);
        ed.SCRotateFree->setValue(41);
        QCOMPARE(shown(ed), effects::rotate(effects::rotate(src, 4000, 0xFFFFFFFF), 4100, 0xFFFFFFFF));
    }

    void rotationEdges()
    {
        const QImage src = testPicture(31, 17);
        QCOMPARE(effects::rotate(src, 0, 0xFFFFFFFF), src);
        QCOMPARE(effects::rotate(src, 36000, 0xFFFFFFFF), src);
        const QImage minus = effects::rotate(src, -4500, 0xFF00FF00);
        QCOMPARE(minus.size(), src.size());
        QCOMPARE(minus.pixel(0, 0), qRgb(0, 255, 0));  // a corner takes the background
        QCOMPARE(effects::rotate(effects::rotate(src, 18000, 0), 18000, 0), src);
    }

    void quarterTurnsFlipReverse()
    {
        EffectsEditor ed({});
        const QImage src = testPicture(40, 40);
        ed.loadPicture(src);
        ed.FlipBtn->click();
        QCOMPARE(shown(ed), src.mirrored(false, true));
        QCOMPARE(undoShown(ed), src);
        ed.ReverseBtn->click();
        QCOMPARE(shown(ed), src.mirrored(true, true));
        ed.RotateAngle[1]->click();
        QCOMPARE(shown(ed), src);
        QVERIFY(ed.EditChanged);
    }

    void list1BeforeFirstActivationDoesNothing()
    {
        EffectsEditor ed({});
        ed.loadPicture(testPicture(40, 40));
        QVERIFY(ed.FirstActivation);
        ed.List1->setCurrentRow(3);
        ed.List1_Click();
        QCOMPARE(ed.EmbossDirection, 0);
        QCOMPARE(ed.operationCount(), 0);
        ed.FirstActivation = false;
        ed.List1_Click();
        QCOMPARE(ed.EmbossDirection, 3);
        QCOMPARE(ed.operationCount(), 1);
    }

    void plusOnMedianAtTheTopStays()
    {
        EffectsEditor ed({});
        ed.loadPicture(testPicture(30, 30));
        ed.show();
        ed.SCMedian->setValue(11);
        ed.SCMedian->setFocus();
        QTest::keyClick(ed.SCMedian, Qt::Key_Plus);
        QCOMPARE(ed.SCMedian->value(), 11);
        QTest::keyClick(ed.SCMedian, Qt::Key_Minus);
        QCOMPARE(ed.SCMedian->value(), 10);
    }

    void everySliderAtBothEndsOnOnePixel()
    {
        EffectsEditor fx({});
        fx.loadPicture(testPicture(1, 1));
        for (QScrollBar *b : {fx.SCPosterize, fx.SCMosiac, fx.SCMedian, fx.SCSharpen, fx.SCNoise, fx.SCEmboss,
                              fx.SCRotateFree}) {
            b->setValue(b->minimum());
            b->setValue(b->maximum());
        }
        QCOMPARE(fx.fullCurrent().size(), QSize(1, 1));
        ColourEditor col({});
        col.loadPicture(testPicture(1, 1));
        for (QScrollBar *b : {col.SCContrast, col.SCBrightness, col.SCHalfTone, col.SCHistContrast, col.SCHue,
                              col.SCSaturation, col.SCGamma}) {
            b->setValue(b->minimum());
            b->setValue(b->maximum());
        }
        col.PrewittBtn->click();
        col.IntensityBtn->click();
        QCOMPARE(col.fullCurrent().size(), QSize(1, 1));
    }

    void largePictureWorksOnAPreviewAndAppliesInFull()
    {
        QImage big(6000, 4000, QImage::Format_RGB32);
        big.fill(qRgb(200, 100, 50));
        QImage applied;
        EditorLink link;
        link.setMainPicture = [&](const QImage &img) { applied = img; };
        ColourEditor ed(link);
        ed.loadPicture(big);
        QCOMPARE(std::max(shown(ed).width(), shown(ed).height()), PictureEditor::PreviewSide);
        QElapsedTimer t;
        t.start();
        ed.SCBrightness->setValue(100);
        QVERIFY2(t.elapsed() < 1000, qPrintable(QString::number(t.elapsed())));
        ed.ApplyBtn->click();
        QCOMPARE(applied.size(), big.size());
        QCOMPARE(QColor(applied.pixel(3000, 2000)),
                 QColor(effects::brightness(big.copy(0, 0, 1, 1), 100).pixel(0, 0)));
    }

    void quickChangesShowOnlyTheLast()
    {
        // Many value changes in a row: the older ones' work is stale and never shown; what
        // stays on Image2, and what Apply takes, is the last value's.
        const QImage src = testPicture(1600, 1200);
        QImage applied;
        EditorLink link;
        link.setMainPicture = [&](const QImage &img) { applied = img; };
        ColourEditor ed(link);
        ed.loadPicture(src);
        ed.FirstActivation = false;
        QList<QImage> painted;
        connect(ed.Image2, &EditorPicture::pictureSet, &ed, [&](const QImage &img) { painted.append(img); });
        int changes = 0;
        for (int v = 10; v <= 600; v += 10, ++changes) {
            ed.SCBrightness->setValue(v);
            if (changes % 5 == 0) QCoreApplication::processEvents();
        }
        QVERIFY(ed.working());
        QTRY_VERIFY_WITH_TIMEOUT(!ed.working(), 10000);
        QVERIFY(!painted.isEmpty());
        QVERIFY2(painted.size() < changes, qPrintable(QString::number(painted.size())));
        const QImage last = effects::brightness(ed.originalPreview(), 600);
        QCOMPARE(painted.last(), last);
        QCOMPARE(ed.currentPreview(), last);
        // Nothing stale arrives later.
        QTest::qWait(100);
        QCOMPARE(ed.currentPreview(), last);
        ed.ApplyBtn->click();
        QCOMPARE(applied, effects::brightness(src, 600));
    }

    void applyWaitsForTheLatestFullResult()
    {
        // Apply right after a change, before any work has been done: the full picture of the
        // latest settings, never an older one.
        const QImage src = testPicture(1500, 1000);
        QImage applied;
        EditorLink link;
        link.setMainPicture = [&](const QImage &img) { applied = img; };
        EffectsEditor ed(link);
        ed.loadPicture(src);
        ed.SCPosterize->setValue(4);
        ed.SCPosterize->setValue(6);
        ed.ApplyBtn->click();
        QCOMPARE(applied, effects::posterize(effects::posterize(src, 4), 6));
        QVERIFY(!ed.working());
    }

    void slidersAtBothEnds()
    {
        // Every slider of both editors to its least and its greatest value on an ordinary
        // picture: Current keeps its size, and Apply's full picture too.
        const QImage src = testPicture(900, 600);
        QImage applied;
        EditorLink link;
        link.setMainPicture = [&](const QImage &img) { applied = img; };
        EffectsEditor fx(link);
        fx.loadPicture(src);
        for (QScrollBar *b : {fx.SCPosterize, fx.SCMosiac, fx.SCMedian, fx.SCSharpen, fx.SCNoise, fx.SCEmboss,
                              fx.SCRotateFree}) {
            b->setValue(b->minimum());
            b->setValue(b->maximum());
            b->setValue(b->minimum());
        }
        fx.ApplyBtn->click();
        QCOMPARE(applied.size(), src.size());
        QCOMPARE(shown(fx).size(), fx.originalPreview().size());
        ColourEditor col(link);
        col.loadPicture(src);
        col.FirstActivation = false;
        for (QScrollBar *b : {col.SCContrast, col.SCBrightness, col.SCHalfTone, col.SCHistContrast, col.SCHue,
                              col.SCSaturation, col.SCGamma}) {
            b->setValue(b->minimum());
            b->setValue(b->maximum());
        }
        col.ApplyBtn->click();
        QCOMPARE(applied.size(), src.size());
        // Brightness at 1000 and contrast at 1000 leave no dark pixel.
        QCOMPARE(qGray(shown(col).pixel(10, 10)) > 0, true);
    }

    void noPictureMessage()
    {
        // The load fails with the imaging error in the box; the editor holds nothing and
        // Apply does nothing.
        QTimer::singleShot(0, [] {
            for (QWidget *w : QApplication::topLevelWidgets())
                if (auto *box = qobject_cast<QMessageBox *>(w)) {
                    QVERIFY(box->text().startsWith(QStringLiteral("Error - ")));
                    box->accept();
                }
        });
        bool applied = false;
        EditorLink link;
        link.setMainPicture = [&](const QImage &) { applied = true; };
        ColourEditor ed(link);
        QVERIFY(!ed.LoadEditorImages(QStringLiteral("/nonexistent/none.png")));
        ed.ApplyBtn->click();
        QVERIFY(!applied);
    }

    void printToPdf()
    {
        QTemporaryDir dir;
        const QString pic = dir.filePath(QStringLiteral("garden.png"));
        testPicture(400, 300).save(pic);
        PrintPicture w(pic);
        QCOMPARE(w.TxtTitle->text(), QStringLiteral("garden.png"));
        QCOMPARE(w.Label1_0->text(), QStringLiteral("garden.png"));
        QVERIFY(w.RDTITLEPOS_0->isChecked());
        w.TxtTitle->setText(QStringLiteral("My Holiday Title"));
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        const QString pdf = dir.filePath(QStringLiteral("out.pdf"));
        printer.setOutputFileName(pdf);
        printer.setPageSize(QPageSize(QPageSize::A4));
        QVERIFY(w.PrintPictureFile(printer));
        QVERIFY(w.Frame3->isVisibleTo(&w));
        const QString text =
            run(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
        QVERIFY2(text.contains(QStringLiteral("My Holiday Title")), qPrintable(text));
        QVERIFY2(text.contains(QStringLiteral("garden.png")), qPrintable(text));
        const QString images = run(QStringLiteral("pdfimages"), {QStringLiteral("-list"), pdf});
        QVERIFY2(images.split(u'\n').filter(QStringLiteral("image")).size() >= 1, qPrintable(images));
        // The picture's place is the miniature sheet's, scaled to the page.
        QCOMPARE(w.px, w.PageWidth * (w.TxtLeft->text().toDouble() / w.sheetWidth()));
        QCOMPARE(w.pw, w.PageWidth * w.imageWidth() / w.sheetWidth());
        QVERIFY(w.labelY < w.py);  // above the picture
    }

    void smallPictureIsEnlargedAndTooFarRightIsCentred()
    {
        QTemporaryDir dir;
        const QString pic = dir.filePath(QStringLiteral("small.png"));
        testPicture(100, 100).save(pic);
        PrintPicture w(pic);
        w.PreviewBusy = false;
        w.TxtLeft->setText(QStringLiteral("3000"));
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(dir.filePath(QStringLiteral("s.pdf")));
        QVERIFY(w.PrintPictureFile(printer));
        QCOMPARE(w.BitmapWidth, 100 * 5 * w.DotsX);
        QCOMPARE(w.BitmapHeight, 100.0 * 5 * w.DotsY);
        // The typed left is overridden: the picture is centred.
        QVERIFY(w.pw + w.PageWidth * 3000 / w.sheetWidth() > w.PrintWidth);
        QCOMPARE(w.px, 0.07 * w.PageWidth / 2 + (w.PageWidth - w.pw) / 2);
    }

    void emptyFilePrintsHeadingAndLabelOnly()
    {
        QTemporaryDir dir;
        PrintPicture w(QString{});
        w.Label1_0->setText(QString());
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        const QString pdf = dir.filePath(QStringLiteral("e.pdf"));
        printer.setOutputFileName(pdf);
        w.TxtTitle->setText(QStringLiteral("Only a Title"));
        QVERIFY(w.PrintPictureFile(printer));
        QCOMPARE(w.px, 0.0);
        QCOMPARE(w.py, 0.0);
        QCOMPARE(w.pw, 0.0);
        QVERIFY(run(QStringLiteral("pdftotext"), {pdf, QStringLiteral("-")})
                    .contains(QStringLiteral("Only a Title")));
        QVERIFY(run(QStringLiteral("pdfimages"), {QStringLiteral("-list"), pdf})
                    .split(u'\n')
                    .filter(QStringLiteral(" image "))
                    .isEmpty());
    }

    void emptyLabelPrintsAnEmptyLine()
    {
        // The label's caption empty with a picture: an empty line where the label goes, the
        // picture and the title printed, and the job ends normally.
        QTemporaryDir dir;
        const QString pic = dir.filePath(QStringLiteral("meadow.png"));
        testPicture(300, 200).save(pic);
        PrintPicture w(pic);
        w.PreviewBusy = false;
        w.Label1_0->setText(QString());
        w.TxtTitle->setText(QStringLiteral("Title Without Label"));
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        const QString pdf = dir.filePath(QStringLiteral("l.pdf"));
        printer.setOutputFileName(pdf);
        QVERIFY(w.PrintPictureFile(printer));
        QVERIFY(w.pw > 0);
        const QString text = run(QStringLiteral("pdftotext"), {pdf, QStringLiteral("-")});
        QVERIFY2(text.contains(QStringLiteral("Title Without Label")), qPrintable(text));
        QVERIFY2(!text.contains(QStringLiteral("meadow.png")), qPrintable(text));
        QVERIFY(run(QStringLiteral("pdfimages"), {QStringLiteral("-list"), pdf})
                    .split(u'\n')
                    .filter(QStringLiteral("image"))
                    .size()
                >= 1);
    }

    void abovePictureAtTheTopGoesNegative()
    {
        QTemporaryDir dir;
        const QString pic = dir.filePath(QStringLiteral("p.png"));
        testPicture(300, 200).save(pic);
        PrintPicture w(pic);
        w.PreviewBusy = false;
        w.TxtTop->setText(QStringLiteral("0"));
        QCOMPARE(w.imageTop(), 0.0);
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(dir.filePath(QStringLiteral("n.pdf")));
        QVERIFY(w.PrintPictureFile(printer));
        QVERIFY(w.labelY < 0);
    }

    void leftWorksWhileBusyTheOthersDoNot()
    {
        PrintPicture w(QString{});
        QVERIFY(w.PreviewBusy);
        const double top = w.imageTop();
        w.TxtLeft->setText(QStringLiteral("300"));
        QCOMPARE(w.imageLeft(), 300.0);
        w.TxtTop->setText(QStringLiteral("900"));
        QCOMPARE(w.imageTop(), top);
        w.PreviewBusy = false;
        w.TxtTop->setText(QStringLiteral("900abc"));
        QCOMPARE(w.imageTop(), 900.0);
        w.RDTITLEPOS_1->setChecked(true);
        QCOMPARE(w.TitlePosition, QStringLiteral("B"));
        QVERIFY(std::abs(w.Label1_0->y() * 15.0 - (900.0 + w.imageHeight() + 100)) <= 15);
    }
};

QTEST_MAIN(EditorsTest)
#include "editors_test.moc"
