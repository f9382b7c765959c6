#include "media/playlist_file.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace tw;

namespace {
QByteArray readAll(const QString &p)
{
    QFile f(p);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}
}  // namespace

TEST(PlayListFile, EveryLineEndsInCrLfAndAnEmptyListIsZeroBytes)
{
    EXPECT_EQ(playListBytes({QStringLiteral("/a/b.avi"), QStringLiteral("/c d.mpg")}),
              QByteArray("/a/b.avi\r\n/c d.mpg\r\n"));
    EXPECT_EQ(playListBytes({}), QByteArray());
}

TEST(PlayListFile, ACommaSplitsAnEntryAndLeadingBlanksGo)
{
    EXPECT_EQ(readPlayListBytes("/v/one, two.avi\r\n/x.mp3\r\n"),
              (QStringList{QStringLiteral("/v/one"), QStringLiteral("two.avi"), QStringLiteral("/x.mp3")}));
    EXPECT_EQ(readPlayListBytes("\"/q, uoted.avi\"\r\n"), QStringList{QStringLiteral("/q, uoted.avi")});
    EXPECT_TRUE(readPlayListBytes("").isEmpty());
}

TEST(PlayListFile, WrittenThroughATemporaryFileAndReadBack)
{
    QTemporaryDir d;
    const QString f = d.filePath(QStringLiteral("L.PLST"));
    ASSERT_TRUE(writePlayListFile(f, {QStringLiteral("/a.wav"), QStringLiteral("/b.mid")}));
    EXPECT_EQ(readAll(f), QByteArray("/a.wav\r\n/b.mid\r\n"));
    ASSERT_TRUE(writePlayListFile(f, {}));
    EXPECT_EQ(readAll(f), QByteArray());
    EXPECT_EQ(QDir(d.path()).entryList(QDir::Files), QStringList{QStringLiteral("L.PLST")});
    QStringList back{QStringLiteral("kept")};
    EXPECT_FALSE(readPlayListFile(d.filePath(QStringLiteral("gone.PLST")), &back));
    EXPECT_EQ(back, QStringList{QStringLiteral("kept")});
}

TEST(PlayListFile, AFailedWriteLeavesTheFormerFile)
{
    QTemporaryDir d;
    const QString f = d.filePath(QStringLiteral("L.PLST"));
    ASSERT_TRUE(writePlayListFile(f, {QStringLiteral("/a.wav")}));
    QFile::setPermissions(d.path(), QFile::ReadOwner | QFile::ExeOwner);
    const bool wrote = writePlayListFile(f, {QStringLiteral("/b.wav")});
    QFile::setPermissions(d.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    // Root writes into a read-only folder all the same; anyone else is refused.
    if (!wrote) {
        EXPECT_EQ(readAll(f), QByteArray("/a.wav\r\n"));
    }
    EXPECT_FALSE(writePlayListFile(d.filePath(QStringLiteral("no/such/folder/L.PLST")), {}));
}

TEST(PlayListFile, NamesAreTheFilesOfThePatternLessTheirExtension)
{
    QTemporaryDir d;
    const QString folder = d.filePath(QStringLiteral("VideoPlayList"));
    EXPECT_TRUE(playListNames(folder).isEmpty());
    EXPECT_TRUE(QDir(folder).exists());
    for (const char *n : {"b.PLST", "a.plst", "x.txt", "c.d.PLST"}) {
        QFile f(folder + u'/' + QLatin1String(n));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    }
    EXPECT_EQ(playListNames(folder),
              (QStringList{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c.d")}));
}

TEST(PlayListFile, TheFamiliesAdmitTheirKinds)
{
    EXPECT_TRUE(familyAdmits(true, QStringLiteral("/x/a.AVI")));
    EXPECT_TRUE(familyAdmits(true, QStringLiteral("/x/a.mpeg")));
    EXPECT_TRUE(familyAdmits(true, QStringLiteral("/x/a.asx")));
    EXPECT_FALSE(familyAdmits(true, QStringLiteral("/x/a.mp3")));
    EXPECT_TRUE(familyAdmits(false, QStringLiteral("/x/a.mp3")));
    EXPECT_TRUE(familyAdmits(false, QStringLiteral("/x/a.RMI")));
    EXPECT_TRUE(familyAdmits(false, QStringLiteral("/x/a.m3u")));
    EXPECT_FALSE(familyAdmits(false, QStringLiteral("/x/a.avi")));
    EXPECT_FALSE(familyAdmits(false, QStringLiteral("/x/noext")));
}
