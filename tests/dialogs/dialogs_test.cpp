#include "dialogs/about_dialog.h"
#include "dialogs/quick_tips.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace tw;

TEST(TipLines, WholeLinesWithCrLf)
{
    EXPECT_EQ(readTipLines("one, with a comma\r\ntwo\r\n"), QStringList({"one, with a comma", "two"}));
    // An empty line is a tip that shows nothing.
    EXPECT_EQ(readTipLines("a\r\n\r\nb"), QStringList({"a", "", "b"}));
    EXPECT_EQ(readTipLines("\r\n"), QStringList({""}));
    EXPECT_TRUE(readTipLines("").isEmpty());
    // A lone CR or LF ends a line too.
    EXPECT_EQ(readTipLines("a\nb\rc"), QStringList({"a", "b", "c"}));
    // Quotes and blanks stay as they are.
    EXPECT_EQ(readTipLines("  \"quoted\" tip  \r\n"), QStringList({"  \"quoted\" tip  "}));
}

TEST(TipLines, EightBitText)
{
    EXPECT_EQ(readTipLines(QByteArray("Caf\xe9 cr\xe8me\r\n")),
              QStringList({QString::fromUtf8("Café crème")}));
}

TEST(SystemInfo, FoundOnPathOnlyWhenExecutable)
{
    QTemporaryDir dir;
    EXPECT_EQ(findSystemInfoProgram(dir.path()), QString());
    const QString tool = dir.filePath(systemInfoPrograms().first());
    QFile f(tool);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("#!/bin/sh\n");
    f.close();
    EXPECT_EQ(findSystemInfoProgram(dir.path()), QString());  // not executable
    f.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    EXPECT_EQ(findSystemInfoProgram("/nonexistent:" + dir.path()), tool);
    EXPECT_EQ(findSystemInfoProgram(""), QString());
}
