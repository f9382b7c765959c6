#include "browse/search_engine.h"
#include "core/globals.h"
#include "test_tree.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace tw::browse;

namespace {

const QString End = QStringLiteral("[Tarnwick 2.0]            End of Search");
const QString Cancelled = QStringLiteral("[Tarnwick 2.0]              Search Cancelled");

struct Walk {
    twtest::TempTree t;
    ShellTreeModel m;
    FileCounter f;
    SearchState s;
    twtest::FakeHost h;
    SearchEngine e{s, m, f, h};
    Walk()
    {
        tw::G.Options.InitialSearchLimit = 5000;
        tw::G.Options.NextSearchLimit = 500;
        tw::G.Options.LocalComputerName.clear();
        s.SearchPattern = QStringLiteral("*.JPG");
    }
    void top() { m.setRoots({{"Top", t.root(), {}}}); }
    int indexOfPath(const QString &rel) const
    {
        for (int i = 0; i < m.count(); ++i)
            if (m.node(i)->path == t.path(rel)) return i;
        return -1;
    }
};

}  // namespace

TEST(SearchWalk, StopsAtTheFirstFolderWithAMatchAndGoesOnBehindIt)
{
    Walk w;
    w.t.mkdir("a/a1");
    w.t.put("a/a1/p.jpg");
    w.t.put("b/q.JPG");
    w.t.put("b/not.png");
    w.t.mkdir("c");
    w.top();
    w.e.SearchFunction();
    EXPECT_EQ(w.h.listPattern, "*.JPG");
    EXPECT_EQ(w.h.foldersShown, QStringList({w.t.path("a/a1")}));
    EXPECT_EQ(w.s.CurrentSearchNode, w.indexOfPath("a/a1") + 1);
    EXPECT_EQ(w.h.title, w.t.path("a/a1") + " - Tarnwick 2.0");
    EXPECT_TRUE(w.h.boxes.isEmpty());
    w.e.FindNext();
    EXPECT_EQ(w.h.listFolder, w.t.path("b"));
    EXPECT_TRUE(w.s.SearchConfirmed);
    // The last node without files: End of Search, and the next walk starts at the top.
    w.e.FindNext();
    EXPECT_EQ(w.h.boxes, QStringList({End}));
    EXPECT_EQ(w.s.CurrentSearchNode, 0);
    EXPECT_EQ(w.h.foldersShown.size(), 2);
}

TEST(SearchWalk, AHitOnTheLastNodeShowsTheFolderAndEndOfSearch)
{
    Walk w;
    w.t.put("a/p.jpg");
    w.t.put("z/q.jpg");
    w.top();
    w.e.SearchFunction();
    EXPECT_EQ(w.h.listFolder, w.t.path("a"));
    EXPECT_TRUE(w.h.boxes.isEmpty());
    w.e.SearchFunction();
    EXPECT_EQ(w.h.listFolder, w.t.path("z"));
    EXPECT_EQ(w.h.boxes, QStringList({End}));
    EXPECT_EQ(w.s.CurrentSearchNode, 0);
}

TEST(SearchWalk, FindNextWithNoEarlierSearchLooksForJpg)
{
    Walk w;
    w.t.put("a/p.jpg");
    w.top();
    w.s.SearchPattern.clear();
    w.s.FilterRow = 7;
    w.e.FindNext();
    EXPECT_EQ(w.s.SearchPattern, "*.JPG");
    EXPECT_EQ(w.s.FilterRow, 0);
    EXPECT_EQ(w.h.listFolder, w.t.path("a"));
    EXPECT_FALSE(w.s.SearchRunning);
}

