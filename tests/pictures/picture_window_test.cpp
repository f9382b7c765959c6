// The picture side of the main window driven directly: a fetch from a small HTTP server
// through LoadImage and the control's events, the double click on a picture still
// fetching, the strict fit test of ResizeImage, Normal on a minimised window, the pan
// window's place, and the view list's tool state.
#include "test_picture.h"
#include "app/tarnwick1.h"
#include "core/tool_manager.h"
#include "core/globals.h"
#include "core/options_store.h"
#include "pictures/imaging_control.h"
#include "pictures/pictures_module.h"
#include "tiny_http.h"

#include <QAction>
#include <QBuffer>
#include <QDir>
#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QFrame>
#include <QTimer>
#include <QListWidget>
#include <QPainter>
#include <QTemporaryDir>
#include <QTest>
#include <cmath>

using namespace tw;
using twtest::testPicture;
using twtest::TinyHttp;

namespace {

QByteArray pngBytes(int w, int h)
{
    QByteArray png;
    QBuffer b(&png);
    b.open(QIODevice::WriteOnly);
    testPicture(w, h).save(&b, "PNG");
    return png;
}

}  // namespace

class PictureWindowTest : public QObject {
    Q_OBJECT
    Tarnwick1 *w = nullptr;
    PicturesModule *P = nullptr;
    QTemporaryDir dir_;

    int formPointer() const { return w->property("MousePointer").toInt(); }
    bool frame5Shown() const { return P->Frame5->isVisibleTo(P->Image1->parentWidget()); }
    bool image1Shown() const { return P->Image1->isVisibleTo(P->Image1->parentWidget()); }

private slots:
    void init()
    {
        const QString data = QDir::homePath() + QStringLiteral("/.local/share/tarnwick");
        qputenv("XDG_DATA_HOME", (QDir::homePath() + QStringLiteral("/.local/share")).toLocal8Bit());
        QDir().mkpath(data);
        ColorSettings c;
        SaveColors(c, data);
        OptionSettings o;
        SetDefaultOptions(o, data);
        SaveOptions(o, data);
        w = new Tarnwick1(QString());
        w->show();
        w->activated();
        P = static_cast<PicturesModule *>(w->page(2));
        P->ensureBuilt();
        QVERIFY(P);
        QVERIFY(!w->State.StartingUp);
    }
    void cleanup()
    {
        G.FromInternet = false;
        P->PictureChanged = false;
        delete w;
        w = nullptr;
    }

    // The fetch: "loading" is heard after LoadImage has finished starting it, so the
    // control has reported a change since the fetch began; completion and the load-finished
    // event then finish the remote picture.
    void fetchReportsAndFinishes()
    {
        TinyHttp server(pngBytes(48, 36));
        QVERIFY(server.isListening());
        const QString url = server.url("/slow.png");
        G.FromInternet = true;
        w->DisplayFile(url);
        QCOMPARE(P->ReadyEventSeen, false);
        QCOMPARE(P->FetchPending, true);
        QCOMPARE(G.CurrentFile, url);
        QCOMPARE(P->LastPicturePath, url);
        QVERIFY(frame5Shown());
        QVERIFY(!image1Shown());
        QCOMPARE(formPointer(), 11);
        QCOMPARE(P->Image1->mousePointer(), 11);
        QTest::qWait(400);
        QCOMPARE(P->Image1->readyState(), 1);
        QCOMPARE(P->ReadyEventSeen, true);
        QCOMPARE(P->FetchPending, true);
        QTRY_VERIFY_WITH_TIMEOUT(!G.FromInternet, 8000);
        QCOMPARE(P->Image1->readyState(), 4);
        QCOMPARE(P->FetchPending, false);
        QCOMPARE(P->PictureChanged, true);
        QCOMPARE(G.InternetPictureLoaded, true);
        QCOMPARE(G.SelectedFile, url);
        QVERIFY(!frame5Shown());
        QVERIFY(image1Shown());
        QCOMPARE(formPointer(), 0);
        QCOMPARE(P->Image1->mousePointer(), 0);
        QCOMPARE(P->Image1->pixelWidth(), 48);
        // The load-finished event came after "complete": the reset brought Normal back.
        QCOMPARE(P->Image1->sizeMode(), 0);
    }

    // "Complete" sets the form's pointer back too, not only the control's.
    void completeResetsTheFormPointer()
    {
        TinyHttp server(pngBytes(16, 16));
        G.FromInternet = true;
        w->DisplayFile(server.url("/never.png"));
        QCOMPARE(formPointer(), 11);
        P->Image1_ReadyStateChange(4);
        QCOMPARE(formPointer(), 0);
        QCOMPARE(P->Image1->mousePointer(), 0);
        QCOMPARE(P->FetchPending, false);
        QCOMPARE(P->PictureChanged, true);
        QVERIFY(!frame5Shown());
        QVERIFY(image1Shown());
        QCOMPARE(P->ReadyEventSeen, true);
    }

    // A double click on a picture still fetching finishes it.
    void doubleClickFinishesAFetch()
    {
        TinyHttp server(pngBytes(16, 16));
        const QString url = server.url("/never.png");
        G.FromInternet = true;
        w->DisplayFile(url);
        QVERIFY(G.FromInternet);
        P->Image1_DblClick();
        QCOMPARE(G.FromInternet, false);
        QCOMPARE(G.InternetPictureLoaded, true);
        QCOMPARE(G.SelectedFile, url);
        QCOMPARE(formPointer(), 0);
        QCOMPARE(P->Image1->mousePointer(), 0);
        QVERIFY(image1Shown());
        QCOMPARE(P->StretchOn, true);
    }

