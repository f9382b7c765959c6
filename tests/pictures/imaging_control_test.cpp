// The imaging control's operations: handles that copy, size modes, zoom, units, drag pan,
// magnifier, pan window, regions, resize, brightness and contrast, clipboard, file facts,
// and the fetch of an address from a small HTTP server started here.
#include "test_picture.h"
#include "pictures/imaging_control.h"
#include "pictures/imaging_errors.h"
#include "test_support.h"
#include "tiny_http.h"

#include <QApplication>
#include <QBuffer>
#include <QClipboard>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace tw;
using twtest::testPicture;
using twtest::TinyHttp;

class ImagingControlTest : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;

private slots:
    void handleIsAnIndependentCopy()
    {
        ImagingControl a, b;
        a.setImage(testPicture(40, 30));
        b.assignFrom(a);
        QCOMPARE(b.pixelWidth(), 40);
        // Copy on write: the pixels are shared until one side changes.
        QCOMPARE(a.image().constBits(), b.image().constBits());
        a.setEllipseRegion(QRectF(0, 0, 40, 30));
        QCOMPARE(a.fillRegion(0x00FF00), 0);
        QVERIFY(a.image().constBits() != b.image().constBits());
        QCOMPARE(QColor(b.image().pixel(20, 15)), QColor(40, 80, 160));
        QCOMPARE(QColor(a.image().pixel(20, 15)), QColor(0, 255, 0));
        a.clearPicture();
        QCOMPARE(a.bitsPerPixel(), 0);
        QCOMPARE(b.bitsPerPixel(), 24);
    }

    void unitsAndSizes()
    {
        ImagingControl c;
        c.setImage(testPicture(100, 50));
        c.setScaleUnit(ImagingControl::UnitTwips);
        QCOMPARE(c.bitmapWidth(), 1500.0);
        QCOMPARE(c.bitmapHeight(), 750.0);
        c.setControlWidth(3000);
        QCOMPARE(c.width(), 200);
        c.setScaleUnit(ImagingControl::UnitPixels);
        QCOMPARE(c.bitmapWidth(), 100.0);
        QCOMPARE(c.controlWidth(), 200.0);
        QCOMPARE(c.pixelHeight(), 50);
    }

    void autoSizeAndZoom()
    {
        ImagingControl c;
        c.setBorderStyle(1);
        c.setAutoSize(true);
        c.setImage(testPicture(120, 80));
        const int fw = c.frameWidth() * 2;
        QCOMPARE(c.size(), QSize(120 + fw, 80 + fw));
        c.setZoomPercent(200);
        QCOMPARE(c.size(), QSize(240 + fw, 160 + fw));
        c.setZoomPercent(0);
        QCOMPARE(c.zoomPercent(), 1);
    }

    // A picture that fits the control shows whole, with no scroll bar, even when the
    // control was too small for it a moment before; one that does not fit scrolls, and a bar
    // along one side comes only when the picture needs it there.
    void scrollBarsOnlyWhereThePictureDoesNotFit()
    {
        ImagingControl c;
        c.setBorderStyle(1);
        c.resize(20, 20);
        c.show();
        c.setImage(testPicture(64, 48));
        QCoreApplication::processEvents();
        QVERIFY(c.horizontalScrollBar()->isVisible() && c.verticalScrollBar()->isVisible());
        c.setAutoSize(true);
        QCoreApplication::processEvents();
        const int fw = c.frameWidth() * 2;
        QCOMPARE(c.size(), QSize(64 + fw, 48 + fw));
        QVERIFY(!c.horizontalScrollBar()->isVisible());
        QVERIFY(!c.verticalScrollBar()->isVisible());
        QCOMPARE(c.viewport()->size(), QSize(64, 48));
        // Wider than the control, and low enough to keep its height with the bar below it.
        c.setAutoSize(false);
        c.resize(40 + fw, 48 + fw + c.horizontalScrollBar()->sizeHint().height());
        QCoreApplication::processEvents();
        QVERIFY(c.horizontalScrollBar()->isVisible());
        QVERIFY(!c.verticalScrollBar()->isVisible());
        QCOMPARE(c.horizontalScrollBar()->maximum(), 64 - 40);
        // Large enough again.
        c.resize(100, 100);
        QCoreApplication::processEvents();
        QVERIFY(!c.horizontalScrollBar()->isVisible());
        QVERIFY(!c.verticalScrollBar()->isVisible());
    }

    void sizeModesPaint()
    {
        ImagingControl c;
        c.resize(200, 100);
        c.setImage(testPicture(100, 100));
        c.setSizeMode(ImagingControl::SizeFit);
        c.show();
        QVERIFY(QTest::qWaitForWindowExposed(&c));
        QRectF r = c.displayRect();
        QCOMPARE(r.height(), double(c.viewport()->height()));
        QCOMPARE(r.width(), r.height());
        c.setSizeMode(ImagingControl::SizeStretch);
        r = c.displayRect();
        QCOMPARE(r.size(), QSizeF(c.viewport()->size()));
        const int before = c.paintCount();
        c.setPainting(false);
        c.redraw();
        QTRY_VERIFY(c.paintCount() > before);
        const QImage shot = c.viewport()->grab().toImage();
        QCOMPARE(QColor(shot.pixel(shot.width() - 3, shot.height() - 3)), QColor(40, 80, 160));
        QCOMPARE(QColor(shot.pixel(3, 3)), QColor(200, 30, 30));
    }

    void dragPanScrolls()
    {
        ImagingControl c;
        c.resize(100, 100);
        c.setImage(testPicture(400, 400));
        c.setDragPan(true);
        c.show();
        QVERIFY(QTest::qWaitForWindowExposed(&c));
        QCOMPARE(c.scrollPosition(), QPoint(0, 0));
        QTest::mousePress(c.viewport(), Qt::LeftButton, {}, QPoint(60, 60));
        QMouseEvent move(QEvent::MouseMove, QPointF(20, 30), c.viewport()->mapToGlobal(QPointF(20, 30)),
                         Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(c.viewport(), &move);
        QTest::mouseRelease(c.viewport(), Qt::LeftButton, {}, QPoint(20, 30));
        QCOMPARE(c.scrollPosition(), QPoint(40, 30));
        c.setDragPan(false);
        QTest::mousePress(c.viewport(), Qt::LeftButton, {}, QPoint(60, 60));
        QApplication::sendEvent(c.viewport(), &move);
        QTest::mouseRelease(c.viewport(), Qt::LeftButton, {}, QPoint(20, 30));
        QCOMPARE(c.scrollPosition(), QPoint(40, 30));
    }

    void magnifierFollowsMouse()
    {
        ImagingControl c;
        c.resize(300, 300);
        c.setImage(testPicture(300, 300));
        c.show();
        QVERIFY(QTest::qWaitForWindowExposed(&c));
        c.startMagnifier(150.0, 100.0, 200, 0, 0xFFFFFF, false, 1.0, true, 1, true, true);
        QVERIFY(c.magnifierOn());
        c.magnifyAt(QPoint(200, 200));
        MagnifierGlass *g = c.magnifierGlass();
        QCOMPARE(g->size(), QSize(150, 100));
        QCOMPARE(g->zoomPercent(), 200);
        QVERIFY(g->isVisible());
        QCOMPARE(g->geometry().center(), QPoint(199, 199));
        const QImage shot = g->grab().toImage();
        QCOMPARE(QColor(shot.pixel(75, 50)), QColor(40, 80, 160));
        c.stopMagnifier();
        QVERIFY(!c.magnifierOn());
    }

    void panWindow()
    {
        ImagingControl c;
        c.resize(100, 80);
        c.setImage(testPicture(400, 320));
        c.show();
        QVERIFY(QTest::qWaitForWindowExposed(&c));
        auto &p = c.panWindowProps();
        p.left = 400;
        p.top = 400;
        p.caption = QStringLiteral("Pan Window");
        QCOMPARE(c.showPanWindow(true), 0);
        PanWindow *w = c.panWindow();
        QVERIFY(w && w->isVisible());
        QCOMPARE(w->windowTitle(), QStringLiteral("Pan Window"));
        QCOMPARE(w->geometry().topLeft(), QPoint(400, 400));
        const QRectF before = w->viewRect();
        QVERIFY(before.width() < w->width());
        w->centreViewAt(QPointF(w->width() / 2.0, w->height() / 2.0));
        QVERIFY(c.scrollPosition().x() > 0 && c.scrollPosition().y() > 0);
        QVERIFY(w->viewRect().center().x() > before.center().x());
        const QImage shot = w->grab().toImage();
        bool red = false;
        for (int x = 0; x < shot.width() && !red; ++x)
            for (int y = 0; y < shot.height() && !red; ++y)
                red = QColor(shot.pixel(x, y)) == QColor(255, 0, 0);
        QVERIFY2(red, "the rectangle is drawn in colour 255");
        QCOMPARE(c.showPanWindow(false), 0);
        QVERIFY(!w->isVisible());
        ImagingControl empty;
        QVERIFY(empty.showPanWindow(true) != 0);
    }

    void regionsByMouse()
    {
        ImagingControl c;
        c.resize(200, 200);
        c.setImage(testPicture(200, 200));
        c.setRegionMarking(3);
        c.show();
        QVERIFY(QTest::qWaitForWindowExposed(&c));
        QSignalSpy clicks(&c, &ImagingControl::clicked);
        QTest::mousePress(c.viewport(), Qt::LeftButton, {}, QPoint(100, 100));
        QMouseEvent move(QEvent::MouseMove, QPointF(160, 140), c.viewport()->mapToGlobal(QPointF(160, 140)),
                         Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(c.viewport(), &move);
        QTest::mouseRelease(c.viewport(), Qt::LeftButton, {}, QPoint(160, 140));
        QVERIFY(c.hasRegion());
        QCOMPARE(c.regionWidth(), 60 * 15.0);  // twips, the default unit
        c.setScaleUnit(ImagingControl::UnitPixels);
        QCOMPARE(c.regionHeight(), 40.0);
        QCOMPARE(clicks.count(), 1);
        QCOMPARE(c.fillRegion(0x0000FF), 0);
        QCOMPARE(QColor(c.image().pixel(130, 120)), QColor(255, 0, 0));
        QCOMPARE(QColor(c.image().pixel(101, 101)),
                 QColor(40, 80, 160));  // corner of the box, outside the ellipse
        c.freeRegion();
        QVERIFY(!c.hasRegion());
        QVERIFY(c.fillRegion(0) != 0);
    }

    void resizeAndAdjust()
    {
        ImagingControl c;
        c.setImage(testPicture(100, 60));
        QCOMPARE(c.resizeBitmap(50, 30, 0), 0);
        QCOMPARE(c.image().size(), QSize(50, 30));
        QCOMPARE(c.resizeBitmap(300, 200, 2), 0);
        QCOMPARE(c.image().size(), QSize(300, 200));
        QVERIFY(c.resizeBitmap(0, 10, 0) != 0);
        const QColor before(c.image().pixel(250, 150));
        QCOMPARE(c.changeBrightness(40), 0);
        const QColor brighter(c.image().pixel(250, 150));
        QVERIFY(brighter.value() > before.value());
        QCOMPARE(c.changeContrast(-60), 0);
        ImagingControl empty;
        QVERIFY(empty.changeBrightness(10) != 0);
    }

    void clipboard()
    {
        ImagingControl c;
        c.setImage(testPicture(30, 20));
        QCOMPARE(c.copyToClipboard(14), 0);
        const QMimeData *m = QApplication::clipboard()->mimeData();
        QVERIFY(m);
        QVERIFY(m->hasFormat(QStringLiteral("image/png")));
        QVERIFY(m->hasFormat(QStringLiteral("image/bmp")));
        QImage back;
        QVERIFY(back.loadFromData(m->data(QStringLiteral("image/png")), "PNG"));
        QCOMPARE(back.size(), QSize(30, 20));
        ImagingControl empty;
        QVERIFY(empty.copyToClipboard(14) != 0);
    }

    void fileFactsAndLoad()
    {
        const QString path = dir_.filePath(QStringLiteral("facts.png"));
        QVERIFY(testPicture(64, 32).save(path, "PNG"));
        ImagingControl c;
        QCOMPARE(c.getFileInfo(path, 1, 0), 0);
        const FileFacts &f = c.fileFacts();
        QCOMPARE(f.width, 64);
        QCOMPARE(f.height, 32);
        QCOMPARE(f.format, 75);
        QCOMPARE(f.formatName, QStringLiteral("Portable Network Graphics"));
        QCOMPARE(f.sizeDisk, QFileInfo(path).size());
        QVERIFY(f.sizeMem >= 64 * 32 * 3);
        QVERIFY(f.bitsPerPixel >= 24);
        QCOMPARE(c.bitsPerPixel(), 0);  // facts do not load the picture
        QCOMPARE(c.load(path, 0, 1, 1), 0);
        QCOMPARE(c.pixelWidth(), 64);
        // A failed load keeps what the control held.
        QVERIFY(c.load(dir_.filePath(QStringLiteral("none.png")), 0, 1, 1) != 0);
        QCOMPARE(c.pixelWidth(), 64);
    }

    void saveFormats()
    {
        ImagingControl c;
        c.setImage(testPicture(40, 30));
        const QList<QPair<int, const char *>> formats{{10, "jpg"},  {3, "tif"},   {6, "bmp"},  {75, "png"},
                                                      {1, "pcx"},   {4, "tga"},   {55, "ras"}, {142, "sgi"},
                                                      {113, "xwd"}, {109, "xpm"}, {76, "psd"}, {16, "eps"}};
        for (const auto &[format, ext] : formats) {
            const QString path = dir_.filePath(QStringLiteral("saved.") + QLatin1String(ext));
            QCOMPARE(c.save(path, format, 0, 0, 0), 0);
            ImagingControl back;
            QCOMPARE(back.load(path, 0, 1, 1), 0);
            QCOMPARE(back.pixelWidth(), 40);
        }
        QCOMPARE(c.save(dir_.filePath(QStringLiteral("x.wpg")), 54, 0, 0, 0), int(ImagingFormatNotAvailable));
    }

    void animationLoops()
    {
        ImagingControl c;
        Picture p;
        for (QColor col : {QColor(Qt::red), QColor(Qt::blue)}) {
            QImage f(10, 10, QImage::Format_RGB32);
            f.fill(col);
            p.frames << f;
            p.delaysMs << 30;
        }
        p.bitsPerPixel = 24;
        c.setAnimationLoop(true);
        c.setAnimationPlay(true);
        c.setPicture(p);
        QTRY_COMPARE(c.frameIndex(), 1);
        QTRY_COMPARE(c.frameIndex(), 0);  // looped
        c.setAnimationPlay(false);
    }

    void fetch()
    {
        QByteArray png;
        {
            QBuffer b(&png);
            b.open(QIODevice::WriteOnly);
            testPicture(48, 36).save(&b, "PNG");
        }
        TinyHttp server(png);
        QVERIFY(server.isListening());
        ImagingControl c;
        QSignalSpy states(&c, &ImagingControl::readyStateChanged);
        QSignalSpy finished(&c, &ImagingControl::loadFinished);

        c.setSourceAddress(server.url("/pic.png"));
        QCOMPARE(c.readyState(), 1);
        // The "loading" report comes from the event loop, after the call that started it.
        QCOMPARE(states.count(), 0);
        QCOMPARE(c.sourceAddress(), server.url("/pic.png"));
        QTRY_COMPARE(c.readyState(), 4);
        QCOMPARE(finished.count(), 1);
        QCOMPARE(c.pixelWidth(), 48);
        QCOMPARE(states.first().first().toInt(), 1);
        QCOMPARE(states.last().first().toInt(), 4);

        states.clear();
        c.setSourceAddress(server.url("/missing.png"));
        QTRY_COMPARE(c.readyState(), 0);
        QCOMPARE(c.pixelWidth(), 48);  // the picture held stays

        c.setSourceAddress(server.url("/text.png"));
        QTRY_COMPARE(c.readyState(), 3);
        QCOMPARE(finished.count(), 1);

        c.setSourceAddress(server.url("/slow.png"));
        QTest::qWait(500);
        QCOMPARE(c.readyState(), 1);
        QTRY_COMPARE_WITH_TIMEOUT(c.readyState(), 4, 5000);
        QCOMPARE(finished.count(), 2);

        // An address that never answers stays "loading" without holding anything up, and
        // a new address replaces it.
        c.setSourceAddress(server.url("/never.png"));
        QTest::qWait(300);
        QCOMPARE(c.readyState(), 1);
        c.setSourceAddress(server.url("/pic.png"));
        QTRY_COMPARE(c.readyState(), 4);

        // Nothing listens on this port.
        QTcpServer closed;
        closed.listen(QHostAddress::LocalHost, 0);
        const quint16 port = closed.serverPort();
        closed.close();
        c.setSourceAddress(QStringLiteral("http://127.0.0.1:%1/x.png").arg(port));
        QTRY_COMPARE(c.readyState(), 0);
    }

    void keyCodes()
    {
        ImagingControl c;
        QSignalSpy keys(&c, &ImagingControl::keyDown);
        QTest::keyClick(&c, Qt::Key_Plus, Qt::KeypadModifier);
        QTest::keyClick(&c, Qt::Key_Minus, Qt::KeypadModifier);
        QTest::keyClick(&c, Qt::Key_A);
        QCOMPARE(keys.at(0).first().toInt(), 107);
        QCOMPARE(keys.at(1).first().toInt(), 109);
        QCOMPARE(keys.at(2).first().toInt(), 65);
    }
};

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    ImagingControlTest t;
    return QTest::qExec(&t, argc, argv);
}

#include "imaging_control_test.moc"
