#include "browse/shell_tree.h"

#include "browse/shell_list.h"

#include <QDir>
#include <QHeaderView>
#include <QKeyEvent>

#include <functional>

namespace tw {

using browse::TreeNode;

ShellTree::ShellTree(QWidget *parent) : QTreeView(parent), model_(new browse::ShellTreeModel(this))
{
    setObjectName(QStringLiteral("PTxShTree1"));
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setModel(model_);
    connect(model_, &browse::ShellTreeModel::expansionChanged, this, &ShellTree::onModelExpansion);
    connect(this, &QTreeView::expanded, this, [this](const QModelIndex &i) { onViewExpanded(i, true); });
    connect(this, &QTreeView::collapsed, this, [this](const QModelIndex &i) { onViewExpanded(i, false); });
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex &cur, const QModelIndex &) { onCurrentChanged(cur); });
}

ShellTree::~ShellTree() = default;

void ShellTree::setRoots(const std::vector<browse::RootSpec> &roots)
{
    pending_.clear();
    model_->setRoots(roots);
}

QString ShellTree::folderPath() const
{
    const TreeNode *n = model_->selected();
    return n ? n->path : QString();
}

void ShellTree::setViewCurrent(TreeNode *n)
{
    flushView();
    const bool was = syncing_;
    syncing_ = true;
    const QModelIndex idx = model_->indexFor(n);
    selectionModel()->setCurrentIndex(idx, QItemSelectionModel::ClearAndSelect);
    if (idx.isValid()) scrollTo(idx);
    syncing_ = was;
}

void ShellTree::selectNode(TreeNode *n)
{
    if (!n) return;
    model_->newEpoch();
    model_->setSelected(n);
    setViewCurrent(n);
    if (list_) list_->showFolder(n->path);
    emit folderChanged();
}

bool ShellTree::selectPath(const QString &path)
{
    TreeNode *n = model_->reveal(path);
    if (!n) return false;
    selectNode(n);
    return true;
}

void ShellTree::followFolder(const QString &path)
{
    if (path.trimmed().isEmpty()) return;
    const TreeNode *sel = model_->selected();
    if (sel && sel->path == QDir::cleanPath(path)) return;
    TreeNode *n = model_->reveal(path);
    if (!n) return;
    model_->setSelected(n);
    setViewCurrent(n);
    emit folderChanged();
}

void ShellTree::refresh()
{
    flushView();
    const bool was = syncing_;
    syncing_ = true;
    model_->refresh();
    syncing_ = was;
    if (TreeNode *n = model_->selected()) setViewCurrent(n);
}

void ShellTree::setDeferViewSync(bool on)
{
    defer_ = on;
    if (!on) flushView();
}

void ShellTree::flushView()
{
    if (pending_.empty()) return;
    auto work = std::move(pending_);
    pending_.clear();
    const bool was = syncing_;
    syncing_ = true;
    for (auto &[n, on] : work) setExpanded(model_->indexFor(n), n->expanded);
    syncing_ = was;
}

void ShellTree::onModelExpansion(TreeNode *n, bool on)
{
    if (syncing_ && !defer_) {
        // The change came from the view itself, or from a refresh: the view knows.
        if (isExpanded(model_->indexFor(n)) == on) return;
    }
    if (defer_) {
        pending_.emplace_back(n, on);
        return;
    }
    const bool was = syncing_;
    syncing_ = true;
    setExpanded(model_->indexFor(n), on);
    syncing_ = was;
}

void ShellTree::onViewExpanded(const QModelIndex &idx, bool on)
{
    if (syncing_) return;
    TreeNode *n = model_->nodeFor(idx);
    if (!n) return;
    if (on) model_->newEpoch();
    syncing_ = true;
    model_->setExpanded(n, on);
    syncing_ = false;
}

void ShellTree::onCurrentChanged(const QModelIndex &cur)
{
    if (syncing_) return;
    TreeNode *n = model_->nodeFor(cur);
    if (!n || n == model_->selected()) return;
    model_->newEpoch();
    model_->setSelected(n);
    if (list_) list_->showFolder(n->path);
    emit folderChanged();
}

void ShellTree::keyPressEvent(QKeyEvent *e)
{
    if (e->key() == Qt::Key_Escape) emit escapePressed();
    QTreeView::keyPressEvent(e);
}

TreeNode *ShellTree::scenarioNode(const QString &arg, QString *error)
{
    // A path: the tree expands down to it.
    if (arg.startsWith(u'/')) {
        if (TreeNode *n = model_->reveal(arg)) return n;
        if (error) *error = QStringLiteral("the tree cannot reach %1").arg(arg);
        return nullptr;
    }
    // A name: first among the nodes shown, then depth first among the nodes read so far,
    // then depth first below the selected node and at last below every top node, reading
    // at most a few thousand folders so that a name no folder has does not walk the disk.
    TreeNode *found = nullptr;
    for (int i = 0; i < model_->count() && !found; ++i)
        if (model_->node(i)->name == arg) found = model_->node(i);
    int reads = 4000;
    std::function<TreeNode *(TreeNode *, bool)> below = [&](TreeNode *n, bool read) -> TreeNode * {
        if (!n->scanned) {
            if (!read || reads <= 0) return nullptr;
            --reads;
            model_->hasSubFolders(n);
        }
        for (auto &c : n->children) {
            if (c->name == arg) return c.get();
            if (TreeNode *f = below(c.get(), read)) return f;
        }
        return nullptr;
    };
    std::vector<TreeNode *> tops;
    for (int i = 0; i < model_->count(); ++i)
        if (model_->node(i)->depth == 0) tops.push_back(model_->node(i));
    for (TreeNode *t : tops)
        if (!found) found = below(t, false);
    if (!found && model_->selected()) found = below(model_->selected(), true);
    for (TreeNode *t : tops)
        if (!found) found = below(t, true);
    if (!found) {
        if (error) *error = QStringLiteral("no node named %1").arg(arg);
        return nullptr;
    }
    std::vector<TreeNode *> chain;
    for (TreeNode *a = found->parent; a; a = a->parent) chain.insert(chain.begin(), a);
    for (TreeNode *a : chain) model_->setExpanded(a, true);
    return found;
}

bool ShellTree::scenarioSelect(const QString &arg, QString *error)
{
    TreeNode *n = scenarioNode(arg, error);
    if (n) selectNode(n);
    return n != nullptr;
}

QModelIndex ShellTree::scenarioIndex(const QString &arg, QString *error)
{
    TreeNode *n = scenarioNode(arg, error);
    if (!n) return {};
    flushView();
    return model_->indexFor(n);
}

bool ShellTree::scenarioDoubleClick(const QString &arg, QString *error)
{
    if (!scenarioSelect(arg, error)) return false;
    TreeNode *n = model_->selected();
    model_->setExpanded(n, !n->expanded);
    return true;
}

QStringList ShellTree::scenarioRows() const
{
    QStringList rows;
    for (int i = 0; i < model_->count(); ++i) rows << model_->node(i)->name;
    return rows;
}

QString ShellTree::scenarioSelected() const
{
    const TreeNode *n = model_->selected();
    return n ? n->name : QString();
}

}  // namespace tw
