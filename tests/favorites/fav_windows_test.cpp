// The editor's and the selection list's routines on their real widgets (no message boxes).
#include "browse/shell_list.h"
#include "browse/thumbnail_grid.h"
#include "core/internal_drag.h"
#include "core/globals.h"
#include "favorites/fav_file.h"
#include "favorites/sel_favorites.h"
#include "favorites/select1.h"
#include "favorites/set_fav_list.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QListWidget>
#include <QMimeData>
#include <QMouseEvent>
#include <memory>
#include <QTemporaryDir>
#include <QUrl>
#include <gtest/gtest.h>

using namespace tw;

namespace {
void touch(const QString &p, const QByteArray &b = {})
{
    QFile f(p);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(b);
}
QStringList rows(QListWidget *l)
{
    QStringList r;
    for (int i = 0; i < l->count(); ++i) r << l->item(i)->text();
    return r;
}

class Editor : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        G.ProgramDir = dir.filePath("prog");
        QDir().mkpath(G.ProgramDir);
        pics = dir.filePath("pics");
        QDir().mkpath(pics);
        for (const char *n : {"b.jpg", "a.png", "song.mp3", "notes.xyz"}) touch(pics + "/" + n);
    }
    void makeListFolder() { QDir().mkpath(fav::listFolder()); }
    QTemporaryDir dir;
    QString pics;
};
}  // namespace

TEST_F(Editor, OpensWithTheFolderCreatedAndTheFirstListLoaded)
{
    {
        SetFavList1 w(nullptr, pics);
        EXPECT_TRUE(QDir(fav::listFolder()).exists());
        EXPECT_EQ(w.List2->count(), 0);
        EXPECT_EQ(w.windowTitle(), "Create List of Preset Favorites for Quick Location");
        EXPECT_EQ(w.CMBFILTER->count(), 36);
        EXPECT_EQ(w.CMBFILTER->itemText(19), "WorkPerfect Format (WPG)");
        EXPECT_EQ(w.CMBFILTER->itemText(30), "Miscellaneous 1 bit (MAC,IMG,MSP,ICA,CAL) ");
        EXPECT_TRUE(G.SetFavList1Loaded);
    }
    EXPECT_FALSE(G.SetFavList1Loaded);
    ASSERT_TRUE(fav::SaveFavList(fav::listBasePath("Beach") + ".FLST", {pics + "/a.png"}));
    SetFavList1 w(nullptr, pics);
    EXPECT_EQ(rows(w.List2), QStringList({"Beach"}));
    EXPECT_EQ(rows(w.List1), QStringList({pics + "/a.png"}));
    EXPECT_EQ(w.CurrentFavListPath, fav::listBasePath("Beach"));
    EXPECT_FALSE(w.FavListDirty);
}

TEST_F(Editor, OkWithAnEmptiedListKeepsTheOldFile)
{
    makeListFolder();
    const QString file = fav::listBasePath("Keep") + ".FLST";
    ASSERT_TRUE(fav::SaveFavList(file, {pics + "/a.png"}));
    SetFavList1 w(nullptr, pics);
    w.List1->clear();
    w.FavListDirty = true;
    w.okBtn();
    EXPECT_EQ(fav::LoadFavList(file), QStringList({pics + "/a.png"}));
}

TEST_F(Editor, ChangeOfListSavesTheOldOneWithoutAsking)
{
    makeListFolder();
    ASSERT_TRUE(fav::SaveFavList(fav::listBasePath("One") + ".FLST", {pics + "/a.png"}));
    ASSERT_TRUE(fav::SaveFavList(fav::listBasePath("Two") + ".FLST", {pics + "/b.jpg"}));
    SetFavList1 w(nullptr, pics);
    ASSERT_EQ(rows(w.List2), QStringList({"One", "Two"}));
    w.List1->addItem(pics + "/song.mp3");
    w.FavListDirty = true;
    w.List2->setCurrentRow(1);
    w.listNameClicked();
    EXPECT_EQ(fav::LoadFavList(fav::listBasePath("One") + ".FLST"),
              QStringList({pics + "/a.png", pics + "/song.mp3"}));
    EXPECT_EQ(rows(w.List1), QStringList({pics + "/b.jpg"}));
    EXPECT_FALSE(w.FavListDirty);
}

