#include "browse/search_engine.h"

#include "core/busy.h"
#include "core/errors.h"
#include "core/globals.h"
#include "core/text_rules.h"

#include <QElapsedTimer>

namespace tw::browse {

namespace {

// A failure inside the node loop, with its error number, caught by the walk's handler.
struct WalkError {
    int number;
};

QString b(bool v) { return v ? QStringLiteral("true") : QStringLiteral("false"); }

}  // namespace

bool SearchState::variableText(const QString &name, QString *out) const
{
    if (name == QLatin1String("SearchPattern")) *out = SearchPattern;
    else if (name == QLatin1String("CurrentSearchNode")) *out = QString::number(CurrentSearchNode);
    else if (name == QLatin1String("SearchConfirmed")) *out = b(SearchConfirmed);
    else if (name == QLatin1String("SearchCancelled")) *out = b(SearchCancelled);
    else if (name == QLatin1String("SearchEnabled")) *out = b(SearchEnabled);
    else if (name == QLatin1String("SearchRunning")) *out = b(SearchRunning);
    else if (name == QLatin1String("LastNodeError")) *out = QString::number(LastNodeError);
    else if (name == QLatin1String("FindOptionIndex")) *out = QString::number(FindOptionIndex);
    else if (name == QLatin1String("FilterRow")) *out = QString::number(FilterRow);
    else return false;
    return true;
}

void SearchEngine::escapePressed()
{
    if (S.SearchConfirmed) {
        S.SearchCancelled = true;
        S.SearchConfirmed = false;
    }
}

void SearchEngine::FindFileRoutine()
{
    host_.showFindDialog();
    if (S.SearchConfirmed) {
        host_.refreshWindow();
        BeginSearch();
    }
    S.SearchConfirmed = true;
    S.SearchRunning = false;
}

void SearchEngine::BeginSearch()
{
    S.SearchRunning = true;
    if (S.SearchEnabled) host_.enableFindNext();
    // The filter menu has 41 slots; the dialog keeps the index to 0..33.
    if (S.FindOptionIndex >= 0 && S.FindOptionIndex < 41) host_.markFilterRow(S.FindOptionIndex);
    SearchFunction();
    S.SearchRunning = false;
}

void SearchEngine::FindNext()
{
    if (S.SearchEnabled) {
        if (S.SearchPattern.isEmpty()) {
            S.SearchPattern = QStringLiteral("*.JPG");
            S.SearchRunning = true;
            S.FilterRow = 0;
            host_.markFilterRow(0);
        }
        BeginSearch();
    } else {
        S.SearchRunning = true;
        host_.setPointerBusy(true);
        SearchFunction();
        host_.setPointerBusy(false);
        if (host_.thumbnailMode()) host_.loadThumbnails();
        S.SearchRunning = false;
    }
    S.SearchConfirmed = true;
}

bool SearchEngine::SelectNodeFolder(int index)
{
    TreeNode *n = tree_.node(index);
    if (!n) {
        S.LastNodeError = ShellError;
        return false;
    }
    const QString path = n->path;
    if (path.trimmed().isEmpty()) {
        // A virtual folder: File1 keeps the folder of the node before.
        return n->fsAncestor;
    }
    if (const int err = file1_.setPath(path)) {
        S.LastNodeError = err;
        return false;
    }
    return true;
}

bool SearchEngine::ExpandTreeNode(int index)
{
    const int err = tree_.setExpanded(index, true);
    if (err == 0) return true;
    if (err != ShellError) host_.inform(unexpectedErrorText(err), AppTitle);
    return false;
}

void SearchEngine::SearchFunction()
{
    BusyScope busy;
    struct WalkGuard {
        SearchHost &h;
        explicit WalkGuard(SearchHost &host) : h(host) { h.walkStarted(); }
        ~WalkGuard() { h.walkEnded(); }
    } walkGuard(host_);
    stats_ = Stats();
    QElapsedTimer sinceYield;
    sinceYield.start();

    // 1. to 3.
    S.SearchCancelled = false;
    // Folders read before this walk are read again when the walk asks for their children.
    tree_.newEpoch();
    long long nodeLimit = (long long)G.Options.NextSearchLimit + (long long)G.Options.InitialSearchLimit;
    bool networkAccepted = false;
    uint16_t yieldCounter = 0;
    host_.setListPattern(S.SearchPattern);
    file1_.setPattern(S.SearchPattern);
    QString skipNames[101];
    int skipCount = 1;
    skipNames[1] = G.Options.LocalComputerName;

    // 4. The handler is armed for the first pass only.
    bool armed = true;
    bool askAgain = false;
    int i = 0;
    QString foundPath;

    auto nodeAt = [&](int k) -> TreeNode * {
        TreeNode *n = tree_.node(k);
        if (!n) throw WalkError{ShellError};
        return n;
    };

    do {
        // 5. Pass start.
        askAgain = false;
        bool searching = true;
        foundPath.clear();
        i = S.CurrentSearchNode;
        QString keptName;

        while (searching) {
            enum class Flow { Go, NextNode, LeaveLoop, SameNode } flow = Flow::Go;
            // One statement under the handler: the table decides where the walk goes on.
            auto run = [&](auto &&stmt) {
                if (flow != Flow::Go) return;
                try {
                    stmt();
                } catch (const WalkError &e) {
                    if (!armed) return;  // later passes skip a failing statement silently
                    if (e.number == ErrDeviceUnavailable) return;
                    if (e.number == ErrPathNotFound) {
                        host_.inform(EndOfSearchText, AppTitle);
                        i = 0;
                        flow = Flow::LeaveLoop;
                    } else if (e.number == ShellError) {
                        host_.inform(QStringLiteral("Err -214 - ") + Str(i) + QStringLiteral(" - ")
                                         + Str(tree_.count()) + QStringLiteral(" - ") + keptName
                                         + QStringLiteral(" - ") + Str(S.LastNodeError),
                                     QString());
                        flow = Flow::NextNode;
                    } else {
                        host_.inform(unexpectedErrorText(e.number), AppTitle);
                        flow = Flow::NextNode;
                    }
                }
            };

            // 6.1
            if (S.SearchCancelled) {
                host_.inform(CancelledText, AppTitle);
                host_.setPointerBusy(false);
                return;
            }
            ++stats_.nodes;
            // 6.2 The yield falls on every 151st node; Escape is noticed only there.
            if (++yieldCounter > 150) {
                const double ms = double(sinceYield.nsecsElapsed()) / 1e6;
                if (ms > stats_.longestStallMs) stats_.longestStallMs = ms;
                host_.yieldEvents();
                ++stats_.yields;
                sinceYield.restart();
                yieldCounter = 0;
            }
            // 6.3
            S.LastNodeError = 0;
            run([&] { keptName = nodeAt(i)->name; });
            // 6.4
            if (host_.thumbLoadStopped()) return;
            QString nodeName;
            bool ancestor = false;
            QString nodePath;
            bool ok = false;
            // 6.5 to 6.8
            run([&] { nodeName = nodeAt(i)->name.trimmed(); });
            run([&] {
                TreeNode *n = nodeAt(i);
                const QString parentPath = n->parent ? n->parent->path : QString();
                const QString part = parentPath.mid(2, 8).toUpper();
                if (nodeName.toUpper() == QLatin1String("NETHOOD")
                    && (part == QLatin1String("/WINDOWS") || part == QLatin1String("/DOCUMEN")))
                    flow = Flow::NextNode;
            });
            run([&] {
                if (nodeName.toUpper().contains(QLatin1String("NETWORK"))
                    && nodeName == ShellTreeModel::networkRootName()) {
                    if (!host_.askYesNo(NetworkQuestion)) flow = Flow::NextNode;
                    else networkAccepted = true;
                }
            });
            run([&] {
                const QString upper = nodeAt(i)->name.toUpper();
                for (int k = 1; k <= skipCount; ++k)
                    if (upper == skipNames[k].toUpper()) {
                        flow = Flow::NextNode;
                        break;
                    }
            });
            // 6.9, 6.10
            run([&] {
                TreeNode *n = nodeAt(i);
                ancestor = n->fsAncestor;
                nodePath = n->path;
                if (n->name.startsWith(QLatin1String("KODAK"))) (void)nodeAt(i)->fsAncestor;
            });
            // A folder that is one of its own ancestors (a link back up the tree) is not
            // entered: its files are not counted and it does not open. It keeps its place
            // in Nodes and meets the end test like any other node.
            bool ownAncestor = false;
            run([&] { ownAncestor = nodeAt(i)->loop; });
            // 6.11
            if (!ownAncestor) run([&] { ok = SelectNodeFolder(i); });
            if (flow == Flow::Go && !ownAncestor) {
                if (ok) {
                    // 6.12
                    run([&] {
                        if (file1_.listCount() > 0) {
                            foundPath = nodeAt(i)->path;
                            if (foundPath.trimmed().isEmpty()) flow = Flow::NextNode;
                            else searching = false;
                        }
                    });
                } else {
                    // 6.13
                    run([&] {
                        if (i == tree_.count() - 1 && S.LastNodeError != 0) {
                            flow = Flow::SameNode;
                            return;
                        }
                        if (S.LastNodeError == ShellError || S.LastNodeError == ErrDeviceUnavailable
                            || S.LastNodeError == ErrPathNotFound) {
                            flow = Flow::NextNode;
                            return;
                        }
                        if (!tree_.hasSubFolders(nodeAt(i))) {
                            flow = Flow::NextNode;
                            return;
                        }
                        const bool isVirtual = S.LastNodeError == 0 && !ancestor && file1_.listCount() == 0
                            && nodePath.isEmpty();
                        if (isVirtual && skipCount < 100 && networkAccepted) {
                            ++skipCount;
                            skipNames[skipCount] = nodeAt(i)->name.toUpper();
                        }
                        if (!(isVirtual && !networkAccepted)) ExpandTreeNode(i);
                        flow = Flow::NextNode;
                    });
                }
            }
            // 6.14
            run([&] {
                if (tree_.hasSubFolders(nodeAt(i))) ExpandTreeNode(i);
            });
            // 6.15
            run([&] {
                if (i >= tree_.count() - 1 || i > nodeLimit) {
                    searching = false;
                    if (i >= nodeLimit + 1 && i < tree_.count() - 1) {
                        if (host_.askYesNo(QStringLiteral("Do you want to continue the Search for - ")
                                           + S.SearchPattern + QStringLiteral(" ?"))) {
                            nodeLimit += G.Options.NextSearchLimit;
                            askAgain = true;
                        }
                    } else {
                        S.CurrentSearchNode = 0;
                        host_.inform(EndOfSearchText, AppTitle);
                    }
                }
            });
            if (flow == Flow::LeaveLoop) break;
            if (flow == Flow::SameNode) continue;
            // 6.16
            if (flow == Flow::Go && !searching) break;
            // 6.17 Next node.
            ++i;
            if (i >= tree_.count()) searching = false;
        }

        // 7. Errors are ignored from here on.
        host_.setListFolder(foundPath);
        if (i < tree_.count() - 1) S.CurrentSearchNode = i + 1;
        const QString folder = host_.treeFolderPath();
        host_.setTitle(folder.trimmed().isEmpty() ? AppTitle : folder + QStringLiteral(" - ") + AppTitle);
        // 8. Later passes run without the handler.
        armed = false;
    } while (askAgain);

    // 9.
    const double ms = double(sinceYield.nsecsElapsed()) / 1e6;
    if (ms > stats_.longestStallMs) stats_.longestStallMs = ms;
    host_.setPointerBusy(false);
}

}  // namespace tw::browse
