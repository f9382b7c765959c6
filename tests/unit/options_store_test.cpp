#include "core/options_store.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace tw;

namespace {
void put(const QString &path, const QByteArray &d)
{
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(d);
}
QByteArray get(const QString &path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) return {};
    return f.readAll();
}
}  // namespace

TEST(OptionsStore, MissingFilesGiveTheirMessagesAndKeepDefaults)
{
    QTemporaryDir d;
    ColorSettings c;
    auto r = LoadColors(c, d.path());
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.message, "Use the Utility Menu Option - Set Window Colors");
    EXPECT_EQ(c.MenuBack, 0x80000004u);
    OptionSettings o;
    SetDefaultOptions(o, d.path());
    auto r2 = LoadOptions(o, d.path());
    EXPECT_EQ(r2.message, "Use the Utility Menu Option - Set Program Options");
    EXPECT_EQ(o.LastFolder, d.path());
    EXPECT_EQ(o.WindowHeight, 8000);
}

TEST(OptionsStore, ColoursRoundTripWithSystemColours)
{
    QTemporaryDir d;
    ColorSettings c;
    c.ListBack = 0x80000017;
    c.ServiceBack = 0x123456;
    ASSERT_TRUE(SaveColors(c, d.path()).ok);
    const QByteArray text = get(d.path() + "/Colors.INI");
    EXPECT_TRUE(text.endsWith("\r\n"));
    EXPECT_EQ(text.split(' ').size(), 30);
    ColorSettings back;
    back.ListBack = 0;
    ASSERT_TRUE(LoadColors(back, d.path()).ok);
    EXPECT_EQ(back.ListBack, 0x80000017u);
    EXPECT_EQ(back.ServiceBack, 0x123456u);
    EXPECT_EQ(back.MenuBack, 0x80000004u);
}

TEST(OptionsStore, TruncatedColoursKeepFieldsReadSoFar)
{
    QTemporaryDir d;
    put(d.path() + "/Colors.INI", "255 65280\r\n");
    ColorSettings c;
    auto r = LoadColors(c, d.path());
    EXPECT_EQ(r.message, "Error Loading Application Window Colors");
    EXPECT_EQ(c.ServiceBack, 255u);
    EXPECT_EQ(c.ServiceText, 65280u);
    EXPECT_EQ(c.MenuBack, 0x80000004u);
}

TEST(OptionsStore, OptionsRoundTrip)
{
    QTemporaryDir d;
    OptionSettings o;
    SetDefaultOptions(o, "/prog");
    o.LastFolder = "/home/u/My Pictures";
    o.LocalComputerName = "BOX";
    o.BoldFonts = true;
    o.MusicLoopDefault = true;
    o.JpegQuality = 55;
    ASSERT_TRUE(SaveOptions(o, d.path()).ok);
    const QByteArray text = get(d.path() + "/Options.INI");
    EXPECT_EQ(text.count("\r\n"), 4);
    EXPECT_TRUE(text.endsWith("1 1 1 1 0 0 1 1 1 0 1 1\r\n"));
    OptionSettings back;
    SetDefaultOptions(back, "/other");
    ASSERT_TRUE(LoadOptions(back, d.path()).ok);
    EXPECT_EQ(back.LastFolder, "/home/u/My Pictures");
    EXPECT_EQ(back.LocalComputerName, "BOX");
    EXPECT_TRUE(back.BoldFonts);
    EXPECT_TRUE(back.MusicLoopDefault);
    EXPECT_FALSE(back.VideoLoopDefault);
    EXPECT_EQ(back.JpegQuality, 55);
}

TEST(OptionsStore, FolderWithACommaComesBackCut)
{
    QTemporaryDir d;
    put(d.path() + "/Options.INI",
        "0 100 8000 10500 0 2 0 115 115 2 40 0 5000 500 9\r\nPC\r\n/data/Pictures, Old\r\n"
        "1 1 1 1 0 0 1 1 1 0 0 1\r\n");
    OptionSettings o;
    LoadOptions(o, d.path());
    EXPECT_EQ(o.LastFolder, "/data/Pictures");
}

