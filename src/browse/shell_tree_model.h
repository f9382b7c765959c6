// The folder tree over the real file system. It keeps two views of one set of nodes: the
// hierarchy that a QTreeView draws, and Nodes, a flat zero-based collection in display
// order in which expanding a node puts its children right behind it, so that a walk by
// index goes depth first. Everything is synchronous: the search walk sees the tree
// exactly as it grows.
#pragma once

#include "browse/dir_scan.h"

#include <QAbstractItemModel>
#include <QIcon>
#include <QString>
#include <memory>
#include <vector>

namespace tw::browse {

// A node given at the top of the tree or below a virtual node. An empty Path makes a
// virtual node, whose children are its Children.
struct RootSpec {
    QString name;
    QString path;
    std::vector<RootSpec> children;
};

struct TreeNode {
    QString name;
    QString path;  // empty for a virtual folder
    TreeNode *parent = nullptr;
    std::vector<std::unique_ptr<TreeNode>> children;
    std::vector<RootSpec> fixed;  // children of a virtual node
    int row = 0;  // index among the parent's children
    int depth = 0;
    bool isVirtual = false;
    bool fsAncestor = false;
    bool scanned = false;  // children read
    bool populated = false;  // children are rows of the item model
    bool expanded = false;
    bool loop = false;  // the same folder as one of its ancestors
    int scanError = 0;
    unsigned scanEpoch = 0;  // the epoch in which the children were last read
    FolderId id;
};

class ShellTreeModel : public QAbstractItemModel {
    Q_OBJECT
public:
    // The code the shell tree fails with: E_UNEXPECTED.
    static constexpr int ShellError = int(0x8000FFFF);

    explicit ShellTreeModel(QObject *parent = nullptr);
    ~ShellTreeModel() override;

    // The top of the tree; replaces every node.
    void setRoots(const std::vector<RootSpec> &roots);
    // The file system root, mounted removable media, the network node with the hosts of
    // mounted network shares and their mount points, and the home folder last.
    static std::vector<RootSpec> platformRoots();
    // The name of the virtual network node (a setting of the port).
    static QString networkRootName();
    static void setNetworkRootName(const QString &name);

    // --- Nodes: the flat collection in display order ---
    int count() const { return int(flat_.size()); }
    bool valid(int i) const { return i >= 0 && i < count(); }
    TreeNode *node(int i) const { return valid(i) ? flat_[size_t(i)] : nullptr; }
    int indexOf(const TreeNode *n) const;  // -1 when not in Nodes (hidden or gone)
    // Reads the node's children if not read in this epoch; true when it has any.
    bool hasSubFolders(TreeNode *n);
    // A new epoch: a node read before it is read again the next time the walk or an
    // expansion asks for its children, so folders made since then by another program
    // are found. A walk and each move of the user start one.
    void newEpoch() { ++epoch_; }
    // Expands or collapses; 0 or the error number (ShellError when the folder cannot be read).
    int setExpanded(TreeNode *n, bool on);
    int setExpanded(int i, bool on) { return valid(i) ? setExpanded(node(i), on) : ShellError; }
    // First node whose folder is Path, expanding down to it; null when it is not reachable.
    TreeNode *reveal(const QString &path);
    // Reads every read folder again: new folders appear, vanished ones go; expansion stays.
    void refresh();

    // The selected node (may be hidden under a collapsed parent, or null).
    TreeNode *selected() const { return selected_; }
    void setSelected(TreeNode *n) { selected_ = n; }

    // --- Item model ---
    QModelIndex indexFor(const TreeNode *n) const;
    TreeNode *nodeFor(const QModelIndex &idx) const;
    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &idx, int role) const override;
    bool hasChildren(const QModelIndex &parent = {}) const override;
    bool canFetchMore(const QModelIndex &parent) const override;
    void fetchMore(const QModelIndex &parent) override;
    Qt::ItemFlags flags(const QModelIndex &idx) const override;

signals:
    // A node became expanded or collapsed by code or by a refresh; the view follows.
    void expansionChanged(TreeNode *n, bool on);

private:
    std::unique_ptr<TreeNode> makeNode(const RootSpec &root, TreeNode *parent, int row);
    void scan(TreeNode *n);
    // Reads a node again when its children were read in an earlier epoch.
    void freshen(TreeNode *n);
    bool anySubFolders(TreeNode *n);
    void populate(TreeNode *n);
    void insertVisible(TreeNode *n, std::vector<TreeNode *> &out) const;
    // Reads N's folder again; with Deep its read sub-folders too. Nodes needs rebuildFlat().
    void refreshNode(TreeNode *n, bool deep = true);
    void rebuildFlat();
    void forget(TreeNode *n);
    bool isAncestorFolder(const TreeNode *parent, const FolderId &id) const;
    QIcon iconFor(const TreeNode *n) const;
    // The icons held back at start arrive: the rows that drew placeholders draw again.
    void redrawIcons(TreeNode *parent, const QModelIndex &parentIndex);

    std::vector<std::unique_ptr<TreeNode>> roots_;
    std::vector<TreeNode *> flat_;
    TreeNode *selected_ = nullptr;
    unsigned epoch_ = 1;
    mutable QIcon folderIcon_, homeIcon_, driveIcon_, networkIcon_, hostIcon_, rootIcon_;
    mutable bool iconsWaited_ = false;
};

}  // namespace tw::browse
