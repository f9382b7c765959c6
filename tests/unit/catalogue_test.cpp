#include "core/catalogue.h"

#include <gtest/gtest.h>

using namespace tw;

TEST(GetFileExt, UpperCasesTheExtension)
{
    EXPECT_EQ(GetFileExt("photo.JPEG"), "JPEG");
    EXPECT_EQ(GetFileExt("photo.jpeg"), "JPEG");
}

TEST(GetFileExt, NoDotOrTooLongGivesEmpty)
{
    EXPECT_EQ(GetFileExt("noextension"), "");
    EXPECT_EQ(GetFileExt("archive.verylongname"), "");
}

TEST(GetFileExt, EightCharactersIsTheLimit)
{
    EXPECT_EQ(GetFileExt("a.12345678"), "12345678");
    EXPECT_EQ(GetFileExt("a.123456789"), "");
}

TEST(GetFileExt, ADotInAFolderNameCounts)
{
    EXPECT_EQ(GetFileExt("/a.b/file"), "B/FILE");
    EXPECT_EQ(GetFileExt("/dir.with.dots/file"), "");
    Cat.fillExtensions();
    EXPECT_EQ(Cat.extRow(GetFileExt("/a.b/file")), -1);
}

TEST(Catalogue, ExtensionRowsCarryTheKinds)
{
    const auto &t = fileExtLiterals();
    EXPECT_EQ(t[0], "JPG");
    EXPECT_EQ(t[39], "MSP");
    EXPECT_EQ(t[40], "WAV");
    EXPECT_EQ(t[48], "MP3");
    EXPECT_EQ(t[49], "M3U");
    EXPECT_EQ(t[57], "WMA");
    EXPECT_EQ(t[61], "MP2");
    EXPECT_EQ(t[62], "TXT");
    EXPECT_EQ(t[83], "PDF");
    EXPECT_EQ(t[84], "DAT");
    EXPECT_EQ(t[85], "CDA");
}

TEST(Catalogue, AJpgMatchesRowZeroAndRowSevenButOnlyTheTableDecidesItsKind)
{
    EXPECT_TRUE(matchesPatternList("a.jpg", filterPatternLiterals()[0]));
    EXPECT_TRUE(matchesPatternList("a.jpg", filterPatternLiterals()[7]));
    Cat.fillExtensions();
    EXPECT_TRUE(IsPictureExt(GetFileExt("a.jpg")));
    EXPECT_FALSE(IsMediaFile("a.jpg"));
}

TEST(Catalogue, FilterLiteralsStandAsBuilt)
{
    const auto &n = filterNameLiterals();
    const auto &p = filterPatternLiterals();
    EXPECT_EQ(n[19], "WorkPerfect Format (WPG)");
    EXPECT_EQ(n[30], "Miscellaneous 1 bit (MAC,IMG,MSP,ICA,CAL) ");
    EXPECT_TRUE(p[31].contains("*.XWP"));
    EXPECT_FALSE(p[31].contains("*.XWD"));
    EXPECT_EQ(p[22], "*.XWD");
    EXPECT_TRUE(p[33].contains("*.DIC"));
    EXPECT_FALSE(p[33].contains("*.WMA"));
    EXPECT_FALSE(p[33].contains("*.WMV"));
    EXPECT_LE(p[31].size(), FilterPatternWidth);
    EXPECT_LE(p[33].size(), FilterPatternWidth);
    Catalogue c;
    c.fillFilters();
    EXPECT_EQ(c.FilterPatterns[33].size(), FilterPatternWidth);
    EXPECT_EQ(c.FilterPatterns[33].trimmed(), p[33]);
    EXPECT_TRUE(c.FilterNames[36].isEmpty());
    EXPECT_EQ(c.FilterNames[33].size(), 20);
}

TEST(Catalogue, MediaFilterExtraDiffersFromRow33)
{
    EXPECT_FALSE(MediaFilterExtraLiteral.contains("*.JPEG"));
    EXPECT_FALSE(MediaFilterExtraLiteral.contains("*.AVI"));
    EXPECT_FALSE(MediaFilterExtraLiteral.contains("*.CAL"));
    EXPECT_TRUE(MediaFilterExtraLiteral.endsWith("*.MP3;*.M3U"));
}

TEST(GetFileFilterType, FindsTheOneBasedRow)
{
    EXPECT_EQ(GetFileFilterType("*.TIFF;*.TIF;*.MPT"), 2);
    EXPECT_EQ(GetFileFilterType("*.JPG;*.JPE;*.JPEG;*.CMP"), 1);
    EXPECT_EQ(GetFileFilterType("*.BMP"), 3);
    EXPECT_EQ(GetFileFilterType("*.JBG"), 18);
    EXPECT_EQ(GetFileFilterType("*.MAC;*.IMG;*.MSP;*.ICA;*.CAL"), 27);
}

TEST(GetFileFilterType, UnknownPatternGivesRowOne)
{
    EXPECT_EQ(GetFileFilterType("*.ZIP"), 1);
    EXPECT_EQ(GetFileFilterType(""), 1);
}

TEST(Catalogue, MediaAndVideoRanges)
{
    Cat.fillExtensions();
    EXPECT_TRUE(IsMediaFile("/a/b.wav"));
    EXPECT_FALSE(IsVideoFile("/a/b.wav"));
    EXPECT_TRUE(IsVideoFile("/a/b.WMA"));
    EXPECT_TRUE(IsVideoFile("/a/list.m3u"));
    EXPECT_TRUE(IsMediaFile("/a/track.cda"));
    EXPECT_TRUE(IsMediaFile("/a/video.DAT"));
    EXPECT_FALSE(IsVideoFile("/a/video.DAT"));
    EXPECT_FALSE(IsMediaFile("/a/noext"));
    EXPECT_FALSE(IsMediaFile("/a/doc.txt"));
}

TEST(Catalogue, SaveTableHas27Pairs) { EXPECT_EQ(SaveFormatTable.split('|').size(), 54); }

TEST(Catalogue, PatternsMatchIgnoringCase)
{
    EXPECT_TRUE(matchesPatternList("Photo.Jpe", "*.JPG;*.JPE"));
    EXPECT_FALSE(matchesPatternList("Photo.png", "*.JPG;*.JPE"));
    EXPECT_TRUE(matchesPatternList("README", "*.*"));
    EXPECT_TRUE(matchesPatternList("x.log", " *.TXT ; *.LOG "));
}
