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

TEST(SearchWalk, SymbolicLinkLoopsEndAndAFolderIsEnteredOnlyOnce)
{
    Walk w;
    w.t.put("x/pic.jpg");
    w.t.mkdir("x/deeper");
    w.t.link(w.t.root(), "x/deeper/loop");  // back to the top
    w.t.link(w.t.path("x"), "x/self");      // to its own folder
    w.t.mkdir("y");
    w.t.link(w.t.path("x"), "y/again");     // the same folder by another path
    w.top();
    w.e.SearchFunction();
    EXPECT_EQ(w.h.foldersShown, QStringList({w.t.path("x")}));
    w.e.SearchFunction();
    // Nothing else matches: the walk comes to the end instead of going round.
    EXPECT_EQ(w.h.foldersShown, QStringList({w.t.path("x")}));
    EXPECT_LT(w.m.count(), 12);
    for (int k = 0; k < 3; ++k) w.e.SearchFunction();
    EXPECT_EQ(w.h.foldersShown, QStringList({w.t.path("x")}));
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
                      {tw::browse::ShellTreeModel::networkRootName(), QString(),
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

TEST(SearchWalk, EachWalkEntersItsStartFolderWhateverAnEarlierWalkEntered)
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
    // Within one walk the second name of the folder is passed over.
    w.h.log.clear();
    w.s.CurrentSearchNode = 0;
    w.s.SearchPattern = "*.PNG";
    w.e.SearchFunction();
    EXPECT_TRUE(w.h.log.isEmpty());  // Two is skipped, so nothing meets the last-node test
}
