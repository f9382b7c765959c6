// The Find tab's side of the main window: the folder tree PTxShTree1, the file list
// PTxShList1, the search walk and the Find dialog.
#pragma once

#include "browse/dir_scan.h"
#include "browse/search_engine.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

class QSplitter;

namespace tw {

class Tarnwick1;
class ShellTree;
class ShellList;

class BrowseModule : public QObject {
    Q_OBJECT
public:
    // Creates PTxShTree1 and PTxShList1 as the two panes of Splitter1 and links them.
    BrowseModule(Tarnwick1 &w, QSplitter *splitter1);
    ~BrowseModule() override;

    // Tools this module owns; true when the identifier was one of them.
    bool onToolClick(const QString &id);
    static QStringList ownedTools();
    void applyColors();

    // What the main window needs of the list.
    QString listFolder() const;
    void setListFolder(const QString &path);
    void setListPattern(const QString &pattern);
    void setListViewMode(int mode);  // 0 large icons, 1 small icons, 2 list, 3 details
    QString focusedItemPath() const;
    QStringList listItemPaths() const;  // display order

    ShellTree *PTxShTree1 = nullptr;
    ShellList *PTxShList1 = nullptr;

    // --- The search: its state, the hidden count File1 and the walk ---
    browse::SearchState Search;
    browse::FileCounter File1;
    void FindFileRoutine();
    void FindNext();
    const browse::SearchEngine &engine() const { return *engine_; }

    // --- The explorer routines ---
    void GoUpFolder();
    void CollapseTree();
    void setViewStyle(int style);
    // Escape in the main form, the tabs, the tree, the list or the tool bars.
    void escapePressed();

    // Text of a search variable by name (SearchPattern, CurrentSearchNode, ...), for the
    // scenario runner; false when the name is not one of this module's.
    bool variableText(const QString &name, QString *out) const;

    // The thumbnail side plugs in here: whether thumbnails replace the list, whether a
    // thumbnail load was stopped, and its routines. Unset hooks mean "no thumbnails".
    std::function<bool()> ThumbnailMode;
    std::function<bool()> ThumbLoadStopped;
    std::function<void()> LoadThumbnails;
    std::function<void()> ShowExplorerPanes;
    std::function<void()> ClearThumbnailFolder;

protected:
    bool eventFilter(QObject *o, QEvent *e) override;

private:
    class Host;
    void onTreeFolderChanged();
    void findSelectedNode();
    void onListItemSelected(bool withItem);
    void onListContentsChanged();
    void onListDoubleClicked();
    bool thumbnailMode() const { return ThumbnailMode && ThumbnailMode(); }

    Tarnwick1 &w_;
    std::unique_ptr<Host> host_;
    std::unique_ptr<browse::SearchEngine> engine_;
};

}  // namespace tw
