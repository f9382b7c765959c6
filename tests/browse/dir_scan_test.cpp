#include "browse/dir_scan.h"
#include "core/catalogue.h"
#include "core/errors.h"
#include "test_tree.h"

#include <gtest/gtest.h>

#include <cerrno>

using namespace tw::browse;

TEST(PatternSet, AgreesWithTheCatalogueMatcher)
{
    const QStringList patterns = {
        "*.JPG;*.JPE;*.CMP",
        "*.*",
        "*LOG",
        "photo?.png",
        " *.TIFF ; *.TIF ",
        "a*b*c",
        "*.",
        "*",
        "*.TXT;*.RTF;*.INI;*LOG;*.BAT",
        "ÄB*.jpg",
        "x?y",
        "",
    };
    const QStringList names = {
        "a.jpg",     "A.JPG", "b.Jpe",      "c.cmp",       "d.jpeg",   "noext",   "catalog",
        "CHANGELOG", "x.log", "photo1.PNG", "photo12.png", "pic.tiff", "pic.tif", "abc",
        "aXbYc",     "acb",   "dot.",       "äbc.JPG",     "xäy",      "xay",     ".hidden.jpg",
    };
    for (const QString &p : patterns) {
        PatternSet ps(p);
        for (const QString &n : names) {
            const QByteArray bytes = n.toUtf8();
            EXPECT_EQ(ps.matches(n), tw::matchesPatternList(n, p))
                << p.toStdString() << " / " << n.toStdString();
            EXPECT_EQ(ps.matchesBytes(bytes.constData(), size_t(bytes.size())), tw::matchesPatternList(n, p))
                << p.toStdString() << " / " << n.toStdString();
        }
    }
}

TEST(NaturalOrder, IgnoresCaseAndReadsNumbersByValue)
{
    EXPECT_TRUE(naturalLess("file2", "file10"));
    EXPECT_FALSE(naturalLess("file10", "file2"));
    EXPECT_TRUE(naturalLess("apple", "Banana"));
    EXPECT_TRUE(naturalLess("Apple", "banana"));
    EXPECT_TRUE(naturalLess("a", "a1"));
    EXPECT_TRUE(naturalLess("x9y", "x10"));
    EXPECT_EQ(naturalCompare(u"same", u"same"), 0);
    EXPECT_NE(naturalCompare(u"Same", u"same"), 0);  // a stable order for names that differ by case only
}

TEST(FileCounter, CountsPlainVisibleFilesOfThePattern)
{
    twtest::TempTree t;
    t.put("a/one.jpg");
    t.put("a/TWO.JPG");
    t.put("a/three.png");
    t.put("a/.hidden.jpg");
    t.mkdir("a/sub.jpg");  // a folder is not a file
    t.link(t.path("a/one.jpg"), "a/link.jpg");
    FileCounter f;
    f.setPattern("*.jpg");
    ASSERT_EQ(f.setPath(t.path("a")), 0);
    EXPECT_EQ(f.listCount(), 3);
    f.setPattern("*.PNG;*.jpg");
    ASSERT_EQ(f.setPath(t.path("a")), 0);
    EXPECT_EQ(f.listCount(), 4);
}

TEST(FileCounter, ABadPathKeepsTheFolderBefore)
{
    twtest::TempTree t;
    t.put("a/one.jpg");
    FileCounter f;
    f.setPattern("*.JPG");
    ASSERT_EQ(f.setPath(t.path("a")), 0);
    EXPECT_EQ(f.setPath(t.path("missing")), tw::ErrPathNotFound);
    EXPECT_EQ(f.path(), t.path("a"));
    EXPECT_EQ(f.listCount(), 1);
    t.put("file.txt");
    EXPECT_EQ(f.setPath(t.path("file.txt")), tw::ErrPathNotFound);
}

TEST(FolderErrors, MapOntoTheProgramsNumbers)
{
    EXPECT_EQ(folderErrorNumber(ENOENT), 76);
    EXPECT_EQ(folderErrorNumber(ENOTDIR), 76);
    EXPECT_EQ(folderErrorNumber(EACCES), 70);
    EXPECT_EQ(folderErrorNumber(ENOMEDIUM), 68);
    EXPECT_EQ(folderErrorNumber(ENXIO), 68);
    EXPECT_EQ(folderErrorNumber(EIO), 57);
    // The fault hook reaches the same mapping as a real failure.
    twtest::TempTree t;
    t.mkdir("dev");
    setReadFaultHook([&](const QString &p) { return p == t.path("dev") ? ENOMEDIUM : 0; });
    FileCounter f;
    EXPECT_EQ(f.setPath(t.path("dev")), 68);
    setReadFaultHook({});
    EXPECT_EQ(f.setPath(t.path("dev")), 0);
}
