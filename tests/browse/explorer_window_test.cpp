// Window tests of the Find tab's panes inside the main window: Escape in each of the five
// places that see it, and a double click on a file deleted behind the list's back.
#include "common/main_window_fixture.h"
#include "app/tarnwick1.h"
#include "core/tool_manager.h"
#include "browse/browse_module.h"
#include "browse/shell_list.h"
#include "browse/shell_tree.h"
#include "core/options_store.h"

#include <QAbstractItemView>
#include <QDir>
#include <QFile>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QToolBar>
#include <clocale>

using namespace tw;

class ExplorerWindowTest : public QObject {
    Q_OBJECT
    Tarnwick1 *w = nullptr;
    tw::BrowseModule *browse() const { return static_cast<tw::BrowseModule *>(w->page(1)); }

private slots:
    void init() { w = twtest::startMainWindow(); }
    void cleanup()
    {
        delete w;
        w = nullptr;
    }

    void escapeInEachOfTheFivePlacesCancels()
    {
        QList<QWidget *> places = {w, w->TabStrip1->tabBar(), browse()->PTxShTree1,
                                   browse()->PTxShList1->currentView()};
        for (int pos = 2; pos <= 7; ++pos)
            if (QToolBar *bar = w->ToolBarComp1->toolbar(pos)) {
                places << bar;
                break;
            }
        QCOMPARE(places.size(), 5);
        for (QWidget *place : places) {
            browse()->Search.SearchConfirmed = true;
            browse()->Search.SearchCancelled = false;
            QTest::keyClick(place, Qt::Key_Escape);
            QVERIFY2(browse()->Search.SearchCancelled, qPrintable(place->objectName()));
            QVERIFY(!browse()->Search.SearchConfirmed);
            // A second Escape does nothing until a search routine has set the flag again.
            browse()->Search.SearchCancelled = false;
            QTest::keyClick(place, Qt::Key_Escape);
            QVERIFY(!browse()->Search.SearchCancelled);
        }
    }

    void aFileDeletedBehindTheListsBackIsNotShownButTheTitleIsWritten()
    {
        const QString dir = QDir::homePath() + QStringLiteral("/docs");
        QDir().mkpath(dir);
        QFile f(dir + QStringLiteral("/gone.txt"));
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("x");
        f.close();
        QVERIFY(browse()->PTxShTree1->selectPath(dir));
        QCOMPARE(w->title(), QStringLiteral("docs - Tarnwick 2.0"));
        QVERIFY(browse()->PTxShList1->listModel()->findName(QStringLiteral("gone.txt")) >= 0);
        G.CurrentPage = 3;
        // Removed by another program; the list has not heard of it yet.
        QVERIFY(QFile::remove(f.fileName()));
        QVERIFY(browse()->PTxShList1->doubleClickItem(QStringLiteral("gone.txt")));
        QCOMPARE(w->selectedTab(), 1);
        QCOMPARE(G.CurrentPage, 1);
        QCOMPARE(w->title(), dir + QStringLiteral(" - Tarnwick 2.0"));
    }
};

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    ExplorerWindowTest t;
    return QTest::qExec(&t, argc, argv);
}

#include "explorer_window_test.moc"