TEST(SearchWalk, ALinkToAnAncestorNeverOpensAndAFolderReachedTwiceIsWalkedBothTimes)
{
    Walk w;
    w.t.put("x/pic.jpg");
    w.t.mkdir("x/deeper");
    w.t.link(w.t.root(), "x/deeper/loop");  // back to the top
    w.t.link(w.t.path("x"), "x/self");  // to its own folder
    w.t.mkdir("y");
    w.t.link(w.t.path("x"), "y/again");  // the same folder by another path
    w.top();
    w.e.SearchFunction();
    EXPECT_EQ(w.h.foldersShown, QStringList({w.t.path("x")}));
    // x/self is x itself: the walk passes it without counting its files. The same folder
    // under another path is no loop: it is walked there too.
    w.e.SearchFunction();
    EXPECT_EQ(w.h.foldersShown, QStringList({w.t.path("x"), w.t.path("y/again")}));
    EXPECT_TRUE(w.h.boxes.isEmpty());
    // Below it the links to its ancestors stay shut, and the walk comes to the end.
    w.e.SearchFunction();
    EXPECT_EQ(w.h.boxes, QStringList({End}));
    EXPECT_EQ(w.h.foldersShown.size(), 2);
    QStringList order;
    for (int i = 0; i < w.m.count(); ++i) order << w.m.node(i)->path.mid(w.t.root().size());
    EXPECT_EQ(order,
              QStringList({"", "/x", "/x/deeper", "/x/deeper/loop", "/x/self", "/y", "/y/again",
                           "/y/again/deeper", "/y/again/deeper/loop", "/y/again/self"}));
    for (const char *shut : {"x/deeper/loop", "x/self", "y/again/deeper/loop", "y/again/self"}) {
        TreeNode *n = w.m.node(w.indexOfPath(shut));
        ASSERT_NE(n, nullptr) << shut;
        EXPECT_TRUE(n->loop) << shut;
        EXPECT_FALSE(n->expanded) << shut;
    }
    EXPECT_FALSE(w.m.node(w.indexOfPath("y/again"))->loop);
    // Walks from the top go round the same finite tree again.
    for (int k = 0; k < 3; ++k) w.e.SearchFunction();
    EXPECT_EQ(w.m.count(), 10);
}

// The home folder lies under the file system's root and is a root of its own, last.
TEST(SearchWalk, TheHomeRootIsWalkedAfterTheFileSystemThatHoldsTheSameFolder)
{
    Walk w;
    w.t.mkdir("sys/etc");
    w.t.put("sys/home/me/pics/p.jpg");
    w.t.mkdir("sys/home/me/zz");
    w.t.mkdir("sys/var");
    w.m.setRoots({{"File System", w.t.path("sys"), {}},
                  {tw::browse::ShellTreeModel::networkRootName(), QString(), {}},
                  {"Home", w.t.path("sys/home/me"), {}}});
    w.s.CurrentSearchNode = 0;
    w.e.FindNext();
    EXPECT_EQ(w.h.log, QStringList({"folder " + w.t.path("sys/home/me/pics")}));
    // On through the rest of the file system and the network node, then the home folder
    // once more under its own root, and the end of the tree.
    w.h.log.clear();
    w.e.FindNext();
    EXPECT_EQ(w.h.log,
              QStringList({"?Do You want to Search the Network?", "folder " + w.t.path("sys/home/me/pics")}));
    const int homeRoot = w.m.count() - 3;  // Home, pics, zz
    EXPECT_EQ(w.m.node(homeRoot)->name, "Home");
    EXPECT_EQ(w.s.CurrentSearchNode, homeRoot + 2);
    w.h.log.clear();
    w.e.FindNext();
    EXPECT_EQ(w.h.log, QStringList({End}));
    EXPECT_EQ(w.s.CurrentSearchNode, 0);
}

