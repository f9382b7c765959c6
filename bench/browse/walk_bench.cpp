// The search walk over a generated tree of 20,000 folders and 100,000 small files, with a
// pattern that matches only in the last folder, against `find <root> -type d` measured in
// the same run; and the longest time the window stays away from its event loop between two
// yields. The folder tree is a real ShellTree widget (shown offscreen), so the view's share
// of the work is counted too.
//
//   browse_bench [--tree <dir>] [google benchmark flags]
// The tree is made once under /tmp/tw-bench-tree (or --tree) and kept for later runs.

#include "browse/search_engine.h"
#include "browse/shell_list.h"
#include "browse/shell_tree.h"
#include "core/globals.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

namespace {

QString g_root = QStringLiteral("/tmp/tw-bench-tree");
constexpr int Top = 20, Mid = 10, Leaf = 100, FilesPerLeaf = 5;  // 20,220 folders, 100,000 files

void makeTree()
{
    const QString marker = g_root + QStringLiteral("/.complete");
    if (QFile::exists(marker)) return;
    QDir(g_root).removeRecursively();
    std::fprintf(stderr, "making the tree under %s ...\n", qPrintable(g_root));
    for (int t = 0; t < Top; ++t)
        for (int m = 0; m < Mid; ++m)
            for (int l = 0; l < Leaf; ++l) {
                const QString dir = QStringLiteral("%1/t%2/m%3/l%4").arg(g_root).arg(t).arg(m).arg(l);
                QDir().mkpath(dir);
                const bool last = t == Top - 1 && m == Mid - 1 && l == Leaf - 1;
                for (int f = 0; f < FilesPerLeaf; ++f) {
                    const QString name = (last && f == 0)
                        ? QStringLiteral("target.qqz")
                        : QStringLiteral("f%1.%2").arg(f).arg(f % 2 ? "jpg" : "txt");
                    const QByteArray p = QFile::encodeName(dir + u'/' + name);
                    const int fd = ::open(p.constData(), O_CREAT | O_WRONLY, 0644);
                    if (fd >= 0) {
                        (void)::write(fd, "x", 1);
                        ::close(fd);
                    }
                }
            }
    QFile m(marker);
    m.open(QIODevice::WriteOnly);
}

// The window side of the walk: yields run the event loop, as in the program.
class BenchHost : public tw::browse::SearchHost {
public:
    explicit BenchHost(tw::ShellTree *tree) : tree_(tree) { sinceLoop_.start(); }
    QString found;
    int boxes = 0;
    double longestStallMs = 0;
    void inform(const QString &, const QString &) override { ++boxes; }
    bool askYesNo(const QString &) override { return true; }
    void setListPattern(const QString &) override {}
    void setListFolder(const QString &p) override
    {
        if (!p.isEmpty()) found = p;
    }
    QString treeFolderPath() override { return found; }
    void setTitle(const QString &) override {}
    void yieldEvents() override
    {
        // What the program does at a yield: bring the view up to date, then the event loop.
        tree_->flushView();
        const double ms = double(sinceLoop_.nsecsElapsed()) / 1e6;
        if (ms > longestStallMs) longestStallMs = ms;
        QCoreApplication::processEvents(QEventLoop::AllEvents);
        sinceLoop_.restart();
    }
    void finish()
    {
        tree_->flushView();
        const double ms = double(sinceLoop_.nsecsElapsed()) / 1e6;
        if (ms > longestStallMs) longestStallMs = ms;
    }
    void setPointerBusy(bool) override {}
    void showFindDialog() override {}
    void walkStarted() override { tree_->setDeferViewSync(true); }
    void walkEnded() override { tree_->setDeferViewSync(false); }

private:
    tw::ShellTree *tree_;
    QElapsedTimer sinceLoop_;
};

double runFind()
{
    QElapsedTimer t;
    t.start();
    pid_t pid;
    const QByteArray root = QFile::encodeName(g_root);
    const char *argv[] = {"find", root.constData(), "-type", "d", nullptr};
    posix_spawn_file_actions_t fa;
    posix_spawn_file_actions_init(&fa);
    posix_spawn_file_actions_addopen(&fa, 1, "/dev/null", O_WRONLY, 0);
    if (posix_spawnp(&pid, "find", &fa, nullptr, const_cast<char **>(argv), environ) != 0) return -1;
    int st = 0;
    waitpid(pid, &st, 0);
    posix_spawn_file_actions_destroy(&fa);
    return double(t.nsecsElapsed()) / 1e9;
}

void BM_FindTypeD(benchmark::State &state)
{
    makeTree();
    const double dirs = Top * (1 + Mid * (1 + Leaf)) + 1;
    for (auto _ : state) {
        const double s = runFind();
        state.SetIterationTime(s);
    }
    state.counters["nodes_per_s"] =
        benchmark::Counter(dirs * double(state.iterations()), benchmark::Counter::kIsRate);
}

void BM_SearchWalk(benchmark::State &state)
{
    makeTree();
    // The limits would ask to continue every 500 nodes; the host answers Yes, but the
    // figure is for the walk, so they are set out of the way.
    tw::G.Options.InitialSearchLimit = 1e9;
    tw::G.Options.NextSearchLimit = 500;
    long nodes = 0;
    double stall = 0;
    bool ok = true;
    for (auto _ : state) {
        tw::ShellTree tree;
        tree.resize(300, 600);
        tree.show();
        tree.setRoots({{"Bench", g_root, {}}});
        tw::browse::FileCounter file1;
        tw::browse::SearchState s;
        s.SearchPattern = QStringLiteral("*.QQZ");
        BenchHost host(&tree);
        tw::browse::SearchEngine e(s, *tree.nodes(), file1, host);
        QElapsedTimer t;
        t.start();
        e.SearchFunction();
        host.finish();
        state.SetIterationTime(double(t.nsecsElapsed()) / 1e9);
        nodes += e.stats().nodes;
        stall = std::max(stall, host.longestStallMs);
        ok = ok && host.found == g_root + QStringLiteral("/t19/m9/l99");
    }
    state.counters["nodes_per_s"] = benchmark::Counter(double(nodes), benchmark::Counter::kIsRate);
    state.counters["nodes"] = double(nodes) / double(state.iterations());
    state.counters["longest_stall_ms"] = stall;
    if (!ok) state.SkipWithError("the walk did not stop in the last folder");
}

// A folder of 10,000 files: time until the list can paint, and until it is complete.
void BM_ListTenThousand(benchmark::State &state)
{
    const QString dir = QStringLiteral("/tmp/tw-bench-list");
    if (!QFile::exists(dir + QStringLiteral("/.complete"))) {
        QDir().mkpath(dir);
        for (int i = 0; i < 10000; ++i) {
            QFile f(QStringLiteral("%1/photo%2.jpg").arg(dir).arg(i));
            f.open(QIODevice::WriteOnly);
        }
        QFile m(dir + QStringLiteral("/.complete"));
        m.open(QIODevice::WriteOnly);
    }
    double first = 0, longest = 0;
    for (auto _ : state) {
        tw::ShellList list;
        list.resize(800, 600);
        list.show();
        list.setViewMode(int(state.range(0)));
        QElapsedTimer t;
        t.start();
        list.setFolder(dir);
        QCoreApplication::processEvents();
        first = std::max(first, double(t.nsecsElapsed()) / 1e6);
        QElapsedTimer gap;
        while (list.listModel()->rowCount() < list.itemCount()) {
            gap.start();
            QCoreApplication::processEvents(QEventLoop::AllEvents);
            longest = std::max(longest, double(gap.nsecsElapsed()) / 1e6);
        }
        state.SetIterationTime(double(t.nsecsElapsed()) / 1e9);
    }
    state.counters["first_paint_ms"] = first;
    state.counters["longest_event_turn_ms"] = longest;
}

}  // namespace

BENCHMARK(BM_FindTypeD)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_SearchWalk)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_ListTenThousand)->Arg(0)->Arg(3)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    std::vector<char *> rest;
    for (int i = 0; i < argc; ++i) {
        if (std::string(argv[i]) == "--tree" && i + 1 < argc) {
            g_root = QString::fromLocal8Bit(argv[++i]);
            continue;
        }
        rest.push_back(argv[i]);
    }
    int n = int(rest.size());
    benchmark::Initialize(&n, rest.data());
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
