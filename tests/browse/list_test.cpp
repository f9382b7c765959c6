#include "browse/shell_list.h"
#include "core/file_icons.h"
#include "core/looks.h"
#include "test_tree.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QElapsedTimer>
#include <QListView>
#include <QTest>
#include <QTreeView>
#include <gtest/gtest.h>

namespace {

// Runs the event loop until Pred holds or the time is up.
template <class Pred> bool waitFor(Pred pred, int ms = 5000)
{
    QElapsedTimer t;
    t.start();
    while (!pred() && t.elapsed() < ms) {
        QApplication::processEvents(QEventLoop::AllEvents, 20);
        QTest::qWait(10);
    }
    return pred();
}

}  // namespace

TEST(ShellList, FoldersFirstThenFilesOfThePatternIgnoringCase)
{
    twtest::TempTree t;
    t.mkdir("f/sub10");
    t.mkdir("f/Sub2");
    t.put("f/b.PNG");
    t.put("f/a.jpg");
    t.put("f/c.txt");
    t.put("f/.hidden.jpg");
    t.put("f/img10.jpg");
    t.put("f/img9.JPG");
    tw::ShellList list;
    list.setPattern("*.JPG;*.png");
    list.setFolder(t.path("f"));
    EXPECT_EQ(list.scenarioRows(), QStringList({"Sub2", "sub10", "a.jpg", "b.PNG", "img9.JPG", "img10.jpg"}));
    EXPECT_EQ(list.itemPath(2), t.path("f/a.jpg"));
    list.setPattern("*.*");
    EXPECT_EQ(list.itemCount(), 7);
}

