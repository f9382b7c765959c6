// The tool identifiers: declared once, each one a tool of the table, and the scope guard
// of SuppressToolCommand.
#include "core/globals.h"
#include "core/tab_page.h"
#include "core/tool_ids.h"
#include "core/tool_table.h"

#include <gtest/gtest.h>

#include <QSet>

using namespace tw;

TEST(ToolIds, EveryConstantIsAToolOfTheTableAndEveryToolHasOne)
{
    QSet<QString> table;
    for (const ToolDef &d : toolTable()) table.insert(d.id);
    QSet<QString> declared;
    for (QLatin1String id : tool::All) {
        EXPECT_TRUE(table.contains(id)) << id.data();
        EXPECT_FALSE(declared.contains(id)) << "declared twice: " << id.data();
        declared.insert(id);
    }
    for (const QString &id : table) EXPECT_TRUE(declared.contains(id)) << qPrintable(id);
}

TEST(ToolIds, AConstantIsItsIdentifierWithoutThePrefix)
{
    EXPECT_EQ(QString(tool::mnuExit), QStringLiteral("ID_mnuExit"));
    EXPECT_EQ(QString(tool::mnuRemoveRed_Eye), QStringLiteral("ID_mnuRemoveRed-Eye"));
}

TEST(SuppressTools, PutsBackTheValueItFound)
{
    G.SuppressToolCommand = false;
    {
        SuppressTools outer;
        EXPECT_TRUE(G.SuppressToolCommand);
        {
            SuppressTools inner;
            EXPECT_TRUE(G.SuppressToolCommand);
        }
        // A nested guard leaves the flag on for its caller.
        EXPECT_TRUE(G.SuppressToolCommand);
    }
    EXPECT_FALSE(G.SuppressToolCommand);
}

TEST(TabTable, KeysCaptionsAndTips)
{
    EXPECT_EQ(tabKey(1), QStringLiteral("Find"));
    EXPECT_EQ(tabCaption(1), QStringLiteral("Find and Open"));
    EXPECT_EQ(tabCaption(5), QStringLiteral("Slide Show"));
    EXPECT_EQ(tabToolTip(7), QStringLiteral("Surf the Internet"));
    EXPECT_EQ(tabIndexOfKey(QStringLiteral("Tools")), 8);
    EXPECT_EQ(tabIndexOfKey(QStringLiteral("Slide Show")), 0);  // keys, never captions
    EXPECT_TRUE(tabKey(0).isEmpty());
    EXPECT_TRUE(tabKey(9).isEmpty());
}
