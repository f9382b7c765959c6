// The Find tab's page: the folder tree PTxShTree1 and the file list PTxShList1 in Splitter1,
// the search walk and the Find dialog. It lends the explorer side to the window.
#pragma once

#include "browse/dir_scan.h"
#include "browse/search_engine.h"
#include "core/tab_page.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

class QSplitter;

namespace tw {

class ShellTree;
class ShellList;
namespace browse {
class Thumbnails;
class ThumbnailGrid;
}  // namespace browse

class BrowseModule : public QObject, public TabPage, public ExplorerSide {
    Q_OBJECT
public:
    explicit BrowseModule(PageHost &host);
    ~BrowseModule() override;

    // --- The page ---
    void startUp() override;
    void entering() override;
    QString tabTitle() const override;
    void entered() override;
    QStringList handledTools() const override;
    bool toolClick(const QString &id) override;
    void applyColors() override;
    void shutDown() override;
    bool variableText(const QString &name, QString *out) const override;

    // --- The explorer side ---
    QString listFolder() const override;
    void setListFolder(const QString &path) override;
    void setListPattern(const QString &pattern) override;
    void setListViewMode(int mode);  // 0 large icons, 1 small icons, 2 list, 3 details
    QString focusedItemPath() const override;
    QStringList listItemPaths() const override;  // display order
    QString selectedItemPath() const override;
    void refreshList() override;
    bool markListItem(const QString &path) override;
    // Splitter1 at SplitterPercent of the tab's width.
    void placeSplitter();

    QSplitter *Splitter1 = nullptr;
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

    // The thumbnail side plugs in here: whether thumbnails replace the list, whether a
    // thumbnail load was stopped, and its routines. Unset hooks mean "no thumbnails".
    std::function<bool()> ThumbnailMode;
    std::function<bool()> ThumbLoadStopped;
    std::function<void()> LoadThumbnails;
    std::function<void()> ShowExplorerPanes;
    std::function<void()> ClearThumbnailFolder;

    // The thumbnail grid ImagList1 and its routines; made with the panes.
    browse::ThumbnailGrid *ImagList1 = nullptr;
    browse::Thumbnails *thumbnails() const { return thumbs_.get(); }

protected:
    void build(QWidget *panel) override;
    bool eventFilter(QObject *o, QEvent *e) override;

private:
    class Host;
    void onTreeFolderChanged();
    void findSelectedNode();
    void onListItemSelected(bool withItem);
    void onListContentsChanged();
    void onListDoubleClicked();
    bool thumbnailMode() const { return ThumbnailMode && ThumbnailMode(); }

    std::unique_ptr<Host> walkHost_;
    bool splitterPlaced_ = false;
    std::unique_ptr<browse::SearchEngine> engine_;
    std::unique_ptr<browse::Thumbnails> thumbs_;
};

}  // namespace tw
