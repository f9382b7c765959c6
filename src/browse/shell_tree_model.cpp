#include "browse/shell_tree_model.h"

#include "core/file_icons.h"

#include <QDir>
#include <QFileInfo>
#include <QStorageInfo>

#include <algorithm>
#include <map>

namespace tw::browse {

namespace {

QString &networkName()
{
    static QString n = QStringLiteral("Network");
    return n;
}

QString joinPath(const QString &folder, const QString &name)
{
    if (folder.endsWith(u'/')) return folder + name;
    return folder + u'/' + name;
}

bool leadsToFolders(const RootSpec &s)
{
    if (!s.path.isEmpty()) return true;
    for (const RootSpec &c : s.children)
        if (leadsToFolders(c)) return true;
    return false;
}

// Host part of a network device name: "//host/share", "host:/export", "user@host:/path".
QString hostOfDevice(const QString &dev)
{
    QString d = dev;
    if (d.startsWith(QLatin1String("//"))) {
        d = d.mid(2);
        return d.section(u'/', 0, 0);
    }
    const int colon = d.indexOf(u':');
    if (colon > 0) d = d.left(colon);
    const int at = d.lastIndexOf(u'@');
    if (at >= 0) d = d.mid(at + 1);
    return d;
}

}  // namespace

ShellTreeModel::ShellTreeModel(QObject *parent) : QAbstractItemModel(parent)
{
    connect(&FileIcons::gate(), &FileIcons::becameReady, this, [this] {
        if (!iconsWaited_) return;
        iconsWaited_ = false;
        redrawIcons(nullptr, QModelIndex());
    });
}

void ShellTreeModel::redrawIcons(TreeNode *parent, const QModelIndex &parentIndex)
{
    const int rows = rowCount(parentIndex);
    if (rows <= 0) return;
    emit dataChanged(index(0, 0, parentIndex), index(rows - 1, 0, parentIndex), {Qt::DecorationRole});
    const auto &children = parent ? parent->children : roots_;
    for (int r = 0; r < rows && r < int(children.size()); ++r) {
        TreeNode *c = children[size_t(r)].get();
        if (c->populated) redrawIcons(c, index(r, 0, parentIndex));
    }
}
ShellTreeModel::~ShellTreeModel() = default;

QString ShellTreeModel::networkRootName() { return networkName(); }
void ShellTreeModel::setNetworkRootName(const QString &name) { networkName() = name; }

std::vector<RootSpec> ShellTreeModel::platformRoots()
{
    // The file system first and the user's own folders last: a walk that starts among the
    // user's folders ends with them, instead of going on through the whole system.
    std::vector<RootSpec> roots;
    roots.push_back({QStringLiteral("File System"), QStringLiteral("/"), {}});

    std::map<QString, std::vector<QString>, decltype(&naturalLess)> hosts(&naturalLess);
    std::vector<RootSpec> media;
    const QString runUser = QStringLiteral("/run/user/");
    for (const QStorageInfo &s : QStorageInfo::mountedVolumes()) {
        const QString root = s.rootPath();
        const QString fs = QString::fromLatin1(s.fileSystemType());
        const QString dev = QString::fromLocal8Bit(s.device());
        static const QStringList netTypes = {QStringLiteral("cifs"),        QStringLiteral("smb3"),
                                             QStringLiteral("smbfs"),       QStringLiteral("nfs"),
                                             QStringLiteral("nfs4"),        QStringLiteral("fuse.sshfs"),
                                             QStringLiteral("sshfs"),       QStringLiteral("davfs"),
                                             QStringLiteral("fuse.davfs2"), QStringLiteral("fuse.curlftpfs")};
        if (fs == QLatin1String("fuse.gvfsd-fuse") && root.startsWith(runUser)) {
            // One folder per share: "smb-share:server=host,share=name".
            const QStringList shares = QDir(root).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
            for (const QString &sh : shares) {
                const int p = sh.indexOf(QLatin1String("server="));
                if (p < 0) continue;
                const QString host = sh.mid(p + 7).section(u',', 0, 0);
                if (!host.isEmpty()) hosts[host].push_back(joinPath(root, sh));
            }
        } else if (netTypes.contains(fs)) {
            const QString host = hostOfDevice(dev);
            if (!host.isEmpty()) hosts[host].push_back(root);
        } else if (root.startsWith(QLatin1String("/media/"))
                   || root.startsWith(QLatin1String("/run/media/"))) {
            QString name = s.name();
            if (name.isEmpty()) name = QFileInfo(root).fileName();
            media.push_back({name, root, {}});
        }
    }
    for (RootSpec &m : media) roots.push_back(std::move(m));
    RootSpec net{networkName(), QString(), {}};
    for (auto &[host, points] : hosts) {
        RootSpec h{host, QString(), {}};
        std::sort(points.begin(), points.end(), naturalLess);
        for (const QString &p : points) h.children.push_back({QFileInfo(p).fileName(), p, {}});
        net.children.push_back(std::move(h));
    }
    roots.push_back(std::move(net));
    roots.push_back({QStringLiteral("Home"), QDir::homePath(), {}});
    return roots;
}

std::unique_ptr<TreeNode> ShellTreeModel::makeNode(const RootSpec &root, TreeNode *parent, int row)
{
    auto n = std::make_unique<TreeNode>();
    n->name = root.name;
    n->path = root.path.isEmpty() ? QString() : QDir::cleanPath(root.path);
    n->parent = parent;
    n->row = row;
    n->depth = parent ? parent->depth + 1 : 0;
    n->isVirtual = n->path.isEmpty();
    n->fixed = root.children;
    n->fsAncestor = leadsToFolders(root);
    if (!n->isVirtual) {
        n->id = folderIdOf(n->path);
        n->loop = parent && isAncestorFolder(parent, n->id);
    }
    return n;
}

void ShellTreeModel::setRoots(const std::vector<RootSpec> &roots)
{
    beginResetModel();
    flat_.clear();
    selected_ = nullptr;
    roots_.clear();
    int row = 0;
    for (const RootSpec &r : roots) roots_.push_back(makeNode(r, nullptr, row++));
    for (auto &r : roots_) flat_.push_back(r.get());
    endResetModel();
}

bool ShellTreeModel::isAncestorFolder(const TreeNode *p, const FolderId &id) const
{
    for (; p; p = p->parent)
        if (p->id == id) return true;
    return false;
}

void ShellTreeModel::scan(TreeNode *n)
{
    if (n->scanned) return;
    n->scanned = true;
    n->scanEpoch = epoch_;
    if (n->isVirtual) {
        int row = 0;
        for (const RootSpec &c : n->fixed) n->children.push_back(makeNode(c, n, row++));
        return;
    }
    if (n->loop) return;  // a folder that is its own ancestor is never entered
    std::vector<SubFolder> subs;
    n->scanError = readSubFolders(n->path, subs);
    if (n->scanError) return;
    std::sort(subs.begin(), subs.end(),
              [](const SubFolder &a, const SubFolder &b) { return naturalLess(a.name, b.name); });
    n->children.reserve(subs.size());
    int row = 0;
    for (SubFolder &s : subs) {
        auto c = std::make_unique<TreeNode>();
        c->name = std::move(s.name);
        c->path = joinPath(n->path, c->name);
        c->parent = n;
        c->row = row++;
        c->depth = n->depth + 1;
        c->fsAncestor = true;
        c->id = s.id;
        c->loop = isAncestorFolder(n, c->id);
        n->children.push_back(std::move(c));
    }
}

void ShellTreeModel::freshen(TreeNode *n)
{
    if (!n->scanned || n->isVirtual || n->loop || n->scanEpoch == epoch_) return;
    refreshNode(n, false);
    if (n->expanded) rebuildFlat();
}

bool ShellTreeModel::hasSubFolders(TreeNode *n)
{
    if (!n || n->loop) return false;
    freshen(n);
    return anySubFolders(n);
}

bool ShellTreeModel::anySubFolders(TreeNode *n)
{
    // The view asks this while it paints: the children as read, never a new read of them.
    if (!n || n->loop) return false;
    scan(n);
    return !n->children.empty();
}

void ShellTreeModel::populate(TreeNode *n)
{
    if (n->populated) return;
    scan(n);
    if (n->children.empty()) {
        n->populated = true;
        return;
    }
    beginInsertRows(indexFor(n), 0, int(n->children.size()) - 1);
    n->populated = true;
    endInsertRows();
}

void ShellTreeModel::insertVisible(TreeNode *n, std::vector<TreeNode *> &out) const
{
    for (auto &c : n->children) {
        out.push_back(c.get());
        if (c->expanded) insertVisible(c.get(), out);
    }
}

int ShellTreeModel::indexOf(const TreeNode *n) const
{
    if (!n) return -1;
    auto it = std::find(flat_.begin(), flat_.end(), n);
    return it == flat_.end() ? -1 : int(it - flat_.begin());
}

int ShellTreeModel::setExpanded(TreeNode *n, bool on)
{
    if (!n) return ShellError;
    if (on) {
        if (n->loop) return 0;
        if (!n->expanded) freshen(n);
        scan(n);
        if (n->scanError) return ShellError;
        if (n->expanded || n->children.empty()) return 0;
        populate(n);
        n->expanded = true;
        const int i = indexOf(n);
        if (i >= 0) {
            std::vector<TreeNode *> add;
            insertVisible(n, add);
            flat_.insert(flat_.begin() + i + 1, add.begin(), add.end());
        }
        emit expansionChanged(n, true);
        return 0;
    }
    if (!n->expanded) return 0;
    n->expanded = false;
    const int i = indexOf(n);
    if (i >= 0) {
        size_t e = size_t(i) + 1;
        while (e < flat_.size() && flat_[e]->depth > n->depth) ++e;
        flat_.erase(flat_.begin() + i + 1, flat_.begin() + qsizetype(e));
    }
    emit expansionChanged(n, false);
    return 0;
}

TreeNode *ShellTreeModel::reveal(const QString &rawPath)
{
    if (rawPath.trimmed().isEmpty()) return nullptr;
    const QString path =
        QDir::cleanPath(QDir::isAbsolutePath(rawPath) ? rawPath : QDir(rawPath).absolutePath());
    // The real node nearest the top whose folder holds Path: search the roots and the
    // virtual nodes below them (their children are known without reading the disk).
    TreeNode *best = nullptr;
    int bestLen = -1;
    std::function<void(TreeNode *)> look = [&](TreeNode *n) {
        if (n->isVirtual) {
            scan(n);
            for (auto &c : n->children) look(c.get());
            return;
        }
        const QString &p = n->path;
        const bool holds =
            (path == p) || (p == QLatin1String("/") ? path.startsWith(u'/') : path.startsWith(p + u'/'));
        if (holds && int(p.size()) > bestLen) {
            best = n;
            bestLen = int(p.size());
        }
    };
    for (auto &r : roots_) look(r.get());
    if (!best) return nullptr;
    std::vector<TreeNode *> chain;
    for (TreeNode *a = best; a; a = a->parent) chain.insert(chain.begin(), a);
    TreeNode *cur = best;
    const QString rest = path.mid(best->path.size());
    for (const QString &part : rest.split(u'/', Qt::SkipEmptyParts)) {
        scan(cur);
        auto childNamed = [&]() -> TreeNode * {
            for (auto &c : cur->children)
                if (c->name == part) return c.get();
            return nullptr;
        };
        TreeNode *next = childNamed();
        if (!next && !cur->isVirtual) {
            // Read earlier, before the folder was made: read it again.
            refreshNode(cur, false);
            rebuildFlat();
            next = childNamed();
        }
        if (!next) return nullptr;
        chain.push_back(next);
        cur = next;
    }
    for (size_t k = 0; k + 1 < chain.size(); ++k) setExpanded(chain[k], true);
    return cur;
}

void ShellTreeModel::forget(TreeNode *n)
{
    for (TreeNode *p = selected_; p; p = p->parent)
        if (p == n) {
            selected_ = n->parent;
            break;
        }
}

void ShellTreeModel::refreshNode(TreeNode *n, bool deep)
{
    if (!n->scanned) return;
    n->scanEpoch = epoch_;
    if (!n->isVirtual && !n->loop) {
        std::vector<SubFolder> subs;
        const int err = readSubFolders(n->path, subs);
        n->scanError = err;
        std::sort(subs.begin(), subs.end(),
                  [](const SubFolder &a, const SubFolder &b) { return naturalLess(a.name, b.name); });
        // Remove the folders that are gone (back to front, so rows stay right).
        for (int r = int(n->children.size()) - 1; r >= 0; --r) {
            TreeNode *c = n->children[size_t(r)].get();
            const bool still =
                std::any_of(subs.begin(), subs.end(), [&](const SubFolder &s) { return s.name == c->name; });
            if (still) continue;
            forget(c);
            if (n->populated) beginRemoveRows(indexFor(n), r, r);
            n->children.erase(n->children.begin() + r);
            for (size_t k = size_t(r); k < n->children.size(); ++k) n->children[k]->row = int(k);
            if (n->populated) endRemoveRows();
        }
        // Add the new ones at their place in name order.
        for (SubFolder &s : subs) {
            const bool known = std::any_of(n->children.begin(), n->children.end(),
                                           [&](const auto &c) { return c->name == s.name; });
            if (known) continue;
            int pos = 0;
            while (pos < int(n->children.size()) && naturalLess(n->children[size_t(pos)]->name, s.name))
                ++pos;
            auto c = std::make_unique<TreeNode>();
            c->name = s.name;
            c->path = joinPath(n->path, s.name);
            c->parent = n;
            c->depth = n->depth + 1;
            c->fsAncestor = true;
            c->id = s.id;
            c->loop = isAncestorFolder(n, c->id);
            if (n->populated) beginInsertRows(indexFor(n), pos, pos);
            n->children.insert(n->children.begin() + pos, std::move(c));
            for (size_t k = size_t(pos); k < n->children.size(); ++k) n->children[k]->row = int(k);
            if (n->populated) endInsertRows();
        }
        if (n->children.empty() && n->expanded) n->expanded = false;
    }
    if (deep)
        for (auto &c : n->children) refreshNode(c.get());
}

void ShellTreeModel::refresh()
{
    for (auto &r : roots_) refreshNode(r.get());
    rebuildFlat();
}

void ShellTreeModel::rebuildFlat()
{
    // Nodes again from the expansion state.
    flat_.clear();
    std::function<void(TreeNode *)> add = [&](TreeNode *n) {
        flat_.push_back(n);
        if (n->expanded)
            for (auto &c : n->children) add(c.get());
    };
    for (auto &r : roots_) add(r.get());
}

QModelIndex ShellTreeModel::indexFor(const TreeNode *n) const
{
    if (!n) return {};
    return createIndex(n->row, 0, const_cast<TreeNode *>(n));
}

TreeNode *ShellTreeModel::nodeFor(const QModelIndex &idx) const
{
    return idx.isValid() ? static_cast<TreeNode *>(idx.internalPointer()) : nullptr;
}

QModelIndex ShellTreeModel::index(int row, int column, const QModelIndex &parent) const
{
    if (column != 0 || row < 0) return {};
    if (!parent.isValid()) {
        if (row >= int(roots_.size())) return {};
        return createIndex(row, 0, roots_[size_t(row)].get());
    }
    TreeNode *p = nodeFor(parent);
    if (!p->populated || row >= int(p->children.size())) return {};
    return createIndex(row, 0, p->children[size_t(row)].get());
}

QModelIndex ShellTreeModel::parent(const QModelIndex &child) const
{
    TreeNode *n = nodeFor(child);
    if (!n || !n->parent) return {};
    return indexFor(n->parent);
}

int ShellTreeModel::rowCount(const QModelIndex &parent) const
{
    if (!parent.isValid()) return int(roots_.size());
    if (parent.column() > 0) return 0;
    TreeNode *p = nodeFor(parent);
    return p->populated ? int(p->children.size()) : 0;
}

int ShellTreeModel::columnCount(const QModelIndex &) const { return 1; }

bool ShellTreeModel::hasChildren(const QModelIndex &parent) const
{
    if (!parent.isValid()) return !roots_.empty();
    return const_cast<ShellTreeModel *>(this)->anySubFolders(nodeFor(parent));
}

bool ShellTreeModel::canFetchMore(const QModelIndex &parent) const
{
    TreeNode *n = nodeFor(parent);
    return n && !n->populated && const_cast<ShellTreeModel *>(this)->anySubFolders(n);
}

void ShellTreeModel::fetchMore(const QModelIndex &parent)
{
    if (TreeNode *n = nodeFor(parent)) populate(n);
}

Qt::ItemFlags ShellTreeModel::flags(const QModelIndex &idx) const
{
    if (!idx.isValid()) return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
}

QIcon ShellTreeModel::iconFor(const TreeNode *n) const
{
    if (!FileIcons::gate().ready()) {
        iconsWaited_ = true;
        return FileIcons::placeholder();
    }
    auto themed = [](QIcon &cache, const char *name, const char *fallback) -> QIcon {
        if (cache.isNull()) {
            cache = QIcon::fromTheme(QLatin1String(name));
            if (cache.isNull()) cache = QIcon::fromTheme(QLatin1String(fallback));
        }
        return cache;
    };
    if (!n->parent) {
        if (n->isVirtual) return themed(networkIcon_, "network-workgroup", "folder-remote");
        if (n->path == QDir::homePath()) return themed(homeIcon_, "user-home", "folder");
        if (n->path == QLatin1String("/")) return themed(rootIcon_, "drive-harddisk", "folder");
        return themed(driveIcon_, "drive-removable-media", "drive-harddisk");
    }
    if (n->isVirtual) return themed(hostIcon_, "network-server", "folder-remote");
    return themed(folderIcon_, "folder", "inode-directory");
}

QVariant ShellTreeModel::data(const QModelIndex &idx, int role) const
{
    TreeNode *n = nodeFor(idx);
    if (!n) return {};
    switch (role) {
    case Qt::DisplayRole:
        return n->name;
    case Qt::ToolTipRole:
        return n->path.isEmpty() ? n->name : n->path;
    case Qt::DecorationRole:
        return iconFor(n);
    case Qt::UserRole:
        return n->path;
    default:
        return {};
    }
}

}  // namespace tw::browse