TEST(OptionsStore, AFlagOfMinusOneReadsFalse)
{
    QTemporaryDir d;
    put(d.path() + "/Options.INI",
        "0 100 8000 10500 0 2 0 115 115 2 40 0 5000 500 9\r\nPC\r\n/x\r\n"
        "-1 1 1 1 0 0 1 1 1 0 0 1\r\n");
    OptionSettings o;
    ASSERT_TRUE(LoadOptions(o, d.path()).ok);
    EXPECT_FALSE(o.BoldFonts);
    EXPECT_TRUE(o.SaveLastFolder);
}

TEST(OptionsStore, PartlyReadOptionsLeaveFlagsAtDefaults)
{
    QTemporaryDir d;
    put(d.path() + "/Options.INI", "1 2 3000 4000 0 2 0 115\r\n");
    OptionSettings o;
    auto r = LoadOptions(o, d.path());
    EXPECT_EQ(r.message, "Error Loading Application Options");
    EXPECT_EQ(o.WindowLeft, 1);
    EXPECT_EQ(o.WindowWidth, 4000);
    EXPECT_EQ(o.ThumbCellHeight, 115);
    EXPECT_TRUE(o.SaveLastFolder);
    EXPECT_TRUE(o.AutoPicture);
}

TEST(OptionsStore, BinaryGarbageIsRefusedWithoutCrash)
{
    QTemporaryDir d;
    QByteArray junk;
    for (int i = 0; i < 4096; ++i) junk += char((i * 37) & 0xff);
    put(d.path() + "/Options.INI", junk);
    put(d.path() + "/Colors.INI", junk);
    OptionSettings o;
    ColorSettings c;
    EXPECT_EQ(LoadOptions(o, d.path()).message, "Error Loading Application Options");
    EXPECT_EQ(LoadColors(c, d.path()).message, "Error Loading Application Window Colors");
}

TEST(OptionsStore, WriteFailureGivesTheErrorForm)
{
    OptionSettings o;
    auto r = SaveOptions(o, "/nonexistent-folder-for-test/x");
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.message, "Error: 76 - Path not found");
}

TEST(OptionsStore, EnormousFilesAreReadWithoutTrouble)
{
    QTemporaryDir d;
    // Valid fields followed by 24 MB more: the fields needed are read, the rest never is.
    QByteArray tail;
    tail.reserve(24 << 20);
    while (tail.size() < (24 << 20)) tail += "7 ";
    put(d.path() + "/Options.INI",
        "0 100 8000 10500 0 2 0 115 115 2 40 0 5000 500 9\r\nPC\r\n/x\r\n1 1 1 1 0 0 1 1 1 0 0 1\r\n" + tail);
    put(d.path() + "/Colors.INI", tail);
    OptionSettings o;
    ColorSettings c;
    EXPECT_TRUE(LoadOptions(o, d.path()).ok);
    EXPECT_EQ(o.LastFolder, "/x");
    EXPECT_TRUE(o.BoldFonts);
    EXPECT_TRUE(LoadColors(c, d.path()).ok);
    EXPECT_EQ(c.ButtonText, 7u);
    // One enormous line: the string fields swallow it and the read runs out.
    put(d.path() + "/Options.INI", tail);
    OptionSettings o2;
    EXPECT_EQ(LoadOptions(o2, d.path()).message, "Error Loading Application Options");
    EXPECT_EQ(o2.JpegQuality, 7);
}