TEST_F(Editor, EntriesWithNoListSelectedGoToAFileNamedDotFlst)
{
    SetFavList1 w(nullptr, pics);
    ASSERT_TRUE(w.CurrentFavListPath.isEmpty());
    w.List1->addItem(pics + "/a.png");
    w.okBtn();
    // The empty path makes the name ".FLST" in the current folder; it is no list of the
    // folder, so it shows nowhere as saved.
    EXPECT_TRUE(QFile::exists(".FLST"));
    QFile::remove(".FLST");
}

TEST_F(Editor, AllTakesTheSupportedFilesOfTheFilterInNameOrder)
{
    SetFavList1 w(nullptr, pics);
    w.PTxShList1->setFolder(pics);
    w.filterChosen(35);  // "*.*"
    w.allBtn();
    EXPECT_EQ(rows(w.List1), QStringList({pics + "/a.png", pics + "/b.jpg", pics + "/song.mp3"}));
    EXPECT_EQ(w.List1->currentRow(), 2);
    EXPECT_TRUE(w.FavListDirty);
}

TEST_F(Editor, AllWithALongFilterUsesTheFormsOwnPattern)
{
    touch(pics + "/c.dic");  // in "All MultiMedia Files" but not in the form's pattern
    touch(pics + "/d.mp2");
    SetFavList1 w(nullptr, pics);
    w.PTxShList1->setFolder(pics);
    w.filterChosen(33);  // "All MultiMedia Files", over 256 characters
    ASSERT_GE(w.PTxShList1->pattern().size(), 256);
    w.allBtn();
    EXPECT_EQ(rows(w.List1), QStringList({pics + "/a.png", pics + "/b.jpg", pics + "/song.mp3"}));
}

TEST_F(Editor, AllInTheRootAddsNoSecondSeparator)
{
    SetFavList1 w(nullptr, "/");
    w.PTxShList1->setFolder("/");
    w.filterChosen(35);
    w.allBtn();
    for (const QString &r : rows(w.List1)) EXPECT_FALSE(r.startsWith("//")) << qPrintable(r);
}

TEST_F(Editor, DroppedFolderAddsItsSupportedFilesNotTheFolder)
{
    SetFavList1 w(nullptr, pics);
    w.filterChosen(35);
    w.dropFiles({pics, pics + "/notes.xyz"});
    EXPECT_EQ(rows(w.List1),
              QStringList({pics + "/a.png", pics + "/b.jpg", pics + "/song.mp3", pics + "/notes.xyz"}));
    EXPECT_EQ(w.List1->currentRow(), 3);
}

TEST_F(Editor, TenThousandDroppedFilesAllArrive)
{
    SetFavList1 w(nullptr, pics);
    QStringList many;
    for (int i = 0; i < 10000; ++i) many << QStringLiteral("/gone/p%1.jpg").arg(i);
    w.dropFiles(many);
    EXPECT_EQ(w.List1->count(), 10000);
    w.okBtn();
}

TEST_F(Editor, MoveAndRemoveKeepASelection)
{
    SetFavList1 w(nullptr, pics);
    w.List1->addItems({"/a.jpg", "/b.jpg", "/c.jpg"});
    w.List1->setCurrentRow(0);
    w.moveRow(-1);
    EXPECT_EQ(rows(w.List1), QStringList({"/a.jpg", "/b.jpg", "/c.jpg"}));
    w.moveRow(+1);
    EXPECT_EQ(rows(w.List1), QStringList({"/b.jpg", "/a.jpg", "/c.jpg"}));
    EXPECT_EQ(w.List1->currentRow(), 1);
    w.List1->setCurrentRow(2);
    w.moveRow(+1);
    EXPECT_EQ(w.List1->currentRow(), 2);
    w.List1->setCurrentRow(0);
    w.leftBtn();
    EXPECT_EQ(rows(w.List1), QStringList({"/a.jpg", "/c.jpg"}));
    EXPECT_EQ(w.List1->currentRow(), 0);
    w.List1->setCurrentRow(1);
    w.leftBtn();
    EXPECT_EQ(w.List1->currentRow(), 0);
}

