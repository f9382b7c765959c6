#include "core/text_rules.h"

#include <gtest/gtest.h>

using namespace tw;

TEST(TextRules, StrPutsABlankBeforeNonNegative)
{
    EXPECT_EQ(Str(5), " 5");
    EXPECT_EQ(Str(0), " 0");
    EXPECT_EQ(Str(-3), "-3");
}

TEST(TextRules, ValReadsLeadingDigitsOnly)
{
    EXPECT_EQ(Val("1,000"), 1);
    EXPECT_EQ(Val("  42abc"), 42);
    EXPECT_EQ(Val("abc"), 0);
    EXPECT_DOUBLE_EQ(Val("5.51"), 5.51);
    EXPECT_EQ(Val("-7"), -7);
    EXPECT_EQ(Val(""), 0);
}

TEST(DelimitedReader, CommaEndsAStringValue)
{
    DelimitedReader r("/home/Pictures, Old\r\n1 0\r\n");
    EXPECT_EQ(*r.readString(), "/home/Pictures");
    EXPECT_EQ(*r.readString(), "Old");
    EXPECT_EQ(*r.readNumber(), 1);
    EXPECT_EQ(*r.readNumber(), 0);
    EXPECT_FALSE(r.readNumber().has_value());
}

TEST(DelimitedReader, BlankEndsANumberButNotAString)
{
    DelimitedReader r("12 34\r\nmy folder name\r\n");
    EXPECT_EQ(*r.readNumber(), 12);
    EXPECT_EQ(*r.readNumber(), 34);
    EXPECT_EQ(*r.readString(), "my folder name");
}

TEST(DelimitedReader, QuotedValueRunsToTheClosingQuote)
{
    DelimitedReader r("\"a, b\",c\r\n");
    EXPECT_EQ(*r.readString(), "a, b");
    EXPECT_EQ(*r.readString(), "c");
}

TEST(DelimitedReader, LeadingBlanksDropped)
{
    DelimitedReader r("   x\r\n");
    EXPECT_EQ(*r.readString(), "x");
}

TEST(DelimitedReader, NonNumberIsNoNumber)
{
    DelimitedReader r("abc 1");
    EXPECT_FALSE(r.readNumber().has_value());
}

TEST(DelimitedReader, NonUtf8BytesSurvive)
{
    QByteArray name("/tmp/caf\xe9.jpg");
    DelimitedReader r(name + "\r\n");
    EXPECT_EQ(pathToBytes(*r.readString()), name);
}

TEST(DelimitedReader, EmptyLineIsAnEmptyValue)
{
    DelimitedReader r("1\r\n\r\n/x\r\n");
    EXPECT_EQ(*r.readNumber(), 1);
    EXPECT_EQ(*r.readString(), "");
    EXPECT_EQ(*r.readString(), "/x");
    EXPECT_FALSE(r.readString().has_value());
}
