#include "browse/shell_list.h"

#include "core/file_icons.h"

#include "browse/shell_tree.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QHeaderView>
#include <QKeyEvent>
#include <QListView>
#include <QLocale>
#include <QMimeDatabase>
#include <QPalette>
#include <QStackedWidget>
#include <QTimer>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>

namespace tw {

using browse::ListEntry;

// ---------------------------------------------------------------- model

ShellListModel::ShellListModel(QObject *parent) : QAbstractTableModel(parent)
{
    connect(&FileIcons::gate(), &FileIcons::becameReady, this, [this] {
        if (!iconsWaited_) return;
        iconsWaited_ = false;
        if (shown_ > 0) emit dataChanged(index(0, NameCol), index(shown_ - 1, NameCol), {Qt::DecorationRole});
    });
}

void ShellListModel::sortEntries(std::vector<ListEntry> &v)
{
    // Folders first, then files, each in file manager order.
    std::stable_sort(v.begin(), v.end(), [](const ListEntry &a, const ListEntry &b) {
        if (a.isDir != b.isDir) return a.isDir;
        return browse::naturalLess(a.name, b.name);
    });
}

int ShellListModel::load(const QString &folder, const browse::PatternSet &patterns)
{
    std::vector<ListEntry> v;
    const int err = folder.isEmpty() ? 0 : browse::readListEntries(folder, patterns, v);
    sortEntries(v);
    beginResetModel();
    folder_ = folder;
    items_ = std::move(v);
    shown_ = std::min<int>(FillStep, int(items_.size()));
    endResetModel();
    return err;
}

void ShellListModel::clear()
{
    beginResetModel();
    folder_.clear();
    items_.clear();
    shown_ = 0;
    endResetModel();
}

void ShellListModel::fillStep()
{
    if (!filling()) return;
    const int to = std::min<int>(shown_ + FillStep, int(items_.size()));
    beginInsertRows({}, shown_, to - 1);
    shown_ = to;
    endInsertRows();
    emit fillProgress();
}

void ShellListModel::fillAll()
{
    if (!filling()) return;
    beginInsertRows({}, shown_, int(items_.size()) - 1);
    shown_ = int(items_.size());
    endInsertRows();
}

bool ShellListModel::reload(const browse::PatternSet &patterns)
{
    fillAll();
    std::vector<ListEntry> v;
    if (browse::readListEntries(folder_, patterns, v) != 0) v.clear();
    sortEntries(v);
    auto less = [](const ListEntry &a, const ListEntry &b) {
        if (a.isDir != b.isDir) return a.isDir;
        return browse::naturalLess(a.name, b.name);
    };
    bool changed = false;
    // Both lists are in the same order: walk them together, removing and inserting rows.
    size_t i = 0, j = 0;
    while (i < items_.size() || j < v.size()) {
        if (i < items_.size() && j < v.size() && items_[i].name == v[j].name
            && items_[i].isDir == v[j].isDir) {
            if (items_[i].size != v[j].size || items_[i].mtimeMs != v[j].mtimeMs) {
                items_[i] = v[j];
                emit dataChanged(index(int(i), 0), index(int(i), ColumnCount - 1));
                changed = true;
            }
            ++i;
            ++j;
        } else if (j >= v.size() || (i < items_.size() && less(items_[i], v[j]))) {
            beginRemoveRows({}, int(i), int(i));
            items_.erase(items_.begin() + qsizetype(i));
            --shown_;
            endRemoveRows();
            changed = true;
        } else {
            beginInsertRows({}, int(i), int(i));
            items_.insert(items_.begin() + qsizetype(i), v[j]);
            ++shown_;
            endInsertRows();
            ++i;
            ++j;
            changed = true;
        }
    }
    return changed;
}

QString ShellListModel::itemPath(int i) const
{
    if (i < 0 || i >= itemCount()) return QString();
    if (folder_.endsWith(u'/')) return folder_ + items_[size_t(i)].name;
    return folder_ + u'/' + items_[size_t(i)].name;
}

int ShellListModel::findName(const QString &name) const
{
    for (int i = 0; i < itemCount(); ++i)
        if (items_[size_t(i)].name == name) return i;
    return -1;
}

int ShellListModel::rowCount(const QModelIndex &parent) const { return parent.isValid() ? 0 : shown_; }
int ShellListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

const ShellListModel::TypeInfo &ShellListModel::typeOf(const ListEntry &e) const
{
    static QMimeDatabase db;
    QString mimeName;
    if (e.isDir) {
        mimeName = QStringLiteral("inode/directory");
    } else {
        const QString suffix = QFileInfo(e.name).suffix().toLower();
        auto s = mimeOfSuffix_.find(suffix);
        if (s == mimeOfSuffix_.end())
            s = mimeOfSuffix_.insert(suffix,
                                     db.mimeTypeForFile(e.name, QMimeDatabase::MatchExtension).name());
        mimeName = *s;
    }
    auto it = types_.find(mimeName);
    if (it == types_.end()) {
        TypeInfo t;
        if (e.isDir) {
            t.comment = QStringLiteral("Folder");
            t.iconName = QStringLiteral("inode-directory");
            t.genericIconName = QStringLiteral("folder");
        } else {
            const QMimeType mt = db.mimeTypeForName(mimeName);
            t.comment = mt.comment();
            t.iconName = mt.iconName();
            t.genericIconName = mt.genericIconName();
        }
        it = types_.insert(mimeName, t);
    }
    return *it;
}

QIcon ShellListModel::iconOf(const ListEntry &e) const
{
    const TypeInfo &t = typeOf(e);
    if (!t.iconRead) {
        if (!FileIcons::gate().ready()) {
            iconsWaited_ = true;
            return FileIcons::placeholder();
        }
        t.icon = QIcon::fromTheme(t.iconName);
        if (t.icon.isNull()) t.icon = QIcon::fromTheme(t.genericIconName);
        if (t.icon.isNull())
            t.icon = QIcon::fromTheme(e.isDir ? QStringLiteral("folder") : QStringLiteral("text-x-generic"));
        t.iconRead = true;
    }
    return t.icon;
}

QVariant ShellListModel::data(const QModelIndex &idx, int role) const
{
    if (!idx.isValid() || idx.row() >= shown_) return {};
    const ListEntry &e = items_[size_t(idx.row())];
    switch (role) {
    case Qt::DisplayRole:
        switch (idx.column()) {
        case NameCol:
            return e.name;
        case SizeCol:
            if (e.isDir) return QString();
            return QLocale().toString((e.size + 1023) / 1024) + QStringLiteral(" KB");
        case TypeCol:
            return typeOf(e).comment;
        case DateCol:
            return QLocale().toString(QDateTime::fromMSecsSinceEpoch(e.mtimeMs), QLocale::ShortFormat);
        }
        return {};
    case Qt::DecorationRole:
        if (idx.column() == NameCol) return iconOf(e);
        return {};
    case Qt::TextAlignmentRole:
        if (idx.column() == SizeCol) return int(Qt::AlignRight | Qt::AlignVCenter);
        return {};
    case Qt::ToolTipRole:
        return itemPath(idx.row());
    case Qt::UserRole:
        return itemPath(idx.row());
    default:
        return {};
    }
}

QVariant ShellListModel::headerData(int section, Qt::Orientation o, int role) const
{
    if (o != Qt::Horizontal || role != Qt::DisplayRole) return {};
    switch (section) {
    case NameCol:
        return QStringLiteral("Name");
    case SizeCol:
        return QStringLiteral("Size");
    case TypeCol:
        return QStringLiteral("Type");
    case DateCol:
        return QStringLiteral("Modified");
    }
    return {};
}

Qt::ItemFlags ShellListModel::flags(const QModelIndex &idx) const
{
    // Never editable: names are not changed in place, the rename dialog does that.
    if (!idx.isValid()) return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
}

// ---------------------------------------------------------------- widget

ShellList::ShellList(QWidget *parent) : QWidget(parent), model_(new ShellListModel(this))
{
    setObjectName(QStringLiteral("PTxShList1"));
    setupViews();
    watcher_ = new QFileSystemWatcher(this);
    watchDelay_ = new QTimer(this);
    watchDelay_->setSingleShot(true);
    watchDelay_->setInterval(120);
    connect(watcher_, &QFileSystemWatcher::directoryChanged, this, &ShellList::onWatcher);
    connect(watchDelay_, &QTimer::timeout, this, &ShellList::applyWatcher);
    fillTimer_ = new QTimer(this);
    fillTimer_->setSingleShot(true);
    fillTimer_->setInterval(0);
    connect(fillTimer_, &QTimer::timeout, this, [this] {
        model_->fillStep();
        scheduleFill();
    });
}

ShellList::~ShellList() = default;

void ShellList::setupViews()
{
    auto *lay = new QVBoxLayout(this);
    lay->setContentsMargins(0, 0, 0, 0);
    stack_ = new QStackedWidget(this);
    lay->addWidget(stack_);

    listView_ = new QListView(stack_);
    listView_->setObjectName(QStringLiteral("PTxShList1_Icons"));
    listView_->setModel(model_);
    listView_->setLayoutMode(QListView::Batched);
    listView_->setBatchSize(400);
    listView_->setResizeMode(QListView::Adjust);
    listView_->setMovement(QListView::Static);

    detailView_ = new QTreeView(stack_);
    detailView_->setObjectName(QStringLiteral("PTxShList1_Details"));
    detailView_->setModel(model_);
    detailView_->setRootIsDecorated(false);
    detailView_->setItemsExpandable(false);
    detailView_->setUniformRowHeights(true);
    detailView_->setAllColumnsShowFocus(true);
    detailView_->header()->setStretchLastSection(false);
    detailView_->header()->resizeSection(ShellListModel::NameCol, 240);

    selection_ = listView_->selectionModel();
    detailView_->setSelectionModel(selection_);
    for (QAbstractItemView *v :
         {static_cast<QAbstractItemView *>(listView_), static_cast<QAbstractItemView *>(detailView_)}) {
        v->setSelectionMode(QAbstractItemView::ExtendedSelection);
        v->setSelectionBehavior(QAbstractItemView::SelectRows);
        v->setEditTriggers(QAbstractItemView::NoEditTriggers);
        v->installEventFilter(this);
        connect(v, &QAbstractItemView::doubleClicked, this, &ShellList::onDoubleClicked);
        connect(v, &QAbstractItemView::clicked, this,
                [this](const QModelIndex &i) { emit itemClicked(model_->itemPath(i.row())); });
    }
    stack_->addWidget(listView_);
    stack_->addWidget(detailView_);
    connect(selection_, &QItemSelectionModel::selectionChanged, this, [this] { emit itemSelected(); });
    setViewMode(0);
}

void ShellList::setViewMode(int mode)
{
    if (mode < 0 || mode > 3) mode = 0;
    view_ = mode;
    if (mode == 3) {
        stack_->setCurrentWidget(detailView_);
        return;
    }
    listView_->setUniformItemSizes(mode != 0);
    switch (mode) {
    case 0:
        listView_->setViewMode(QListView::IconMode);
        listView_->setIconSize(QSize(32, 32));
        listView_->setGridSize(QSize(96, 72));
        listView_->setWordWrap(true);
        listView_->setFlow(QListView::LeftToRight);
        break;
    case 1:
        listView_->setViewMode(QListView::ListMode);
        listView_->setIconSize(QSize(16, 16));
        listView_->setGridSize(QSize(170, 22));
        listView_->setWordWrap(false);
        listView_->setFlow(QListView::LeftToRight);
        break;
    default:
        listView_->setViewMode(QListView::ListMode);
        listView_->setIconSize(QSize(16, 16));
        listView_->setGridSize(QSize());
        listView_->setWordWrap(false);
        listView_->setFlow(QListView::TopToBottom);
        break;
    }
    listView_->setWrapping(true);
    listView_->setMovement(QListView::Static);
    listView_->setResizeMode(QListView::Adjust);
    stack_->setCurrentWidget(listView_);
}

QAbstractItemView *ShellList::currentView() const
{
    return view_ == 3 ? static_cast<QAbstractItemView *>(detailView_) : listView_;
}

void ShellList::scheduleFill()
{
    if (model_->filling()) fillTimer_->start();
}

void ShellList::showFolder(const QString &rawPath)
{
    const QString path = rawPath.trimmed().isEmpty() ? QString() : QDir::cleanPath(rawPath);
    if (!model_->folder().isEmpty()) watcher_->removePath(model_->folder());
    model_->load(path, patterns_);
    if (!path.isEmpty()) watcher_->addPath(path);
    scheduleFill();
    emit contentsChanged();
}

void ShellList::setFolder(const QString &path)
{
    // An empty folder leaves the list as it is.
    if (path.trimmed().isEmpty()) return;
    if (QDir::cleanPath(path) != model_->folder()) showFolder(path);
    if (tree_) tree_->followFolder(path);
}

void ShellList::setPattern(const QString &pattern)
{
    if (pattern == patterns_.text()) return;
    patterns_.set(pattern);
    if (!model_->folder().isEmpty()) {
        model_->load(model_->folder(), patterns_);
        scheduleFill();
        emit contentsChanged();
    }
}

QStringList ShellList::itemPaths() const
{
    QStringList out;
    out.reserve(itemCount());
    for (int i = 0; i < itemCount(); ++i) out << itemPath(i);
    return out;
}

int ShellList::selectedCount() const { return int(selection_->selectedRows().size()); }

int ShellList::selectedItem(int n) const
{
    QModelIndexList rows = selection_->selectedRows();
    std::sort(rows.begin(), rows.end(),
              [](const QModelIndex &a, const QModelIndex &b) { return a.row() < b.row(); });
    if (n < 0 || n >= rows.size()) return -1;
    return rows[n].row();
}

void ShellList::deselectItem(int i)
{
    if (i < 0 || i >= model_->itemCount()) return;
    selection_->select(model_->index(i, 0), QItemSelectionModel::Deselect | QItemSelectionModel::Rows);
}

QString ShellList::focusedItemPath() const
{
    const QModelIndex cur = selection_->currentIndex();
    if (cur.isValid()) return model_->itemPath(cur.row());
    const int first = selectedItem(0);
    return first >= 0 ? model_->itemPath(first) : QString();
}

bool ShellList::clickItem(const QString &nameOrPath)
{
    model_->fillAll();
    int i = model_->findName(nameOrPath);
    if (i < 0)
        for (int k = 0; k < itemCount(); ++k)
            if (itemPath(k) == nameOrPath) i = k;
    if (i < 0) return false;
    const QModelIndex idx = model_->index(i, 0);
    selection_->setCurrentIndex(idx, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    currentView()->scrollTo(idx);
    emit itemClicked(itemPath(i));
    return true;
}

bool ShellList::markItem(const QString &path)
{
    model_->fillAll();
    const QString want = path.trimmed().toUpper();
    for (int k = 0; k < itemCount(); ++k)
        if (itemPath(k).trimmed().toUpper() == want) {
            const QModelIndex idx = model_->index(k, 0);
            selection_->setCurrentIndex(idx, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
            currentView()->scrollTo(idx);
            return true;
        }
    return false;
}

bool ShellList::doubleClickItem(const QString &nameOrPath)
{
    if (!clickItem(nameOrPath)) return false;
    onDoubleClicked(selection_->currentIndex());
    return true;
}

void ShellList::onDoubleClicked(const QModelIndex &idx)
{
    if (!idx.isValid()) return;
    const int row = idx.row();
    const QString path = model_->itemPath(row);
    const bool isDir = model_->item(row).isDir;
    emit itemDoubleClicked(path);
    // A folder opens in the list, and the tree follows.
    if (isDir) setFolder(path);
}

void ShellList::upOneLevel(int levels)
{
    QString f = model_->folder();
    if (f.isEmpty()) return;
    for (int k = 0; k < levels && f != QLatin1String("/"); ++k) {
        const QString up = QFileInfo(f).path();
        if (up == f) break;
        f = up;
    }
    setFolder(f);
}

void ShellList::onWatcher(const QString &path)
{
    if (path == model_->folder()) watchDelay_->start();
}

void ShellList::applyWatcher()
{
    const QString f = model_->folder();
    if (f.isEmpty()) return;
    // A folder that was removed and made again needs to be watched anew.
    if (!watcher_->directories().contains(f)) watcher_->addPath(f);
    if (model_->reload(patterns_)) emit contentsChanged();
}

void ShellList::setColors(const QColor &back, const QColor &text)
{
    for (QAbstractItemView *v :
         {static_cast<QAbstractItemView *>(listView_), static_cast<QAbstractItemView *>(detailView_)}) {
        QPalette p = v->palette();
        p.setColor(QPalette::Base, back);
        p.setColor(QPalette::Window, back);
        p.setColor(QPalette::Text, text);
        p.setColor(QPalette::WindowText, text);
        v->setPalette(p);
    }
}

bool ShellList::eventFilter(QObject *o, QEvent *e)
{
    if (e->type() == QEvent::KeyPress) {
        auto *k = static_cast<QKeyEvent *>(e);
        if (k->key() == Qt::Key_Escape) emit escapePressed();
        if ((k->key() == Qt::Key_Return || k->key() == Qt::Key_Enter)
            && selection_->currentIndex().isValid()) {
            onDoubleClicked(selection_->currentIndex());
            return true;
        }
        if (k->key() == Qt::Key_Backspace) {
            upOneLevel(1);
            return true;
        }
    }
    return QWidget::eventFilter(o, e);
}

bool ShellList::scenarioSelect(const QString &arg, QString *error)
{
    if (clickItem(arg)) return true;
    if (error) *error = QStringLiteral("no item %1 in %2").arg(arg, folder());
    return false;
}

bool ShellList::scenarioDoubleClick(const QString &arg, QString *error)
{
    if (doubleClickItem(arg)) return true;
    if (error) *error = QStringLiteral("no item %1 in %2").arg(arg, folder());
    return false;
}

QStringList ShellList::scenarioRows() const
{
    QStringList rows;
    for (int i = 0; i < itemCount(); ++i) rows << model_->item(i).name;
    return rows;
}

QString ShellList::scenarioSelected() const
{
    const int i = selectedItem(0);
    return i >= 0 ? model_->item(i).name : QString();
}

}  // namespace tw
