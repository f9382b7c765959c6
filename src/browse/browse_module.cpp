#include "browse/browse_module.h"

#include "browse/find_dialog.h"
#include "browse/shell_list.h"
#include "browse/shell_tree.h"
#include "browse/thumbnail_grid.h"
#include "browse/thumbnails.h"
#include "core/busy.h"
#include "core/catalogue.h"
#include "core/colors.h"
#include "core/globals.h"
#include "core/prompt.h"
#include "core/scenario_hooks.h"
#include "core/context_help.h"
#include "core/looks.h"
#include "core/tool_ids.h"
#include "core/tool_manager.h"

#include <QKeyEvent>
#include <QMainWindow>
#include <QVBoxLayout>
#include <QSplitter>
#include <QTabBar>
#include <QTabWidget>
#include <QToolBar>

namespace tw {

// The walk's view of the main window.
class BrowseModule::Host : public browse::SearchHost {
public:
    explicit Host(BrowseModule &m) : m_(m) {}
    void inform(const QString &text, const QString &title) override
    {
        tw::inform(text, title, m_.host_.window());
    }
    bool askYesNo(const QString &text) override { return tw::askYesNo(text, AppTitle, m_.host_.window()); }
    void setListPattern(const QString &pattern) override { m_.PTxShList1->setPattern(pattern); }
    void setListFolder(const QString &path) override { m_.PTxShList1->setFolder(path); }
    QString treeFolderPath() override { return m_.PTxShTree1->folderPath(); }
    void setTitle(const QString &title) override { m_.host_.setTitle(title); }
    void yieldEvents() override
    {
        m_.PTxShTree1->flushView();
        tw::yieldEvents();
    }
    void setPointerBusy(bool on) override
    {
        // One hourglass for the walk, however often it is asked for.
        if (on == busy_) return;
        busy_ = on;
        if (on) showHourglass();
        else hideHourglass();
    }
    void showFindDialog() override
    {
        FindFle1 dlg(m_.Search, m_.host_.window());
        dlg.setPointerBusy = [this](bool on) { setPointerBusy(on); };
        dlg.onClosed = [this] {
            SuppressTools quiet;
            m_.host_.tools().setChecked(tool::Find, false);
        };
        dlg.exec();
    }
    void refreshWindow() override { m_.host_.window()->repaint(); }
    void enableFindNext() override { m_.host_.tools().setEnabled(tool::FindNext, true); }
    void markFilterRow(int row) override
    {
        if (row < 0 || row >= FilterSlots) return;
        const QString id = Cat.FilterNames[size_t(row)];
        if (id.isEmpty() || !m_.host_.tools().has(id)) return;
        SuppressTools quiet;
        m_.host_.tools().setChecked(id, true);
    }
    bool thumbLoadStopped() override { return m_.ThumbLoadStopped && m_.ThumbLoadStopped(); }
    bool thumbnailMode() override { return m_.thumbnailMode(); }
    void loadThumbnails() override
    {
        if (m_.LoadThumbnails) m_.LoadThumbnails();
    }
    void walkStarted() override { m_.PTxShTree1->setDeferViewSync(true); }
    void walkEnded() override { m_.PTxShTree1->setDeferViewSync(false); }

private:
    BrowseModule &m_;
    bool busy_ = false;
};

BrowseModule::BrowseModule(PageHost &host) : TabPage(host, 1)
{
    setObjectName(QStringLiteral("BrowseModule"));
}

void BrowseModule::build(QWidget *panel)
{
    auto *lay = new QVBoxLayout(panel);
    lay->setContentsMargins(2, 2, 2, 2);
    Splitter1 = new QSplitter(Qt::Horizontal, panel);
    Splitter1->setObjectName(QStringLiteral("Splitter1"));
    lay->addWidget(Splitter1);
    setHelpTopic(panel, QStringLiteral("finding"));
    PTxShTree1 = new ShellTree(Splitter1);
    PTxShList1 = new ShellList(Splitter1);
    Splitter1->addWidget(PTxShTree1);
    Splitter1->addWidget(PTxShList1);
    // The thumbnail grid takes the place of the splitter while the mode is on.
    ImagList1 = new browse::ThumbnailGrid(panel);
    lay->addWidget(ImagList1);
    PTxShTree1->setRoots(browse::ShellTreeModel::platformRoots());
    // The tree drives the list, and the list's own moves take the tree along.
    PTxShTree1->setLinkedList(PTxShList1);
    PTxShList1->setLinkedTree(PTxShTree1);

    walkHost_ = std::make_unique<Host>(*this);
    engine_ = std::make_unique<browse::SearchEngine>(Search, *PTxShTree1->nodes(), File1, *walkHost_);

    browse::Thumbnails::Panes panes;
    panes.splitter = Splitter1;
    panes.tree = PTxShTree1;
    panes.listFolder = [this] { return PTxShList1->folder(); };
    panes.listItemCount = [this] { return PTxShList1->itemCount(); };
    thumbs_ = std::make_unique<browse::Thumbnails>(host_, ImagList1, std::move(panes));
    ThumbnailMode = [this] { return thumbs_->ThumbnailMode; };
    ThumbLoadStopped = [this] { return thumbs_->ThumbLoadStopped; };
    LoadThumbnails = [this] { thumbs_->LoadThumbnails(); };
    ShowExplorerPanes = [this] { thumbs_->ShowExplorerPanes(); };
    ClearThumbnailFolder = [this] { thumbs_->ThumbFolder.clear(); };

    connect(PTxShTree1, &ShellTree::folderChanged, this, &BrowseModule::onTreeFolderChanged);
    connect(PTxShTree1, &ShellTree::escapePressed, this, &BrowseModule::escapePressed);
    connect(PTxShList1, &ShellList::escapePressed, this, &BrowseModule::escapePressed);
    connect(PTxShList1, &ShellList::itemSelected, this, [this] { onListItemSelected(false); });
    connect(PTxShList1, &ShellList::itemClicked, this, [this](const QString &) { onListItemSelected(true); });
    connect(PTxShList1, &ShellList::contentsChanged, this, &BrowseModule::onListContentsChanged);
    connect(PTxShList1, &ShellList::itemDoubleClicked, this,
            [this](const QString &) { onListDoubleClicked(); });

    // Escape reaches the walk from the main form, its tabs and its tool bars as well.
    QMainWindow *w = host_.window();
    w->installEventFilter(this);
    if (auto *tabs = w->findChild<QTabWidget *>(QStringLiteral("TabStrip1"))) {
        tabs->installEventFilter(this);
        tabs->tabBar()->installEventFilter(this);
    }
    for (int pos = 1; pos <= 7; ++pos)
        if (QToolBar *bar = host_.tools().toolbar(pos)) bar->installEventFilter(this);
    // The splitter takes its place once the window has its size.
    Splitter1->installEventFilter(this);
}

void BrowseModule::startUp()
{
    ensureBuilt();
    // 11. The splitter of the Find tab.
    placeSplitter();
    // 17. The list's view and its tool.
    const int m = int(G.Options.ListViewMode);
    setListViewMode(m);
    static const QLatin1String viewTools[4] = {tool::LargeIcons, tool::SmallIcons, tool::ListIcons,
                                               tool::Details};
    SuppressTools quiet;
    if (m >= 0 && m <= 3) host_.tools().press(viewTools[m]);
}

void BrowseModule::placeSplitter()
{
    if (!Splitter1) return;
    const int total = qMax(1, Splitter1->width() > 50 ? Splitter1->width() : host_.window()->width() - 8);
    const int first = total * G.Options.SplitterPercent / 100;
    Splitter1->setSizes({first, qMax(0, total - first)});
}

void BrowseModule::entering() { host_.tools().setToolbarVisible(2, true); }

QString BrowseModule::tabTitle() const
{
    const QString f = focusedItemPath();
    return f.isEmpty() ? AppTitle : f + QStringLiteral(" - ") + AppTitle;
}

void BrowseModule::entered()
{
    if (PTxShList1) PTxShList1->setFocus();
}

void BrowseModule::shutDown()
{
    // A thumbnail load still running ends at its next file.
    if (thumbs_ && thumbs_->ThumbLoadBusy) thumbs_->ThumbStopRequested = true;
    // 4. The folder of the list.
    if (G.Options.SaveLastFolder) G.Options.LastFolder = listFolder();
}

BrowseModule::~BrowseModule() = default;

QStringList BrowseModule::handledTools() const
{
    return {tool::Find,
            tool::FindNext,
            tool::mnuFindFiles,
            tool::mnuFindNextFolderwithFiles,
            tool::Collapse,
            tool::mnuCollapseExplorerTreeList,
            tool::UpFolder,
            tool::LargeIcons,
            tool::SmallIcons,
            tool::ListIcons,
            tool::Details,
            tool::ViewBtn,
            tool::mnuViewDropDownMenu,
            tool::ThumbNails,
            tool::Stop};
}

bool BrowseModule::toolClick(const QString &id)
{
    if (!handledTools().contains(id)) return false;
    ensureBuilt();
    if (id == tool::Find || id == tool::mnuFindFiles) FindFileRoutine();
    else if (id == tool::FindNext || id == tool::mnuFindNextFolderwithFiles) FindNext();
    else if (id == tool::Collapse || id == tool::mnuCollapseExplorerTreeList) CollapseTree();
    else if (id == tool::UpFolder) GoUpFolder();
    else if (id == tool::LargeIcons) setViewStyle(0);
    else if (id == tool::SmallIcons) setViewStyle(1);
    else if (id == tool::ListIcons) setViewStyle(2);
    else if (id == tool::Details) setViewStyle(3);
    else if (id == tool::ViewBtn) host_.tools().dropDown(id);
    else if (id == tool::ThumbNails || id == tool::Stop) thumbs_->ToggleThumbnails();
    else if (id == tool::mnuViewDropDownMenu) {
        // The pop-up list itself; its entries are the four view tools.
    } else return false;
    return true;
}

void BrowseModule::FindFileRoutine() { engine_->FindFileRoutine(); }
void BrowseModule::FindNext() { engine_->FindNext(); }
void BrowseModule::escapePressed() { engine_->escapePressed(); }

bool BrowseModule::variableText(const QString &name, QString *out) const
{
    if (name == QLatin1String("SplitterSizes") && Splitter1) {
        const QList<int> sizes = Splitter1->sizes();
        *out = QString::number(sizes.value(0)) + u' ' + QString::number(sizes.value(1));
        return true;
    }
    if (name == QLatin1String("ThumbnailMode")) {
        *out = thumbnailMode() ? QStringLiteral("true") : QStringLiteral("false");
        return true;
    }
    if (thumbs_ && thumbs_->variableText(name, out)) return true;
    return Search.variableText(name, out);
}

void BrowseModule::GoUpFolder()
{
    if (ClearThumbnailFolder) ClearThumbnailFolder();
    if (thumbnailMode() && ShowExplorerPanes) ShowExplorerPanes();
    PTxShList1->upOneLevel(1);
    PTxShTree1->refresh();
}

void BrowseModule::CollapseTree()
{
    browse::ShellTreeModel *nodes = PTxShTree1->nodes();
    const int count = nodes->count();
    for (int i = 0; i < count; ++i) {
        // The collection shrinks as nodes close: past its end the routine stops quietly.
        if (!nodes->valid(i)) return;
        nodes->setExpanded(i, false);
    }
}

void BrowseModule::setViewStyle(int style)
{
    PTxShList1->setViewMode(style);
    G.Options.ListViewMode = style;
    if (thumbnailMode() && ShowExplorerPanes) ShowExplorerPanes();
}

void BrowseModule::findSelectedNode()
{
    const browse::ShellTreeModel *nodes = PTxShTree1->nodes();
    const browse::TreeNode *sel = nodes->selected();
    if (!sel) return;
    for (int i = 0; i < nodes->count(); ++i) {
        const browse::TreeNode *n = nodes->node(i);
        const bool equal = !n->path.trimmed().isEmpty() ? sel->path == n->path : sel->name == n->name;
        if (equal) {
            Search.CurrentSearchNode = i;
            return;
        }
    }
}

void BrowseModule::onTreeFolderChanged()
{
    const int idx = PTxShTree1->selectedIndex();
    if (idx >= 0) Search.CurrentSearchNode = idx;
    const browse::TreeNode *sel = PTxShTree1->selectedNode();
    if (PTxShTree1->folderPath().trimmed().isEmpty() || !sel) host_.setTitle(AppTitle);
    else host_.setTitle(sel->name + QStringLiteral(" - ") + AppTitle);
    findSelectedNode();
}

void BrowseModule::onListItemSelected(bool withItem)
{
    if (!withItem) findSelectedNode();
    const int first = PTxShList1->selectedItem(0);
    if (first < 0) return;  // no item: the routine's error exit
    G.SelectedFile = PTxShList1->itemPath(first).trimmed();
    G.CurrentExt = GetFileExt(G.SelectedFile);
    host_.SetFileCommands(false);
    if (G.CurrentExt.trimmed().isEmpty()) {
        G.SelectedFile.clear();
        return;
    }
    for (int row = 0; row < FileExtCount; ++row)
        if (Cat.FileExtTable[size_t(row)] == G.CurrentExt) {
            host_.SetFileCommands(true);
            break;
        }
}

void BrowseModule::onListContentsChanged()
{
    if (!host_.state().StartingUp)
        if (PictureSide *pictures = host_.pictures()) pictures->LoadFolderPictures();
    if (thumbnailMode() && LoadThumbnails) LoadThumbnails();
}

void BrowseModule::onListDoubleClicked()
{
    G.CurrentPage = 1;
    host_.ShowExplorerItem();
    const QString folder = PTxShList1->folder();
    host_.setTitle(folder.trimmed().isEmpty() ? AppTitle : folder + QStringLiteral(" - ") + AppTitle);
}

bool BrowseModule::eventFilter(QObject *o, QEvent *e)
{
    if (o == Splitter1 && e->type() == QEvent::Show && !splitterPlaced_) {
        splitterPlaced_ = true;
        placeSplitter();
    }
    if (e->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(e)->key() == Qt::Key_Escape)
        escapePressed();
    return QObject::eventFilter(o, e);
}

void BrowseModule::applyColors()
{
    if (!built()) return;
    const ColorSettings &c = G.Colors;
    paintWidget(Splitter1, c.ListBack, c.ListText);
    const QPalette base = PTxShTree1->palette();
    const QColor back = toQColor(c.ListBack, base), text = toQColor(c.ListText, base);
    QPalette p = base;
    paintPalette(p, c.ListBack, c.ListText);
    PTxShTree1->setPalette(p);
    PTxShList1->setColors(back, text);
    thumbs_->applyColors();
}

QString BrowseModule::listFolder() const { return PTxShList1 ? PTxShList1->folder() : QString(); }
void BrowseModule::setListFolder(const QString &path)
{
    ensureBuilt();
    PTxShList1->setFolder(path);
}
void BrowseModule::setListPattern(const QString &pattern)
{
    ensureBuilt();
    PTxShList1->setPattern(pattern);
}
void BrowseModule::setListViewMode(int mode)
{
    ensureBuilt();
    PTxShList1->setViewMode(mode);
}
QString BrowseModule::focusedItemPath() const
{
    return PTxShList1 ? PTxShList1->focusedItemPath() : QString();
}
QStringList BrowseModule::listItemPaths() const
{
    return PTxShList1 ? PTxShList1->itemPaths() : QStringList();
}

QString BrowseModule::selectedItemPath() const
{
    if (!PTxShList1) return QString();
    const int first = PTxShList1->selectedItem(0);
    return first >= 0 ? PTxShList1->itemPath(first) : QString();
}
void BrowseModule::refreshList()
{
    if (PTxShList1) PTxShList1->refresh();
}
bool BrowseModule::markListItem(const QString &path) { return PTxShList1 && PTxShList1->markItem(path); }

TW_REGISTER_PAGE(1, BrowseModule);

}  // namespace tw