TEST(ShellList, MultiSelectionFocusAndNoInPlaceRenaming)
{
    twtest::TempTree t;
    for (const char *n : {"a.jpg", "b.jpg", "c.jpg"}) t.put(QStringLiteral("f/") + n);
    tw::ShellList list;
    list.setFolder(t.path("f"));
    int selectedEvents = 0;
    QStringList clicked;
    QObject::connect(&list, &tw::ShellList::itemSelected, [&] { ++selectedEvents; });
    QObject::connect(&list, &tw::ShellList::itemClicked, [&](const QString &p) { clicked << p; });
    ASSERT_TRUE(list.clickItem("b.jpg"));
    EXPECT_EQ(list.selectedCount(), 1);
    EXPECT_EQ(list.focusedItemPath(), t.path("f/b.jpg"));
    EXPECT_GE(selectedEvents, 1);
    EXPECT_EQ(clicked, QStringList({t.path("f/b.jpg")}));
    QItemSelectionModel *sel = list.currentView()->selectionModel();
    sel->select(list.listModel()->index(0, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    EXPECT_EQ(list.selectedCount(), 2);
    EXPECT_EQ(list.selectedItem(0), 0);
    EXPECT_EQ(list.selectedItem(1), 1);
    EXPECT_FALSE(list.listModel()->flags(list.listModel()->index(0, 0)) & Qt::ItemIsEditable);
    EXPECT_EQ(list.currentView()->editTriggers(), QAbstractItemView::NoEditTriggers);
}

TEST(ShellList, FourViews)
{
    tw::ShellList list;
    list.setViewMode(0);
    auto *lv = qobject_cast<QListView *>(list.currentView());
    ASSERT_NE(lv, nullptr);
    EXPECT_EQ(lv->viewMode(), QListView::IconMode);
    EXPECT_EQ(lv->iconSize(), QSize(32, 32));
    list.setViewMode(1);
    EXPECT_EQ(lv->viewMode(), QListView::ListMode);
    EXPECT_EQ(lv->flow(), QListView::LeftToRight);
    list.setViewMode(2);
    EXPECT_EQ(lv->flow(), QListView::TopToBottom);
    list.setViewMode(3);
    auto *details = qobject_cast<QTreeView *>(list.currentView());
    ASSERT_NE(details, nullptr);
    EXPECT_EQ(details->model()->columnCount(), 4);
    EXPECT_EQ(details->model()->headerData(1, Qt::Horizontal).toString(), "Size");
    EXPECT_EQ(list.viewMode(), 3);
}

TEST(ShellList, TenThousandFilesFillInStepsWhileTheWindowPaints)
{
    twtest::TempTree t;
    t.mkdir("big");
    for (int i = 0; i < 10000; ++i) {
        QFile f(t.path(QStringLiteral("big/file%1.jpg").arg(i)));
        f.open(QIODevice::WriteOnly);
    }
    tw::ShellList list;
    list.resize(800, 600);
    list.show();
    list.setViewMode(0);
    list.setFolder(t.path("big"));
    // Every item is known at once (the walk and the folder load read them), the view
    // receives them in steps.
    EXPECT_EQ(list.itemCount(), 10000);
    EXPECT_LT(list.listModel()->rowCount(), 10000);
    int steps = 0;
    QObject::connect(list.listModel(), &tw::ShellListModel::fillProgress, [&] { ++steps; });
    ASSERT_TRUE(waitFor([&] { return list.listModel()->rowCount() == 10000; }));
    EXPECT_GE(steps, 4);
    EXPECT_EQ(list.scenarioRows().value(2), "file2.jpg");
    EXPECT_EQ(list.scenarioRows().value(9999), "file9999.jpg");
}

TEST(ShellList, AFileAddedOrRemovedByAnotherProgramShowsUp)
{
    twtest::TempTree t;
    t.put("w/a.jpg");
    t.put("w/c.jpg");
    tw::ShellList list;
    list.setFolder(t.path("w"));
    int changes = 0;
    QObject::connect(&list, &tw::ShellList::contentsChanged, [&] { ++changes; });
    ASSERT_TRUE(list.clickItem("c.jpg"));
    t.put("w/b.jpg");
    ASSERT_TRUE(waitFor([&] { return list.itemCount() == 3; }));
    EXPECT_EQ(list.scenarioRows(), QStringList({"a.jpg", "b.jpg", "c.jpg"}));
    EXPECT_EQ(list.scenarioSelected(), "c.jpg");  // the selection stays on its item
    QFile::remove(t.path("w/a.jpg"));
    ASSERT_TRUE(waitFor([&] { return list.itemCount() == 2; }));
    EXPECT_EQ(list.scenarioRows(), QStringList({"b.jpg", "c.jpg"}));
    EXPECT_GE(changes, 2);
}

TEST(ShellList, UpOneLevelStopsAtTheTop)
{
    twtest::TempTree t;
    t.mkdir("a/b");
    tw::ShellList list;
    list.setFolder(t.path("a/b"));
    list.upOneLevel(1);
    EXPECT_EQ(list.folder(), t.path("a"));
    list.setFolder("/");
    list.upOneLevel(1);
    EXPECT_EQ(list.folder(), "/");
}

// While the window that holds the list is on screen but has not painted, the icons are
// blanks of the icon's size (the theme is not read); once it has painted, the rows that drew
// blanks are told to draw again and get the theme's icons. A hidden window holds nothing back.
TEST(ShellList, FileIconsWaitForTheWindowsFirstPaint)
{
    tw::useIconThemeWithFileIcons();
    twtest::TempTree t;
    t.mkdir("f/sub");
    t.put("f/a.txt");
    QWidget window;
    auto *list = new tw::ShellList(&window);
    list->setFolder(t.path("f"));
    tw::ShellListModel *m = list->listModel();
    ASSERT_EQ(m->rowCount(), 2);
    auto iconName = [&](int row) {
        return qvariant_cast<QIcon>(m->data(m->index(row, 0), Qt::DecorationRole)).name();
    };

    tw::FileIcons::gate().holdFor(&window);
    EXPECT_TRUE(tw::FileIcons::gate().ready()) << "a hidden window waits for nothing";
    window.show();
    EXPECT_FALSE(tw::FileIcons::gate().ready());
    const QIcon blank = qvariant_cast<QIcon>(m->data(m->index(1, 0), Qt::DecorationRole));
    EXPECT_TRUE(blank.name().isEmpty());
    EXPECT_EQ(blank.actualSize(QSize(16, 16)), QSize(16, 16)) << "the blank takes the icon's place";

    int redraws = 0;
    QObject::connect(m, &QAbstractItemModel::dataChanged,
                     [&](const QModelIndex &a, const QModelIndex &b, const QList<int> &roles) {
                         if (roles.contains(Qt::DecorationRole) && a.row() == 0 && b.row() == 1) ++redraws;
                     });
    tw::FileIcons::gate().release();
    EXPECT_EQ(redraws, 1);
    EXPECT_TRUE(tw::FileIcons::gate().ready());
    EXPECT_FALSE(iconName(0).isEmpty());
    EXPECT_FALSE(iconName(1).isEmpty());
    tw::FileIcons::gate().release();  // only once
    EXPECT_EQ(redraws, 1);
}
