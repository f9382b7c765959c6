// The search walk: goes from folder to folder along the tree's Nodes, by flat index,
// expanding nodes as it goes, and stops at the first folder in which the hidden count
// File1 finds a file of the pattern. The next request goes on behind it.
#pragma once

#include "browse/dir_scan.h"
#include "browse/shell_tree_model.h"

#include <QString>
#include <cstdint>

namespace tw::browse {

// State that outlives one walk.
struct SearchState {
    QString SearchPattern;
    int CurrentSearchNode = 0;
    bool SearchConfirmed = true;
    bool SearchCancelled = false;
    bool SearchEnabled = true;
    bool SearchRunning = false;
    int LastNodeError = 0;
    // Shared with the Find dialog.
    int16_t FindOptionIndex = 0;
    int16_t FilterRow = 0;

    // Text of a variable by name, for the scenario runner; false when not one of these.
    bool variableText(const QString &name, QString *out) const;
};

// What the walk needs of the window around it.
class SearchHost {
public:
    virtual ~SearchHost() = default;
    // A notice with an OK button; an empty title is the program's title.
    virtual void inform(const QString &text, const QString &title) = 0;
    // A Yes/No question titled with the program's title; true on Yes.
    virtual bool askYesNo(const QString &text) = 0;
    virtual void setListPattern(const QString &pattern) = 0;
    virtual void setListFolder(const QString &path) = 0;
    virtual QString treeFolderPath() = 0;
    virtual void setTitle(const QString &title) = 0;
    // Lets the event loop run once (the walk's yield).
    virtual void yieldEvents() = 0;
    // The hourglass over the program.
    virtual void setPointerBusy(bool on) = 0;
    // The Find dialog, modal; it writes SearchPattern, SearchConfirmed and the option row.
    virtual void showFindDialog() = 0;
    virtual void refreshWindow() {}
    virtual void enableFindNext() {}
    // Marks the entry of that catalogue row in the toolbar's filter menu.
    virtual void markFilterRow(int /*row*/) {}
    // Thumbnail side.
    virtual bool thumbLoadStopped() { return false; }
    virtual bool thumbnailMode() { return false; }
    virtual void loadThumbnails() {}
    // Around a walk: the tree view may lag behind the model until walkEnded.
    virtual void walkStarted() {}
    virtual void walkEnded() {}
};

class SearchEngine {
public:
    static constexpr int ShellError = ShellTreeModel::ShellError;
    static inline const QString EndOfSearchText = QStringLiteral("            End of Search");
    static inline const QString CancelledText = QStringLiteral("              Search Cancelled");
    static inline const QString NetworkQuestion = QStringLiteral("Do You want to Search the Network?");

    SearchEngine(SearchState &state, ShellTreeModel &tree, FileCounter &file1, SearchHost &host)
        : S(state), tree_(tree), file1_(file1), host_(host)
    {}

    void FindFileRoutine();
    void FindNext();
    void BeginSearch();
    void SearchFunction();
    bool SelectNodeFolder(int index);
    bool ExpandTreeNode(int index);

    // Escape in one of the places that see it.
    void escapePressed();

    // Statistics of the last walk, for the benchmark.
    struct Stats {
        long nodes = 0;  // node steps taken
        long yields = 0;
        double longestStallMs = 0;  // longest time between two yields
    };
    const Stats &stats() const { return stats_; }

private:
    SearchState &S;
    ShellTreeModel &tree_;
    FileCounter &file1_;
    SearchHost &host_;
    Stats stats_;
    bool pointerBusy_ = false;
};

}  // namespace tw::browse