// A walk that starts inside the home folder under the file system's root goes on through
// the Home root behind it, though that is one of the folders above its start, and says End
// of Search at the last node.
TEST(SearchWalk, AWalkFromInsideTheHomeFolderUnderTheFileSystemEndsInTheHomeRoot)
{
    Walk w;
    w.t.mkdir("sys/home/me/a");
    w.t.mkdir("sys/home/me/b");
    w.m.setRoots({{"File System", w.t.path("sys"), {}}, {"Home", w.t.path("sys/home/me"), {}}});
    ASSERT_EQ(w.m.setExpanded(0, true), 0);  // File System: home
    ASSERT_EQ(w.m.setExpanded(1, true), 0);  // home: me
    ASSERT_EQ(w.m.setExpanded(2, true), 0);  // me: a, b
    ASSERT_EQ(w.m.node(3)->path, w.t.path("sys/home/me/a"));
    w.s.CurrentSearchNode = 3;
    w.e.SearchFunction();
    EXPECT_EQ(w.h.log, QStringList({End}));
    EXPECT_TRUE(w.m.node(5)->expanded);  // Home, with a and b behind it
    EXPECT_EQ(w.m.count(), 8);
    EXPECT_EQ(w.s.CurrentSearchNode, 0);
}

TEST(SearchWalk, TheContinueQuestionComesPastTheNodeLimit)
{
    Walk w;
    tw::G.Options.InitialSearchLimit = 5;
    tw::G.Options.NextSearchLimit = 5;  // NodeLimit 10
    for (int k = 1; k <= 15; ++k) w.t.mkdir(QStringLiteral("f%1").arg(k));
    w.top();
    w.e.SearchFunction();
    const QString q = QStringLiteral("?Do you want to continue the Search for - *.JPG ?");
    EXPECT_EQ(w.h.boxes, QStringList({q}));
    EXPECT_EQ(w.s.CurrentSearchNode, 12);  // No: i + 1
    // A fresh call has a fresh limit and asks again after one folder; Yes goes on.
    w.h.answers = {true};
    w.e.SearchFunction();
    EXPECT_EQ(w.h.boxes, QStringList({q, q, End}));
    EXPECT_EQ(w.s.CurrentSearchNode, 0);
}

TEST(SearchWalk, EscapeIsSeenAtTheNodeAfterAYield)
{
    Walk w;
    for (int k = 1; k <= 400; ++k) w.t.mkdir(QStringLiteral("f%1").arg(k));
    w.top();
    w.s.CurrentSearchNode = 0;
    int nodeAtYield = -1;
    w.h.onYield = [&] {
        w.e.escapePressed();
        nodeAtYield = w.e.stats().nodes;
    };
    w.e.SearchFunction();
    EXPECT_EQ(nodeAtYield, 151);
    EXPECT_EQ(w.h.yields, 1);
    EXPECT_EQ(w.h.boxes, QStringList({Cancelled}));
    EXPECT_EQ(w.e.stats().nodes, 151);
    EXPECT_EQ(w.s.CurrentSearchNode, 0);
    EXPECT_TRUE(w.h.foldersShown.isEmpty());
    EXPECT_EQ(w.h.listPattern, "*.JPG");
    EXPECT_FALSE(w.s.SearchConfirmed);
    // A second Escape does nothing until a search routine has ended.
    w.s.SearchCancelled = false;
    w.e.escapePressed();
    EXPECT_FALSE(w.s.SearchCancelled);
}

TEST(SearchWalk, TheNetworkNodeAsksFirst)
{
    for (bool yes : {false, true}) {
        Walk w;
        w.t.put("share1/pic.jpg");
        w.t.mkdir("local");
        w.m.setRoots({{"Top", w.t.path("local"), {}},
                      {tw::browse::ShellTreeModel::networkRootName(),
                       QString(),
                       {{"HOSTA", QString(), {{"share1", w.t.path("share1"), {}}}}}}});
        w.h.answers = {yes};
        w.e.SearchFunction();
        EXPECT_EQ(w.h.boxes.value(0), "?Do You want to Search the Network?");
        if (yes) {
            EXPECT_EQ(w.h.foldersShown, QStringList({w.t.path("share1")}));
            EXPECT_EQ(w.h.boxes, QStringList({"?Do You want to Search the Network?", End}));
        } else {
            EXPECT_TRUE(w.h.foldersShown.isEmpty());
            EXPECT_EQ(w.h.boxes.size(), 1);  // walked off the end: no End of Search
        }
    }
}