    // A bitmap exactly 600 twips short of the panel's height fits; one pixel more does not.
    void resizeTestIsStrict()
    {
        w->selectTab(2);
        QWidget *f = P->Image1->parentWidget();
        const int fh = f->height(), fw = f->width();
        QVERIFY(fh > 100 && fw > 100);
        const int shrunkH = int(std::lround((fh * 15.0 - 100) / 15.0));
        P->Image1->setImage(testPicture(40, fh - 40));  // (fh - 40) * 15 == fh * 15 - 600
        P->ResetPicture();
        QVERIFY(P->Image1->height() != shrunkH);
        QCOMPARE(P->Image1->height(), fh - 40 + 2 * P->Image1->frameWidth());
        P->Image1->setImage(testPicture(40, fh - 39));
        P->ResetPicture();
        QCOMPARE(P->Image1->height(), shrunkH);
        QCOMPARE(P->Image1->width(), int(std::lround((fw * 15.0 - 75) / 15.0)));
    }

    // Normal on a minimised window changes nothing at all, not even StretchOn.
    void normalOnAMinimisedWindow()
    {
        w->selectTab(2);
        P->Image1->setImage(testPicture(60, 40));
        P->ResetPicture();
        P->ViewStretch();
        QCOMPARE(P->StretchOn, true);
        QCOMPARE(P->Image1->sizeMode(), 1);
        w->setWindowState(Qt::WindowMinimized);
        QVERIFY(w->isMinimized());
        P->ViewNormal();
        QCOMPARE(P->StretchOn, true);
        QCOMPARE(P->Image1->sizeMode(), 1);
        w->setWindowState(Qt::WindowNoState);
        P->ViewNormal();
        QCOMPARE(P->StretchOn, false);
        QCOMPARE(P->Image1->sizeMode(), 0);
    }

    // Left edge 300 on a window whose top is 20: the pan window opens at 400, 400.
    void panWindowPlace()
    {
        w->selectTab(2);
        P->Image1->setImage(testPicture(300, 200));
        P->ResetPicture();
        w->move(300, 20);
        QTRY_COMPARE(w->x(), 300);
        QCOMPARE(w->y(), 20);
        G.SuppressToolCommand = false;
        w->ToolBarComp1->action(QStringLiteral("ID_ViewPan"))->trigger();
        QCOMPARE(P->PanOn, true);
        QCOMPARE(P->Image1->panWindowProps().left, 400);
        QCOMPARE(P->Image1->panWindowProps().top, 400);
        QCOMPARE(P->Image1->panWindowProps().width, 150);
        QCOMPARE(P->Image1->panWindowProps().height, 200);
        QCOMPARE(P->Image1->panWindowProps().rectColor, uint32_t(255));
        QVERIFY(P->Image1->panWindow());
        QCOMPARE(P->Image1->panWindow()->windowTitle(), QStringLiteral("Pan Window"));
        QCOMPARE(P->Image1->panWindow()->geometry().topLeft(), QPoint(400, 400));
    }

    // Opening a file already in the view list leaves the list's current row, and the view
    // list tool checked is that row's, not the new picture's.
    // The stored JPEG quality is read at each save: a change applies to the very next one.
    void jpegQualityAppliesToTheNextSave()
    {
        const QString src = dir_.filePath(QStringLiteral("q.png"));
        QVERIFY(testPicture(300, 200).save(src));
        G.CurrentExt = QStringLiteral("PNG");
        G.CurrentPage = 1;
        w->LoadImage(src);
        auto saveAs = [this](const QString &from, const QString &to) {
            QTimer::singleShot(0, this, [to] {
                if (auto *d = qobject_cast<QFileDialog *>(QApplication::activeModalWidget())) {
                    d->selectFile(to);
                    QMetaObject::invokeMethod(d, "accept", Qt::DirectConnection);
                }
            });
            return P->SaveFileAs(from);
        };
        G.Options.JpegQuality = 1;
        QVERIFY(saveAs(dir_.filePath(QStringLiteral("q.jpg")), dir_.filePath(QStringLiteral("fine.jpg"))));
        G.Options.JpegQuality = 90;
        QVERIFY(saveAs(dir_.filePath(QStringLiteral("q.jpg")), dir_.filePath(QStringLiteral("small.jpg"))));
        const qint64 fine = QFileInfo(dir_.filePath(QStringLiteral("fine.jpg"))).size();
        const qint64 small = QFileInfo(dir_.filePath(QStringLiteral("small.jpg"))).size();
        QVERIFY2(small > 0 && fine > small + small / 4,
                 qPrintable(QStringLiteral("%1 %2").arg(fine).arg(small)));
        G.Options.JpegQuality = 9;
    }

    void viewListToolFollowsTheCurrentRow()
    {
        QVERIFY(dir_.isValid());
        const QString a = dir_.filePath(QStringLiteral("a.png")), b = dir_.filePath(QStringLiteral("b.png"));
        QVERIFY(testPicture(20, 10).save(a));
        QVERIFY(testPicture(30, 10).save(b));
        w->DisplayFile(a);
        w->DisplayFile(b);
        QCOMPARE(P->List3->currentRow(), 1);
        QVERIFY(w->ToolBarComp1->isChecked(b));
        w->DisplayFile(a);
        QCOMPARE(G.CurrentFile, a);
        QCOMPARE(P->Image1->pixelWidth(), 20);
        QCOMPARE(P->List3->count(), 2);
        QCOMPARE(P->List3->currentRow(), 1);
        QVERIFY(w->ToolBarComp1->isChecked(b));
        QCOMPARE(G.SuppressToolCommand, false);
    }
};

QTEST_MAIN(PictureWindowTest)
#include "picture_window_test.moc"