TEST(OptionsStore, ANumberTooLargeForItsFieldCannotBeRead)
{
    QTemporaryDir d;
    put(d.path() + "/Options.INI",
        "0 100 8000 10500 0 2 99999 115 115 2 40 0 5000 500 9\r\nPC\r\n/x\r\n0 1 1 1 0 0 1 1 1 0 0 1\r\n");
    OptionSettings o;
    EXPECT_EQ(LoadOptions(o, d.path()).message, "Error Loading Application Options");
    EXPECT_EQ(o.LabelTextStyle, 0);
    EXPECT_EQ(o.MenuStyle, 2);
}

TEST(OptionsStore, AnUnreadableOptionsFileIsKeptBesideTheOneWritten)
{
    QTemporaryDir d;
    const QByteArray old = "1 2 3000 4000 0 2 0 115 115 2 40 0 5000 500 9\r\nMYPC\r\n/home/u/Pics\r\n1 1 x";
    put(d.path() + "/Options.INI", old);
    OptionSettings o;
    SetDefaultOptions(o, d.path());
    EXPECT_EQ(LoadOptions(o, d.path()).message, "Error Loading Application Options");
    EXPECT_FALSE(QFile::exists(d.path() + "/Options.INI.bak"));  // nothing is copied by reading
    ASSERT_TRUE(SaveOptions(o, d.path()).ok);
    EXPECT_EQ(get(d.path() + "/Options.INI.bak"), old);
    // The file written is still the fields read plus defaults, and reads back.
    OptionSettings back;
    SetDefaultOptions(back, d.path());
    ASSERT_TRUE(LoadOptions(back, d.path()).ok);
    EXPECT_EQ(back.LocalComputerName, "MYPC");
    EXPECT_EQ(back.LastFolder, "/home/u/Pics");
    EXPECT_EQ(back.WindowWidth, 4000);
    // A second write after a good read leaves the copy of the unreadable file alone.
    back.WindowWidth = 5000;
    ASSERT_TRUE(SaveOptions(back, d.path()).ok);
    EXPECT_EQ(get(d.path() + "/Options.INI.bak"), old);
}

TEST(OptionsStore, AnUnreadableColorsFileIsKeptBesideTheOneWritten)
{
    QTemporaryDir d;
    const QByteArray old = "1 2 3 junk";
    put(d.path() + "/Colors.INI", old);
    ColorSettings c;
    EXPECT_EQ(LoadColors(c, d.path()).message, "Error Loading Application Window Colors");
    ASSERT_TRUE(SaveColors(c, d.path()).ok);
    EXPECT_EQ(get(d.path() + "/Colors.INI.bak"), old);
    ColorSettings back;
    ASSERT_TRUE(LoadColors(back, d.path()).ok);
    EXPECT_EQ(back.field(0), 1u);
    EXPECT_EQ(back.field(2), 3u);
}

TEST(OptionsStore, AGoodOrMissingFileLeavesNoCopy)
{
    QTemporaryDir d;
    OptionSettings o;
    SetDefaultOptions(o, d.path());
    LoadOptions(o, d.path());  // missing
    ASSERT_TRUE(SaveOptions(o, d.path()).ok);
    ASSERT_TRUE(LoadOptions(o, d.path()).ok);
    ASSERT_TRUE(SaveOptions(o, d.path()).ok);
    EXPECT_FALSE(QFile::exists(d.path() + "/Options.INI.bak"));
}

TEST(OptionsStore, ColoursBeyondAnyWholeNumberKeepTheirLow32Bits)
{
    QTemporaryDir d;
    QByteArray line = "4294967297 -1 100000000000000000000 -100000000000000000000";
    for (int i = 4; i < ColorSettings::Count; ++i) line += " 0";
    put(d.path() + "/Colors.INI", line + "\r\n");
    ColorSettings c;
    ASSERT_TRUE(LoadColors(c, d.path()).ok);
    EXPECT_EQ(c.field(0), 1u);
    EXPECT_EQ(c.field(1), 0xFFFFFFFFu);
    EXPECT_EQ(c.field(2), 1661992960u);
    EXPECT_EQ(c.field(3), 2632974336u);
}