TEST(SearchWalk, NetworkInAnotherNameAsksNothingAndNethoodElsewhereIsWalked)
{
    Walk w;
    w.t.mkdir("My network stuff");
    w.t.put("NETHOOD/p.jpg");
    w.t.mkdir("zz");
    w.top();
    w.e.SearchFunction();
    EXPECT_EQ(w.h.boxes, QStringList());
    EXPECT_EQ(w.h.listFolder, w.t.path("NETHOOD"));
}

TEST(SearchWalk, TheComputersOwnNameIsSkipped)
{
    Walk w;
    tw::G.Options.LocalComputerName = QStringLiteral("MYBOX");
    w.t.put("mybox/p.jpg");
    w.t.put("other/p.jpg");
    w.top();
    w.e.SearchFunction();
    EXPECT_EQ(w.h.listFolder, w.t.path("other"));
}

TEST(SearchWalk, AVirtualFolderWithTheStaleCountOfTheFolderBeforeIsPassedOver)
{
    Walk w;
    w.t.put("top/p.jpg");
    w.t.mkdir("share1");
    w.m.setRoots({{"Top", w.t.path("top"), {}}, {"Places", QString(), {{"share1", w.t.path("share1"), {}}}}});
    w.e.SearchFunction();
    EXPECT_EQ(w.h.listFolder, w.t.path("top"));
    EXPECT_EQ(w.s.CurrentSearchNode, 1);
    w.e.SearchFunction();
    EXPECT_EQ(w.h.foldersShown.size(), 1);
    EXPECT_FALSE(w.m.node(1)->expanded);
    EXPECT_TRUE(w.h.boxes.isEmpty());
}

TEST(SearchWalk, AFailingLastNodeIsTriedAgainUntilEscape)
{
    Walk w;
    w.t.mkdir("a");
    w.t.mkdir("z");
    w.top();
    const QString bad = w.t.path("z");
    setReadFaultHook([&](const QString &p) { return p == bad ? EACCES : 0; });
    w.h.onYield = [&] {
        if (w.h.yields == 3) w.e.escapePressed();
    };
    w.e.SearchFunction();
    setReadFaultHook({});
    EXPECT_EQ(w.h.yields, 3);
    EXPECT_EQ(w.h.boxes, QStringList({Cancelled}));
    EXPECT_EQ(w.s.LastNodeError, 70);
}

TEST(SearchWalk, UnavailableAndMissingFoldersArePassedOver)
{
    Walk w;
    w.t.put("dev/p.jpg");
    w.t.put("gone/p.jpg");
    w.t.put("zz/p.jpg");
    w.top();
    setReadFaultHook([&](const QString &p) {
        if (p == w.t.path("dev")) return ENOMEDIUM;
        if (p == w.t.path("gone")) return ENOENT;
        return 0;
    });
    w.e.SearchFunction();
    setReadFaultHook({});
    EXPECT_EQ(w.h.foldersShown, QStringList({w.t.path("zz")}));
    EXPECT_EQ(w.h.boxes, QStringList({End}));
}

TEST(SearchWalk, AStoppedThumbnailLoadEndsTheWalkAtOnce)
{
    struct StoppedHost : twtest::FakeHost {
        bool thumbLoadStopped() override { return true; }
    };
    twtest::TempTree t;
    t.put("a/p.jpg");
    ShellTreeModel m;
    m.setRoots({{"Top", t.root(), {}}});
    FileCounter f;
    SearchState s;
    s.SearchPattern = "*.JPG";
    StoppedHost h;
    SearchEngine e(s, m, f, h);
    e.SearchFunction();
    EXPECT_TRUE(h.foldersShown.isEmpty());
    EXPECT_TRUE(h.boxes.isEmpty());
    EXPECT_EQ(m.count(), 1);
}

