// The .FLST file: written one path a line with CR LF, read back value by value.
#include "core/globals.h"
#include "core/internal_drag.h"
#include "favorites/fav_file.h"
#include "favorites/sel_favorites.h"

#include <QDir>
#include <QFile>
#include <QMimeData>
#include <QTemporaryDir>
#include <QUrl>
#include <gtest/gtest.h>
#include <memory>

using namespace tw;

namespace {
QByteArray readAll(const QString &p)
{
    QFile f(p);
    if (!f.open(QIODevice::ReadOnly)) return "<missing>";
    return f.readAll();
}
void writeAll(const QString &p, const QByteArray &b)
{
    QFile f(p);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(b);
}
}  // namespace

TEST(FavFile, WritesOnePathALineWithCrLf)
{
    QTemporaryDir d;
    const QString p = d.filePath("Mine.FLST");
    ASSERT_TRUE(fav::SaveFavList(p, {"/home/u/a.jpg", "/home/u/b c.mp3"}));
    EXPECT_EQ(readAll(p), QByteArray("/home/u/a.jpg\r\n/home/u/b c.mp3\r\n"));
    bool ok = false;
    EXPECT_EQ(fav::LoadFavList(p, &ok), QStringList({"/home/u/a.jpg", "/home/u/b c.mp3"}));
    EXPECT_TRUE(ok);
}

TEST(FavFile, EmptyListIsAFileOfNoBytes)
{
    QTemporaryDir d;
    const QString p = d.filePath("Empty.FLST");
    ASSERT_TRUE(fav::SaveFavList(p, {}));
    EXPECT_EQ(readAll(p), QByteArray());
    bool ok = false;
    EXPECT_TRUE(fav::LoadFavList(p, &ok).isEmpty());
    EXPECT_TRUE(ok);
}

TEST(FavFile, CommaInAPathComesBackAsTwoEntries)
{
    QTemporaryDir d;
    const QString p = d.filePath("Comma.FLST");
    ASSERT_TRUE(fav::SaveFavList(p, {"/pics/a,b.jpg", "/pics/c.jpg"}));
    EXPECT_EQ(readAll(p), QByteArray("/pics/a,b.jpg\r\n/pics/c.jpg\r\n"));
    EXPECT_EQ(fav::LoadFavList(p), QStringList({"/pics/a", "b.jpg", "/pics/c.jpg"}));
}

TEST(FavFile, QuotedLineRunsToTheClosingQuoteAndBlanksAreDropped)
{
    QTemporaryDir d;
    const QString p = d.filePath("Q.FLST");
    writeAll(p, "\"/pics/x,y.jpg\"\r\n   /pics/z.jpg   \r\n");
    EXPECT_EQ(fav::LoadFavList(p), QStringList({"/pics/x,y.jpg", "/pics/z.jpg"}));
}

TEST(FavFile, MissingFileGivesNothingAndFalse)
{
    QTemporaryDir d;
    bool ok = true;
    EXPECT_TRUE(fav::LoadFavList(d.filePath("none.FLST"), &ok).isEmpty());
    EXPECT_FALSE(ok);
}

TEST(FavFile, WriteIntoAMissingFolderFailsWithoutAFile)
{
    QTemporaryDir d;
    EXPECT_FALSE(fav::SaveFavList(d.filePath("no/such/x.FLST"), {"/a.jpg"}));
}

TEST(FavFile, BinaryGarbageAndAHugeLineReadWithoutHarm)
{
    QTemporaryDir d;
    const QString p = d.filePath("Bad.FLST");
    QByteArray junk;
    for (int i = 0; i < 4096; ++i) junk += char(i * 37 % 256);
    writeAll(p, junk);
    bool ok = false;
    (void)fav::LoadFavList(p, &ok);
    EXPECT_TRUE(ok);
    const QString big = d.filePath("Big.FLST");
    writeAll(big, QByteArray(10 * 1024 * 1024, 'a') + "\r\n/pics/after.jpg\r\n");
    const QStringList rows = fav::LoadFavList(big);
    ASSERT_EQ(rows.size(), 2);
    EXPECT_EQ(rows[0].size(), 10 * 1024 * 1024);
    EXPECT_EQ(rows[1], "/pics/after.jpg");
}

TEST(FavFile, NamesAreTheFilesCutAtTheLastPoint)
{
    QTemporaryDir d;
    for (const char *n : {"Beach.FLST", "alpha.FLST", "my.trip.FLST", ".FLST", "other.txt"})
        writeAll(d.filePath(n), "");
    EXPECT_EQ(fav::ListFavListNames(d.path()), QStringList({".FLST", "alpha", "Beach", "my.trip"}));
    EXPECT_TRUE(fav::ListFavListNames(d.filePath("absent")).isEmpty());
}

TEST(FavFile, ListFolderIsUnderTheProgramFolder)
{
    G.ProgramDir = "/opt/tw";
    EXPECT_EQ(fav::listFolder(), "/opt/tw/FavoriteLists");
    EXPECT_EQ(fav::listBasePath("Beach"), "/opt/tw/FavoriteLists/Beach");
}

TEST(FavFile, SupportedFilesByTheCatalogue)
{
    EXPECT_TRUE(fav::IsSupportedFile("/p/a.jpg"));
    EXPECT_TRUE(fav::IsSupportedFile("/p/a.MP3"));
    EXPECT_FALSE(fav::IsSupportedFile("/p/a.xyz"));
    EXPECT_FALSE(fav::IsSupportedFile("/p/folder"));
}

TEST(FavDrag, APressTurnsIntoADragOnlyAfterTheDelay)
{
    EXPECT_FALSE(favDragDue(true, 10.0, 10.2));
    EXPECT_FALSE(favDragDue(true, 10.0, 10.35));
    EXPECT_TRUE(favDragDue(true, 10.0, 10.36));
    EXPECT_FALSE(favDragDue(false, 10.0, 20.0));
}

TEST(ListDragFormat, TagAndFilesRoundTripAndSpeakUriList)
{
    std::unique_ptr<QMimeData> m(makeListDrag("SelList2", {"/p/a b.jpg", "/p/c.mp3"}));
    EXPECT_TRUE(m->hasFormat(DragSourceMime));
    EXPECT_EQ(m->urls().size(), 2);
    EXPECT_EQ(m->urls()[0].toLocalFile(), "/p/a b.jpg");
    const ListDrop d = readDrop(m.get());
    EXPECT_EQ(d.tag, "SelList2");
    EXPECT_EQ(d.files, QStringList({"/p/a b.jpg", "/p/c.mp3"}));
    EXPECT_TRUE(canReadDrop(m.get()));
}

TEST(ListDragFormat, FilesFromAFileManagerHaveNoTag)
{
    QMimeData m;
    m.setUrls({QUrl::fromLocalFile("/p/x.jpg"), QUrl("https://example.org/y.jpg")});
    EXPECT_TRUE(canReadDrop(&m));
    const ListDrop d = readDrop(&m);
    EXPECT_FALSE(d.internal());
    EXPECT_EQ(d.files, QStringList({"/p/x.jpg"}));
    QMimeData text;
    text.setText("hello");
    EXPECT_FALSE(canReadDrop(&text));
}
