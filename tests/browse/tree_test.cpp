#include "browse/shell_list.h"
#include "browse/shell_tree.h"
#include "test_tree.h"

#include <QDir>

#include <gtest/gtest.h>

using namespace tw::browse;

namespace {

QStringList names(const ShellTreeModel &m)
{
    QStringList out;
    for (int i = 0; i < m.count(); ++i) out << m.node(i)->name;
    return out;
}

}  // namespace

TEST(ShellTreeModel, ExpandingPutsChildrenRightBehindTheNode)
{
    twtest::TempTree t;
    for (const char *d : {"a/a2", "a/a10", "a/A1", "B", "c10", "c9", ".hidden", "d/e/f"}) t.mkdir(d);
    t.put("file.jpg");
    ShellTreeModel m;
    m.setRoots({{"Top", t.root(), {}}, {"Other", t.path("d"), {}}});
    EXPECT_EQ(names(m), QStringList({"Top", "Other"}));
    EXPECT_TRUE(m.hasSubFolders(m.node(0)));
    ASSERT_EQ(m.setExpanded(0, true), 0);
    EXPECT_EQ(names(m), QStringList({"Top", "a", "B", "c9", "c10", "d", "Other"}));
    ASSERT_EQ(m.setExpanded(1, true), 0);
    EXPECT_EQ(names(m), QStringList({"Top", "a", "A1", "a2", "a10", "B", "c9", "c10", "d", "Other"}));
    EXPECT_EQ(m.node(2)->path, t.path("a/A1"));
    EXPECT_EQ(m.node(2)->parent->path, t.path("a"));
    EXPECT_FALSE(m.hasSubFolders(m.node(2)));
    // Collapsing the top hides everything under it; expanding again restores the open "a".
    ASSERT_EQ(m.setExpanded(0, false), 0);
    EXPECT_EQ(names(m), QStringList({"Top", "Other"}));
    ASSERT_EQ(m.setExpanded(0, true), 0);
    EXPECT_EQ(m.count(), 10);
}

TEST(ShellTreeModel, VirtualNodesHaveNoPath)
{
    twtest::TempTree t;
    t.mkdir("share1/x");
    ShellTreeModel m;
    m.setRoots({{"Network", QString(), {{"HOSTA", QString(), {{"share1", t.path("share1"), {}}}}}},
                {"Empty", QString(), {}}});
    EXPECT_TRUE(m.node(0)->path.isEmpty());
    EXPECT_TRUE(m.node(0)->fsAncestor);
    EXPECT_FALSE(m.node(1)->fsAncestor);
    EXPECT_FALSE(m.hasSubFolders(m.node(1)));
    ASSERT_EQ(m.setExpanded(0, true), 0);
    ASSERT_EQ(m.setExpanded(1, true), 0);
    EXPECT_EQ(names(m), QStringList({"Network", "HOSTA", "share1", "Empty"}));
    EXPECT_EQ(m.node(2)->path, t.path("share1"));
}

TEST(ShellTreeModel, ALoopingLinkIsAFolderThatDoesNotOpen)
{
    twtest::TempTree t;
    t.mkdir("x/y");
    t.link(t.root(), "x/back");  // to the top: a loop
    t.link(t.path("x"), "x/y/up");  // to its grandparent: a loop
    ShellTreeModel m;
    m.setRoots({{"Top", t.root(), {}}});
    m.setExpanded(0, true);
    m.setExpanded(1, true);  // x
    EXPECT_EQ(names(m), QStringList({"Top", "x", "back", "y"}));
    EXPECT_TRUE(m.node(2)->loop);
    EXPECT_FALSE(m.hasSubFolders(m.node(2)));
    m.setExpanded(3, true);
    EXPECT_EQ(names(m), QStringList({"Top", "x", "back", "y", "up"}));
    EXPECT_FALSE(m.hasSubFolders(m.node(4)));
}

TEST(ShellTreeModel, RevealExpandsDownToAFolderAndRefreshFollowsTheDisk)
{
    twtest::TempTree t;
    t.mkdir("a/b/c");
    t.mkdir("z");
    ShellTreeModel m;
    m.setRoots({{"Top", t.root(), {}}});
    TreeNode *c = m.reveal(t.path("a/b/c"));
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(c->path, t.path("a/b/c"));
    EXPECT_EQ(names(m), QStringList({"Top", "a", "b", "c", "z"}));
    EXPECT_EQ(m.reveal(t.path("nothere")), nullptr);
    t.mkdir("a/b/b2");
    QDir(t.path("z")).removeRecursively();
    m.refresh();
    EXPECT_EQ(names(m), QStringList({"Top", "a", "b", "b2", "c"}));
}

TEST(ShellTree, TheTreeDrivesTheListAndTheListTakesTheTreeAlong)
{
    twtest::TempTree t;
    t.put("a/b/pic.jpg");
    t.put("a/top.txt");
    tw::ShellTree tree;
    tw::ShellList list;
    tree.setLinkedList(&list);
    list.setLinkedTree(&tree);
    tree.setRoots({{"Top", t.root(), {}}});
    int changes = 0;
    QObject::connect(&tree, &tw::ShellTree::folderChanged, [&] { ++changes; });
    ASSERT_TRUE(tree.selectPath(t.path("a/b")));
    EXPECT_EQ(list.folder(), t.path("a/b"));
    EXPECT_EQ(list.scenarioRows(), QStringList({"pic.jpg"}));
    EXPECT_EQ(tree.selectedIndex(), 2);
    EXPECT_EQ(changes, 1);
    list.upOneLevel(1);
    EXPECT_EQ(list.folder(), t.path("a"));
    EXPECT_EQ(tree.folderPath(), t.path("a"));
    EXPECT_EQ(tree.selectedIndex(), 1);
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(list.scenarioRows(), QStringList({"b", "top.txt"}));
    // A folder opened in the list moves the tree.
    ASSERT_TRUE(list.doubleClickItem("b"));
    EXPECT_EQ(tree.folderPath(), t.path("a/b"));
    // The user's expansion in the view reaches Nodes.
    tree.collapse(tree.nodes()->indexFor(tree.nodes()->node(0)));
    EXPECT_EQ(tree.nodes()->count(), 1);
}

TEST(ShellTreeModel, RootsComeFileSystemFirstThenMediaAndNetworkAndHomeLast)
{
    const std::vector<RootSpec> roots = ShellTreeModel::platformRoots();
    ASSERT_GE(roots.size(), 3u);
    EXPECT_EQ(roots.front().name, "File System");
    EXPECT_EQ(roots.front().path, "/");
    EXPECT_EQ(roots.back().name, "Home");
    EXPECT_EQ(roots.back().path, QDir::homePath());
    const RootSpec &net = roots[roots.size() - 2];
    EXPECT_EQ(net.name, ShellTreeModel::networkRootName());
    EXPECT_TRUE(net.path.isEmpty());
    // Between them only mounted removable media.
    for (size_t k = 1; k + 2 < roots.size(); ++k)
        EXPECT_TRUE(roots[k].path.startsWith("/media/") || roots[k].path.startsWith("/run/media/"))
            << roots[k].path.toStdString();
    // In the tree the same order, with node 0 the file system.
    ShellTreeModel m;
    m.setRoots(roots);
    EXPECT_EQ(m.node(0)->path, "/");
    EXPECT_EQ(m.node(m.count() - 1)->path, QDir::homePath());
}