TEST(SearchWalk, FindFileRoutineRunsOnlyAfterOk)
{
    Walk w;
    w.t.put("a/p.png");
    w.top();
    w.s.SearchPattern = "*.JPG";
    w.h.onDialog = [&] { w.s.SearchConfirmed = false; };  // Cancel
    w.e.FindFileRoutine();
    EXPECT_TRUE(w.h.foldersShown.isEmpty());
    EXPECT_EQ(w.s.SearchPattern, "*.JPG");
    EXPECT_TRUE(w.s.SearchConfirmed);
    w.h.onDialog = [&] {
        w.s.SearchPattern = "*.png";
        w.s.SearchConfirmed = true;
    };
    w.e.FindFileRoutine();
    EXPECT_EQ(w.h.listFolder, w.t.path("a"));
    EXPECT_FALSE(w.s.SearchRunning);
    EXPECT_TRUE(w.s.SearchConfirmed);
}

// Root reads every folder, so a folder that cannot be read is met in a child process that
// has given up root for the "nobody" user.
TEST(SearchWalk, AnUnreadableFolderTakesTheFailurePath)
{
    twtest::TempTree t;
    t.put("locked/p.jpg");
    t.mkdir("locked/inner");
    t.put("open/p.jpg");
    ::chmod(QFile::encodeName(t.root()).constData(), 0755);
    ::chmod(QFile::encodeName(t.path("open")).constData(), 0755);
    ::chmod(QFile::encodeName(t.path("locked")).constData(), 0000);
    ::chmod(QFile::encodeName(t.path("open/p.jpg")).constData(), 0644);
    ::chmod(QFile::encodeName(t.path("locked/p.jpg")).constData(), 0644);
    if (::geteuid() != 0) GTEST_SKIP() << "needs root to switch to the nobody user";
    const pid_t pid = ::fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
        int failures = 0;
        if (::setgid(65534) != 0 || ::setuid(65534) != 0) ::_exit(100);
        FileCounter probe;
        if (probe.setPath(t.path("locked")) != 70) failures |= 1;
        ShellTreeModel m;
        m.setRoots({{"Top", t.root(), {}}});
        FileCounter f;
        SearchState s;
        s.SearchPattern = "*.JPG";
        twtest::FakeHost h;
        SearchEngine e(s, m, f, h);
        e.SearchFunction();
        if (h.foldersShown != QStringList({t.path("open")})) failures |= 2;
        if (h.boxes != QStringList({End})) failures |= 4;
        if (m.hasSubFolders(m.node(1))) failures |= 8;  // nothing can be read inside
        ::_exit(failures);
    }
    int status = 0;
    ::waitpid(pid, &status, 0);
    ::chmod(QFile::encodeName(t.path("locked")).constData(), 0755);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST(SearchWalk, AHitPastTheLimitAsksFirstAndShowsTheFolderAfter)
{
    const QString q = QStringLiteral("?Do you want to continue the Search for - *.JPG ?");
    for (bool yes : {false, true}) {
        Walk w;
        tw::G.Options.InitialSearchLimit = 5;
        tw::G.Options.NextSearchLimit = 5;  // NodeLimit 10
        for (int k = 1; k <= 15; ++k) w.t.mkdir(QStringLiteral("f%1").arg(k));
        // Node 11 is the first node above the limit; it holds the file and isn't the last.
        w.t.put("f11/p.jpg");
        w.top();
        w.h.answers = {yes};
        w.e.SearchFunction();
        const QString shown = QStringLiteral("folder ") + w.t.path("f11");
        if (yes) {
            // The pass behind it walks to the last node.
            EXPECT_EQ(w.h.log, QStringList({q, shown, End}));
            EXPECT_EQ(w.s.CurrentSearchNode, 0);
        } else {
            EXPECT_EQ(w.h.log, QStringList({q, shown}));
            EXPECT_EQ(w.s.CurrentSearchNode, 12);
        }
    }
}

