#include "core/session.h"

#include <gtest/gtest.h>

using namespace tw;

TEST(CommandLine, QuotedPathOfThreeWordsRejoins)
{
    auto cl = GetCommandLine("\"/home/u/My Pictures/a b.jpg\"");
    EXPECT_EQ(cl.Args.size(), 3);
    EXPECT_EQ(cl.CommandArg[0], "\"/home/u/My");
    EXPECT_EQ(JoinCommandLine(cl), "/home/u/My Pictures/a b.jpg");
}

TEST(CommandLine, SevenWordsKeepOnlySix)
{
    auto cl = GetCommandLine("a b c d e f g");
    EXPECT_EQ(cl.Args.size(), 7);
    EXPECT_EQ(JoinCommandLine(cl), "a b c d e f");
}

TEST(CommandLine, RepeatedBlanksAndTabsCollapse)
{
    auto cl = GetCommandLine("\"/x/two  blanks\tand tab.jpg\"");
    EXPECT_EQ(JoinCommandLine(cl), "/x/two blanks and tab.jpg");
}

TEST(CommandLine, TwoCharacterQuotedStringStays)
{
    auto cl = GetCommandLine("\"\"");
    EXPECT_EQ(JoinCommandLine(cl), "\"\"");
}

TEST(CommandLine, LastCharacterIsCutWhateverItIs)
{
    auto cl = GetCommandLine("\"/x/a.jpg");
    EXPECT_EQ(JoinCommandLine(cl), "/x/a.jp");
}

TEST(CommandLine, UnquotedPathStaysWhole)
{
    auto cl = GetCommandLine("/x/a.jpg");
    EXPECT_EQ(JoinCommandLine(cl), "/x/a.jpg");
}

TEST(CommandLine, MaxArgsStopsTheWalk)
{
    auto cl = GetCommandLine("1 2 3 4 5 6 7 8 9 10 11 12");
    EXPECT_EQ(cl.Args.size(), 10);
    auto c3 = GetCommandLine("1 2 3 4", 3);
    EXPECT_EQ(c3.Args.size(), 3);
    EXPECT_EQ(c3.CommandArg[3], "");
}

TEST(CommandLine, EmptyLineHasNoArguments)
{
    auto cl = GetCommandLine("  \t ");
    EXPECT_TRUE(cl.Args.isEmpty());
    EXPECT_EQ(JoinCommandLine(cl), "");
}

TEST(CommandLine, RawLineJoinsArgumentsWithOneBlank)
{
    EXPECT_EQ(rawCommandLine({"/a/My Pictures/b.jpg"}), "/a/My Pictures/b.jpg");
    EXPECT_EQ(JoinCommandLine(GetCommandLine(rawCommandLine({"/a/My  Pictures/b.jpg"}))),
              "/a/My Pictures/b.jpg");
}

TEST(ComputerName, CutAtTheTenthBlank)
{
    EXPECT_EQ(cutComputerNameAnswer("mypc"), "MYPC");
    EXPECT_EQ(cutComputerNameAnswer("   "), "");
    // A name that fills the buffer without blanks loses nine characters.
    const QString full(260, 'x');
    EXPECT_EQ(cutComputerNameAnswer(full).size(), 251);
}
