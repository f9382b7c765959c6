// Window tests of the Slide Show tab inside the main window: the drops on the show's lists
// (only the favorite browser's drags, only while it is open), AddFile through the tab's
// interface, and the builder's own filter of its shell list.
#include "common/main_window_fixture.h"
#include "app/tarnwick1.h"
#include "browse/shell_list.h"
#include "core/globals.h"
#include "core/text_rules.h"
#include "slideshow/slide_show_files.h"

#include <QComboBox>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QGroupBox>
#include <QListWidget>
#include <QMimeData>
#include <QTest>
#include <clocale>

using namespace tw;

class SlideWindowTest : public QObject {
    Q_OBJECT
    Tarnwick1 *w = nullptr;

    QWidget *frame() const { return w->findChild<QGroupBox *>(QStringLiteral("SlideShowFrame")); }
    QListWidget *list(int i) const
    {
        return frame()->findChild<QListWidget *>(QStringLiteral("List7_%1").arg(i));
    }
    QStringList rows(int i) const
    {
        QStringList r;
        for (int k = 0; k < list(i)->count(); ++k) r << list(i)->item(k)->text();
        return r;
    }
    // A drag of the program's own, dropped on List7(Target).
    bool drop(int target, const QString &tag, const QStringList &files)
    {
        QMimeData m;
        m.setData(QStringLiteral("application/x-tarnwick-drag-source"), tag.toUtf8());
        QByteArray lines;
        for (const QString &f : files) lines += pathToBytes(f) + '\n';
        m.setData(QStringLiteral("application/x-tarnwick-drag-files"), lines);
        QWidget *vp = list(target)->viewport();
        const QPoint at = vp->rect().center();
        QDragEnterEvent enter(at, Qt::CopyAction, &m, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(vp, &enter);
        if (!enter.isAccepted()) return false;
        QDropEvent dropped(at, Qt::CopyAction, &m, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(vp, &dropped);
        return true;
    }

private slots:
    void init()
    {
        w = twtest::startMainWindow();
        w->selectTab(5);
        G.SelFavorites1Loaded = false;
    }
    void cleanup()
    {
        G.SelFavorites1Loaded = false;
        delete w;
        w = nullptr;
    }

    void dropsFromTheFavoriteBrowserOnly()
    {
        const QStringList files = {"/p/a.jpg", "/m/x.mp3", "/v/c.mov", "/m/y.WAV"};
        // Not while the browser is closed.
        QVERIFY(drop(0, "SelList2", files));
        QCOMPARE(rows(0), QStringList());
        G.SelFavorites1Loaded = true;
        // Another drag is not for these lists.
        QVERIFY(drop(0, "Thumbs", files));
        QCOMPARE(rows(0), QStringList());
        // The music extensions go to the music, everything else to the pictures, whichever
        // list received the drop.
        QVERIFY(drop(1, "SelList2", files));
        QCOMPARE(rows(0), (QStringList{"/p/a.jpg", "/v/c.mov"}));
        QCOMPARE(rows(1), (QStringList{"/m/x.mp3", "/m/y.WAV"}));
        QVERIFY(drop(0, "SelList1", {"/p/b.png"}));
        QCOMPARE(rows(0), (QStringList{"/p/a.jpg", "/v/c.mov", "/p/b.png"}));
        // A drop of files from another program is refused at the door.
        QMimeData urls;
        urls.setUrls({QUrl::fromLocalFile("/p/z.jpg")});
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &urls, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(list(0)->viewport(), &enter);
        QVERIFY(!enter.isAccepted());
    }

    void addFileThroughTheTabsInterface()
    {
        auto *files = dynamic_cast<slides::SlideShowFiles *>(w->page(5));
        QVERIFY(files);
        files->AddFile("/p/a.pcx");
        files->AddFile("/m/a.rmi");
        files->AddFile("/d/a.doc");
        QCOMPARE(rows(0), QStringList{"/p/a.pcx"});
        QCOMPARE(rows(1), QStringList{"/m/a.rmi"});
    }

    void theBuildersFilterListsItsFolder()
    {
        const QString dir = QDir::homePath() + QStringLiteral("/filter");
        QDir().mkpath(dir);
        for (const char *n : {"a.jpg", "b.png", "c.txt"}) {
            QFile f(dir + '/' + n);
            QVERIFY(f.open(QIODevice::WriteOnly));
        }
        auto *shell = frame()->findChild<ShellList *>(QStringLiteral("PTxShList2"));
        auto *filter = frame()->findChild<QComboBox *>(QStringLiteral("CMBFILTER"));
        QVERIFY(shell && filter);
        QCOMPARE(filter->toolTip(), QStringLiteral("Filter Files on Folder/File List"));
        shell->setFolder(dir);
        int jpeg = -1;
        for (int i = 0; i < filter->count(); ++i)
            if (filter->itemData(i).toString().contains(QStringLiteral("*.JPG"), Qt::CaseInsensitive)
                && !filter->itemData(i).toString().contains(QStringLiteral("*.PNG"), Qt::CaseInsensitive))
                jpeg = i;
        QVERIFY(jpeg >= 0);
        filter->setCurrentIndex(jpeg);
        QStringList names;
        for (const QString &p : shell->itemPaths()) names << p.mid(p.lastIndexOf('/') + 1);
        QVERIFY2(names.contains("a.jpg") && !names.contains("b.png") && !names.contains("c.txt"),
                 qPrintable(names.join(',')));
    }
};

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    SlideWindowTest t;
    return QTest::qExec(&t, argc, argv);
}

#include "slide_window_test.moc"