TEST_F(Editor, SelectionListTakesTheProgramsDragsByTheirGates)
{
    Select1 s(nullptr);
    EXPECT_TRUE(s.FolderPattern.startsWith("*.JPG;"));
    EXPECT_FALSE(s.FolderPattern.endsWith(";"));
    G.SelFavorites1Loaded = false;
    s.dropInternal("SelList1", {"/a.jpg"});
    s.dropInternal("SelList2", {"/a.jpg", "/b.jpg"});
    EXPECT_EQ(s.List1->count(), 0);
    s.dropInternal("SelectTag", {"/x.jpg"});
    EXPECT_EQ(s.List1->count(), 0);
    s.dropInternal("Thumbs", {"/t.jpg"});
    G.SelFavorites1Loaded = true;
    s.dropInternal("SelList1", {"/a.jpg"});
    s.dropInternal("SelList2", {"/a.jpg", "/b.jpg"});
    G.SelFavorites1Loaded = false;
    EXPECT_EQ(rows(s.List1), QStringList({"/t.jpg", "/a.jpg", "/a.jpg", "/b.jpg"}));
    s.List1->setCurrentRow(3);
    s.deleteBtn();
    EXPECT_EQ(s.List1->currentRow(), 2);
    s.List1->setCurrentRow(0);
    QStringList shown;
    s.displayFile = [&](const QString &p) { shown << p; };
    s.okBtn();
    s.okBtn();
    EXPECT_EQ(shown, QStringList({"/t.jpg", "/a.jpg"}));
    QStringList added;
    s.addToSlideShow = [&](const QString &p) { added << p; };
    s.slideShowBtn();
    EXPECT_EQ(added, rows(s.List1));
}

TEST_F(Editor, TheThumbnailGridDragsTheFileSelectedLastIntoTheSelectionList)
{
    browse::ThumbnailGrid grid;
    grid.addCell(0, QImage(8, 8, QImage::Format_RGB32), "a.png", pics + "/a.png");
    grid.addCell(1, QImage(8, 8, QImage::Format_RGB32), "b.jpg", pics + "/b.jpg");
    G.SelectedFile = pics + "/b.jpg";
    std::unique_ptr<QMimeData> m(grid.thumbsDrag());
    const ListDrop d = readDrop(m.get());
    EXPECT_EQ(d.tag, "Thumbs");
    EXPECT_EQ(d.files, QStringList({pics + "/b.jpg"}));
    EXPECT_EQ(m->urls().size(), 1);
    Select1 s(nullptr);
    s.dropInternal(d.tag, d.files);
    EXPECT_EQ(rows(s.List1), QStringList({pics + "/b.jpg"}));
    G.SelectedFile.clear();
}

TEST_F(Editor, RowsDragOutAsFilesAndNoListOfTheProgramTakesTheSelectionListsRows)
{
    Select1 s(nullptr);
    s.List1->addItems({pics + "/a.png", pics + "/b.jpg"});
    s.List1->selectAll();
    std::unique_ptr<QMimeData> m(
        s.List1->model()->mimeData({s.List1->model()->index(0, 0), s.List1->model()->index(1, 0)}));
    ASSERT_TRUE(m);
    ASSERT_EQ(m->urls().size(), 2);
    EXPECT_EQ(m->urls()[1].toLocalFile(), pics + "/b.jpg");
    const ListDrop d = readDrop(m.get());
    EXPECT_EQ(d.tag, "SelectTag");
    G.SelFavorites1Loaded = true;
    s.dropInternal(d.tag, d.files);
    G.SelFavorites1Loaded = false;
    EXPECT_EQ(s.List1->count(), 2);
}

// A press on a list arms its drag; the right button held over the browser's panel ends the
// drags of both lists, and a plain move over the panel leaves them armed.
TEST_F(Editor, RightButtonOverTheBrowsersPanelEndsBothDrags)
{
    makeListFolder();
    SelFavorites1 browser(nullptr);
    browser.show();
    QCoreApplication::processEvents();
    auto press = [](QWidget *w) {
        QMouseEvent e(QEvent::MouseButtonPress, QPointF(5, 5), w->mapToGlobal(QPointF(5, 5)), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(w, &e);
    };
    auto move = [&](Qt::MouseButtons held) {
        QMouseEvent e(QEvent::MouseMove, QPointF(2, 2), browser.Frame1->mapToGlobal(QPointF(2, 2)),
                      Qt::NoButton, held, Qt::NoModifier);
        QCoreApplication::sendEvent(browser.Frame1, &e);
    };
    press(browser.List1->viewport());
    press(browser.List2->viewport());
    ASSERT_TRUE(browser.dragArmed(0));
    ASSERT_TRUE(browser.dragArmed(1));
    move(Qt::LeftButton);
    EXPECT_TRUE(browser.dragArmed(0));
    EXPECT_TRUE(browser.dragArmed(1));
    move(Qt::RightButton);
    EXPECT_FALSE(browser.dragArmed(0));
    EXPECT_FALSE(browser.dragArmed(1));
}