TEST(SearchWalk, ANodeThatVanishesInAYieldGivesTheShellErrorBoxInTheFirstPass)
{
    Walk w;
    for (int k = 1; k <= 400; ++k) w.t.mkdir(QStringLiteral("f%1").arg(k));
    w.top();
    // The user collapses the tree while the walk yields at its 151st node (index 150).
    w.h.onYield = [&] { w.m.setExpanded(0, false); };
    w.e.SearchFunction();
    EXPECT_EQ(w.h.yields, 1);
    // The name is the one kept from the node before: the vanished node has none to give.
    EXPECT_EQ(w.h.boxes, QStringList({"[]Err -214 -  150 -  1 - f149 -  0"}));
    EXPECT_TRUE(w.h.foldersShown.isEmpty());
    EXPECT_EQ(w.s.CurrentSearchNode, 0);  // walked off the end: left as it was
}

TEST(SearchWalk, APassAfterContinueSkipsFailuresWithoutABox)
{
    Walk w;
    // NodeLimit 50: the question comes at node 51, before the first yield; Yes moves the
    // limit to 350, and the second pass meets the yield at node 150.
    tw::G.Options.InitialSearchLimit = -250;
    tw::G.Options.NextSearchLimit = 300;
    for (int k = 1; k <= 400; ++k) w.t.mkdir(QStringLiteral("f%1").arg(k));
    w.top();
    w.h.answers = {true};
    w.h.onYield = [&] { w.m.setExpanded(0, false); };
    w.e.SearchFunction();
    EXPECT_EQ(w.h.yields, 1);
    EXPECT_EQ(w.h.boxes, QStringList({"?Do you want to continue the Search for - *.JPG ?"}));
    EXPECT_EQ(w.s.CurrentSearchNode, 52);  // from the end of the first pass
    EXPECT_EQ(w.s.LastNodeError, SearchEngine::ShellError);
}

TEST(SearchWalk, OneFolderUnderTwoRootsIsWalkedUnderEach)
{
    Walk w;
    w.t.put("x/p.jpg");
    // One folder under two names at the top, as the file system's home folder and Home are.
    w.m.setRoots({{"One", w.t.path("x"), {}}, {"Two", w.t.path("x"), {}}});
    w.e.SearchFunction();
    EXPECT_EQ(w.h.log, QStringList({"folder " + w.t.path("x")}));
    EXPECT_EQ(w.s.CurrentSearchNode, 1);
    // The next walk starts at Two: its folder is entered again, and as the last node it
    // says End of Search inside the walk, before the folder is shown behind it.
    w.e.SearchFunction();
    EXPECT_EQ(w.h.log, QStringList({"folder " + w.t.path("x"), End, "folder " + w.t.path("x")}));
    // Within one walk the second name of the folder is walked as well, and as the last node
    // it ends the walk.
    w.h.log.clear();
    w.s.CurrentSearchNode = 0;
    w.s.SearchPattern = "*.PNG";
    w.e.SearchFunction();
    EXPECT_EQ(w.h.log, QStringList({End}));
}

TEST(SearchWalk, TheLastNodeIsExpandedBeforeTheEndTestSoItsSubFoldersAreWalked)
{
    Walk w;
    w.t.mkdir("a");
    w.t.put("zzz/sub/deeper/p.jpg");
    w.t.mkdir("zzz/sub/more");
    w.top();
    ASSERT_EQ(w.m.setExpanded(0, true), 0);
    const int last = w.indexOfPath("zzz");
    ASSERT_EQ(last, w.m.count() - 1);
    w.s.CurrentSearchNode = last;
    w.e.FindNext();
    EXPECT_EQ(w.h.log, QStringList({"folder " + w.t.path("zzz/sub/deeper")}));
    EXPECT_EQ(w.s.CurrentSearchNode, w.indexOfPath("zzz/sub/deeper") + 1);
}
