// The favorites folder rule, the .URL shortcut file, PictList.INI and the text decoding.
#include "web/text_loading.h"
#include "web/url_file.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace tw;

namespace {

QByteArray readAll(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

void writeAll(const QString &path, const QByteArray &bytes)
{
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write(bytes);
}

}  // namespace

TEST(UrlFile, FourLinesInWindowsForm)
{
    EXPECT_EQ(urlFileBytes(QStringLiteral("http://a.example/x?y=1")),
              QByteArray("[DEFAULT]\r\nBASEURL=http://a.example/x?y=1\r\n[InternetShortcut]\r\nURL=http://"
                         "a.example/x?y=1\r\n"));
}

TEST(UrlFile, NameRules)
{
    EXPECT_EQ(urlFileName(QStringLiteral("News: Today")), QStringLiteral("News- Today.URL"));
    // A dot near the end counts as an extension: the text behind it goes.
    EXPECT_EQ(urlFileName(QStringLiteral("Release v1.2")), QStringLiteral("Release v1.URL"));
    EXPECT_EQ(urlFileName(QStringLiteral("Page.html")), QStringLiteral("Page.URL"));
    EXPECT_EQ(urlFileName(QStringLiteral("Saved.url")), QStringLiteral("Saved.url"));
    // More than five characters behind the last dot: no extension.
    EXPECT_EQ(urlFileName(QStringLiteral("Site www.example")), QStringLiteral("Site www.example.URL"));
    EXPECT_EQ(urlFileName(QStringLiteral("Version 1.234567")), QStringLiteral("Version 1.234567.URL"));
    EXPECT_EQ(urlFileName(QStringLiteral("Version 1.23456")), QStringLiteral("Version 1.URL"));
    EXPECT_EQ(urlFileName(QStringLiteral("Version 1.2345")), QStringLiteral("Version 1.URL"));
    // Over 200 characters: the cut takes the extension with it.
    const QString longTitle(250, u'x');
    EXPECT_EQ(urlFileName(longTitle), QString(200, u'x'));
    EXPECT_EQ(urlFileName(QString(197, u'y')), QString(197, u'y') + QStringLiteral(".UR"));
}

TEST(UrlFile, WriteAndItsFailures)
{
    QTemporaryDir dir;
    const QString folder = dir.path() + u'/';
    QString written;
    EXPECT_FALSE(writeUrlFile(folder, QStringLiteral("   "), QStringLiteral("http://x/"), &written));
    EXPECT_TRUE(writeUrlFile(folder, QStringLiteral("A: B"), QStringLiteral("http://x/"), &written));
    EXPECT_EQ(written, folder + QStringLiteral("A- B.URL"));
    EXPECT_EQ(readAll(written), urlFileBytes(QStringLiteral("http://x/")));
    // A separator in the title makes a path that cannot be opened: still true, nothing written.
    EXPECT_TRUE(writeUrlFile(folder, QStringLiteral("a/b title"), QStringLiteral("http://x/"), &written));
    EXPECT_FALSE(QFile::exists(written));
    // A rewrite replaces the file.
    EXPECT_TRUE(writeUrlFile(folder, QStringLiteral("A: B"), QStringLiteral("http://y/"), &written));
    EXPECT_EQ(readAll(written), urlFileBytes(QStringLiteral("http://y/")));
}

TEST(UrlFile, ReadTakesTheSecondLine)
{
    QTemporaryDir dir;
    const QString p = dir.path() + QStringLiteral("/Site.URL");
    writeAll(p, urlFileBytes(QStringLiteral("http://a/")));
    UrlFileResult r = readUrlFile(p);
    EXPECT_EQ(r.url, QStringLiteral("http://a/"));  // "BASEURL=" on line 2
    EXPECT_EQ(r.name, QStringLiteral("Site.URL"));
    writeAll(p, "[InternetShortcut]\r\nURL=http://b/\r\n");
    EXPECT_EQ(readUrlFile(p).url, QStringLiteral("http://b/"));
    // The address on line 3: line 2 stands as the address.
    writeAll(p, "[InternetShortcut]\r\nIDList=\r\nURL=http://c/\r\n");
    EXPECT_EQ(readUrlFile(p).url, QStringLiteral("IDList="));
    // No second line, an empty file, a missing file: no address.
    writeAll(p, "[InternetShortcut]\r\n");
    EXPECT_EQ(readUrlFile(p).url, QString());
    writeAll(p, "");
    EXPECT_EQ(readUrlFile(p).url, QString());
    EXPECT_EQ(readUrlFile(dir.path() + QStringLiteral("/none.URL")).url, QString());
    // LF line ends and a last line without its end.
    writeAll(p, "[DEFAULT]\nBASEURL=http://d/");
    EXPECT_EQ(readUrlFile(p).url, QStringLiteral("http://d/"));
}

TEST(UrlFile, TenMegabyteLines)
{
    QTemporaryDir dir;
    const QString p = dir.path() + QStringLiteral("/Big.URL");
    writeAll(p, "[" + QByteArray(10 << 20, 'a') + "]\r\nURL=http://e/\r\n");
    EXPECT_EQ(readUrlFile(p).url, QStringLiteral("http://e/"));
    writeAll(p, "[InternetShortcut]\r\nURL=" + QByteArray(10 << 20, 'b') + "\r\n");
    EXPECT_EQ(readUrlFile(p).url.size(), 10 << 20);
}

TEST(FavoritesFolder, HomeThenWineThenProgramFolder)
{
    QTemporaryDir dir;
    const QString home = dir.path() + QStringLiteral("/home");
    const QString prog = dir.path() + QStringLiteral("/prog");
    QDir().mkpath(home);
    // Neither: the program's folder, its Favorites made on demand.
    EXPECT_EQ(FindFavoritesFolder(home, QStringLiteral("ann"), prog), prog);
    EXPECT_TRUE(QFileInfo(prog + QStringLiteral("/Favorites")).isDir());
    // A Wine prefix's folder for the user.
    const QString wine = home + QStringLiteral("/.wine/drive_c/users/ann");
    QDir().mkpath(wine + QStringLiteral("/Favorites"));
    EXPECT_EQ(FindFavoritesFolder(home, QStringLiteral("ann"), prog), wine);
    EXPECT_EQ(FindFavoritesFolder(home, QStringLiteral("bob"), prog), prog);
    EXPECT_EQ(FindFavoritesFolder(home, QString(), prog), prog);
    // The home folder's own comes first.
    QDir().mkpath(home + QStringLiteral("/Favorites"));
    EXPECT_EQ(FindFavoritesFolder(home, QStringLiteral("ann"), prog), home);
}

TEST(PictList, ReadSplitsAtCommasAndDropsEmptyRows)
{
    QTemporaryDir dir;
    const QString p = dir.path() + QStringLiteral("/PictList.INI");
    EXPECT_TRUE(readPictList(p).isEmpty());
    writeAll(p, "http://a/1.jpg\r\nhttp://b/2,3.jpg\r\n\r\n  http://c/4.jpg\r\n\"http://d/5,6.jpg\"\r\n");
    EXPECT_EQ(readPictList(p),
              (QStringList{"http://a/1.jpg", "http://b/2", "3.jpg", "http://c/4.jpg", "http://d/5,6.jpg"}));
    writeAll(p, QByteArray("\x00\x01\xff\xfe,\r\n\x1a junk", 12));
    const QStringList garbage = readPictList(p);
    EXPECT_LE(garbage.size(), 2);
}

TEST(PictList, WriteIsUnquotedWithCrLfAfterEachRow)
{
    QTemporaryDir dir;
    const QString p = dir.path() + QStringLiteral("/PictList.INI");
    EXPECT_TRUE(writePictList(p, {}));
    EXPECT_EQ(readAll(p), QByteArray());
    EXPECT_TRUE(writePictList(p, {"http://a/1,2.jpg", "", "x"}));
    EXPECT_EQ(readAll(p), QByteArray("http://a/1,2.jpg\r\n\r\nx\r\n"));
    // The asymmetry: the comma splits it on the next read; the empty row is dropped.
    EXPECT_EQ(readPictList(p), (QStringList{"http://a/1", "2.jpg", "x"}));
    // An unwritable place is passed over.
    EXPECT_TRUE(writePictList(dir.path() + QStringLiteral("/no/such/PictList.INI"), {"a"}));
}

TEST(TextDecoding, EncodingsAndLineEnds)
{
    EXPECT_EQ(decodeText("a\r\nb\nc\rd"), QStringLiteral("a\nb\nc\nd"));
    EXPECT_EQ(decodeText("\r\r\n"), QStringLiteral("\n\n"));
    EXPECT_EQ(decodeText("caf\xc3\xa9"), QStringLiteral("caf\u00e9"));
    EXPECT_EQ(decodeText("caf\xe9 \x80"), QStringLiteral("caf\u00e9 \u20ac"));
    EXPECT_EQ(decodeText("\xef\xbb\xbfx"), QStringLiteral("x"));
    EXPECT_EQ(decodeText(QByteArray("a\0b", 3)), QStringLiteral("a\ufffdb"));
    EXPECT_EQ(decodeText(QByteArray()), QString());
}

TEST(Converters, RtfAndWordText)
{
    QTemporaryDir dir;
    const QString rtf = dir.path() + QStringLiteral("/a.rtf");
    writeAll(rtf, "{\\rtf1\\ansi{\\fonttbl{\\f0 Courier New;}}\\f0\\fs40 Big {\\b bold}\\par}");
    const auto html = rtfToHtml(rtf);
    ASSERT_TRUE(html.has_value());
    EXPECT_TRUE(html->contains(QStringLiteral("Courier New")));
    EXPECT_TRUE(html->contains(QStringLiteral("<b>bold</b>")));
    const QString doc = dir.path() + QStringLiteral("/t.doc");
    writeAll(doc, "only text\n");
    EXPECT_EQ(wordText(doc), std::optional<QString>(QStringLiteral("only text\n")));
    EXPECT_FALSE(runConverter(QStringLiteral("no-such-converter-here"), {}, 1000).has_value());
    EXPECT_FALSE(rtfToHtml(dir.path() + QStringLiteral("/missing.rtf")).has_value());
}

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
