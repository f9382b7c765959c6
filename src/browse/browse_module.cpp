#include "browse/browse_module.h"

#include "app/tarnwick1.h"
#include "app/tool_manager.h"
#include "browse/find_dialog.h"
#include "browse/shell_list.h"
#include "browse/shell_tree.h"
#include "core/busy.h"
#include "core/catalogue.h"
#include "core/colors.h"
#include "core/globals.h"
#include "core/prompt.h"
#include "core/scenario_hooks.h"

#include <QKeyEvent>
#include <QSplitter>
#include <QTabBar>
#include <QTabWidget>
#include <QToolBar>

namespace tw {

// The walk's view of the main window.
class BrowseModule::Host : public browse::SearchHost {
public:
    explicit Host(BrowseModule &m) : m_(m) {}
    void inform(const QString &text, const QString &title) override { tw::inform(text, title, &m_.w_); }
    bool askYesNo(const QString &text) override { return tw::askYesNo(text, AppTitle, &m_.w_); }
    void setListPattern(const QString &pattern) override { m_.PTxShList1->setPattern(pattern); }
    void setListFolder(const QString &path) override { m_.PTxShList1->setFolder(path); }
    QString treeFolderPath() override { return m_.PTxShTree1->folderPath(); }
    void setTitle(const QString &title) override { m_.w_.setTitle(title); }
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
        FindFle1 dlg(m_.Search, &m_.w_);
        dlg.setPointerBusy = [this](bool on) { setPointerBusy(on); };
        dlg.onClosed = [this] {
            const bool was = G.SuppressToolCommand;
            G.SuppressToolCommand = true;
            m_.w_.ToolBarComp1->setChecked(QStringLiteral("ID_Find"), false);
            G.SuppressToolCommand = was;
        };
        // Help opens on the topic of finding files, as F1 in this dialog does.
        dlg.onHelp = [this] { m_.w_.showHelpTopic(QStringLiteral("finding")); };
        dlg.exec();
    }
    void refreshWindow() override { m_.w_.repaint(); }
    void enableFindNext() override { m_.w_.ToolBarComp1->setEnabled(QStringLiteral("ID_FindNext"), true); }
    void markFilterRow(int row) override
    {
        if (row < 0 || row >= FilterSlots) return;
        const QString id = Cat.FilterNames[size_t(row)];
        if (id.isEmpty() || !m_.w_.ToolBarComp1->has(id)) return;
        const bool was = G.SuppressToolCommand;
        G.SuppressToolCommand = true;
        m_.w_.ToolBarComp1->setChecked(id, true);
        G.SuppressToolCommand = was;
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

BrowseModule::BrowseModule(Tarnwick1 &w, QSplitter *splitter1) : QObject(&w), w_(w)
{
    PTxShTree1 = new ShellTree(splitter1);
    PTxShList1 = new ShellList(splitter1);
    splitter1->addWidget(PTxShTree1);
    splitter1->addWidget(PTxShList1);
    PTxShTree1->setRoots(browse::ShellTreeModel::platformRoots());
    // The tree drives the list, and the list's own moves take the tree along.
    PTxShTree1->setLinkedList(PTxShList1);
    PTxShList1->setLinkedTree(PTxShTree1);

    host_ = std::make_unique<Host>(*this);
    engine_ = std::make_unique<browse::SearchEngine>(Search, *PTxShTree1->nodes(), File1, *host_);

    connect(PTxShTree1, &ShellTree::folderChanged, this, &BrowseModule::onTreeFolderChanged);
    connect(PTxShTree1, &ShellTree::escapePressed, this, &BrowseModule::escapePressed);
    connect(PTxShList1, &ShellList::escapePressed, this, &BrowseModule::escapePressed);
    connect(PTxShList1, &ShellList::itemSelected, this, [this] { onListItemSelected(false); });
    connect(PTxShList1, &ShellList::itemClicked, this, [this](const QString &) { onListItemSelected(true); });
    connect(PTxShList1, &ShellList::contentsChanged, this, &BrowseModule::onListContentsChanged);
    connect(PTxShList1, &ShellList::itemDoubleClicked, this, [this](const QString &) { onListDoubleClicked(); });

    // Escape reaches the walk from the main form, its tabs and its tool bars as well.
    w_.installEventFilter(this);
    if (w_.TabStrip1) {
        w_.TabStrip1->installEventFilter(this);
        w_.TabStrip1->tabBar()->installEventFilter(this);
    }
    if (w_.ToolBarComp1)
        for (int pos = 1; pos <= 7; ++pos)
            if (QToolBar *bar = w_.ToolBarComp1->toolbar(pos)) bar->installEventFilter(this);

    // The search variables, readable by name from a scenario.
    registerScenarioVariables(QStringLiteral("browse"),
                              [this](const QString &name, QString *out) { return variableText(name, out); });
}

BrowseModule::~BrowseModule() { unregisterScenarioVariables(QStringLiteral("browse")); }

QStringList BrowseModule::ownedTools()
{
    return {QStringLiteral("ID_Find"),         QStringLiteral("ID_FindNext"),
            QStringLiteral("ID_mnuFindFiles"), QStringLiteral("ID_mnuFindNextFolderwithFiles"),
            QStringLiteral("ID_Collapse"),     QStringLiteral("ID_mnuCollapseExplorerTreeList"),
            QStringLiteral("ID_UpFolder"),     QStringLiteral("ID_LargeIcons"),
            QStringLiteral("ID_SmallIcons"),   QStringLiteral("ID_ListIcons"),
            QStringLiteral("ID_Details"),      QStringLiteral("ID_ViewBtn"),
            QStringLiteral("ID_mnuViewDropDownMenu")};
}

bool BrowseModule::onToolClick(const QString &id)
{
    if (id == QLatin1String("ID_Find") || id == QLatin1String("ID_mnuFindFiles")) FindFileRoutine();
    else if (id == QLatin1String("ID_FindNext") || id == QLatin1String("ID_mnuFindNextFolderwithFiles")) FindNext();
    else if (id == QLatin1String("ID_Collapse") || id == QLatin1String("ID_mnuCollapseExplorerTreeList")) CollapseTree();
    else if (id == QLatin1String("ID_UpFolder")) GoUpFolder();
    else if (id == QLatin1String("ID_LargeIcons")) setViewStyle(0);
    else if (id == QLatin1String("ID_SmallIcons")) setViewStyle(1);
    else if (id == QLatin1String("ID_ListIcons")) setViewStyle(2);
    else if (id == QLatin1String("ID_Details")) setViewStyle(3);
    else if (id == QLatin1String("ID_ViewBtn")) w_.ToolBarComp1->dropDown(id);
    else if (id == QLatin1String("ID_mnuViewDropDownMenu")) {
        // The pop-up list itself; its entries are the four view tools.
    } else return false;
    return true;
}

void BrowseModule::FindFileRoutine() { engine_->FindFileRoutine(); }
void BrowseModule::FindNext() { engine_->FindNext(); }
void BrowseModule::escapePressed() { engine_->escapePressed(); }

bool BrowseModule::variableText(const QString &name, QString *out) const
{
    if (name == QLatin1String("ThumbnailMode")) {
        *out = thumbnailMode() ? QStringLiteral("true") : QStringLiteral("false");
        return true;
    }
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
    if (PTxShTree1->folderPath().trimmed().isEmpty() || !sel) w_.setTitle(AppTitle);
    else w_.setTitle(sel->name + QStringLiteral(" - ") + AppTitle);
    findSelectedNode();
}

void BrowseModule::onListItemSelected(bool withItem)
{
    if (!withItem) findSelectedNode();
    const int first = PTxShList1->selectedItem(0);
    if (first < 0) return;  // no item: the routine's error exit
    G.SelectedFile = PTxShList1->itemPath(first).trimmed();
    G.CurrentExt = GetFileExt(G.SelectedFile);
    w_.SetFileCommands(false);
    if (G.CurrentExt.trimmed().isEmpty()) {
        G.SelectedFile.clear();
        return;
    }
    for (int row = 0; row < FileExtCount; ++row)
        if (Cat.FileExtTable[size_t(row)] == G.CurrentExt) {
            w_.SetFileCommands(true);
            break;
        }
}

void BrowseModule::onListContentsChanged()
{
    if (!w_.StartingUp) w_.LoadFolderPictures();
    if (thumbnailMode() && LoadThumbnails) LoadThumbnails();
}

void BrowseModule::onListDoubleClicked()
{
    G.CurrentPage = 1;
    w_.ShowExplorerItem();
    const QString folder = PTxShList1->folder();
    w_.setTitle(folder.trimmed().isEmpty() ? AppTitle : folder + QStringLiteral(" - ") + AppTitle);
}

bool BrowseModule::eventFilter(QObject *o, QEvent *e)
{
    if (e->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(e)->key() == Qt::Key_Escape)
        escapePressed();
    return QObject::eventFilter(o, e);
}

void BrowseModule::applyColors()
{
    const ColorSettings &c = G.Colors;
    const QPalette base = PTxShTree1->palette();
    const QColor back = toQColor(c.ListBack, base), text = toQColor(c.ListText, base);
    QPalette p = base;
    paintPalette(p, c.ListBack, c.ListText);
    PTxShTree1->setPalette(p);
    PTxShList1->setColors(back, text);
}

QString BrowseModule::listFolder() const { return PTxShList1->folder(); }
void BrowseModule::setListFolder(const QString &path) { PTxShList1->setFolder(path); }
void BrowseModule::setListPattern(const QString &pattern) { PTxShList1->setPattern(pattern); }
void BrowseModule::setListViewMode(int mode) { PTxShList1->setViewMode(mode); }
QString BrowseModule::focusedItemPath() const { return PTxShList1->focusedItemPath(); }
QStringList BrowseModule::listItemPaths() const { return PTxShList1->itemPaths(); }

}  // namespace tw
