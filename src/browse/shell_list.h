// PTxShList1: the file list of one folder, linked to the folder tree. Four views (large
// icons, small icons, list, details), a filter of semicolon-separated patterns matched
// ignoring case, several items selected at once, one level up, and a watcher that follows
// changes made on disk by other programs. A large folder fills in steps, so the window
// keeps painting while ten thousand rows arrive.
#pragma once

#include "browse/dir_scan.h"
#include "core/scenario_access.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QIcon>
#include <QWidget>
#include <vector>

class QFileSystemWatcher;
class QListView;
class QStackedWidget;
class QTimer;
class QTreeView;
class QAbstractItemView;
class QItemSelectionModel;

namespace tw {

class ShellTree;

class ShellListModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { NameCol, SizeCol, TypeCol, DateCol, ColumnCount };
    static constexpr int FillStep = 2000;

    explicit ShellListModel(QObject *parent = nullptr);

    // Reads Folder with the pattern; 0 or an error number (the list is then empty).
    int load(const QString &folder, const browse::PatternSet &patterns);
    // Reads the folder again and applies the difference row by row; true when anything changed.
    bool reload(const browse::PatternSet &patterns);
    void clear();

    const QString &folder() const { return folder_; }
    int itemCount() const { return int(items_.size()); }
    const browse::ListEntry &item(int i) const { return items_[size_t(i)]; }
    QString itemPath(int i) const;
    int findName(const QString &name) const;

    // Rows still to come in the progressive fill.
    bool filling() const { return shown_ < int(items_.size()); }
    void fillStep();
    void fillAll();

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &idx, int role) const override;
    QVariant headerData(int section, Qt::Orientation o, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &idx) const override;

signals:
    void fillProgress();

private:
    struct TypeInfo {
        QString comment;
        QString iconName, genericIconName;  // of the icon theme
        mutable QIcon icon;  // read of the theme when first drawn
        mutable bool iconRead = false;
    };
    const TypeInfo &typeOf(const browse::ListEntry &e) const;
    QIcon iconOf(const browse::ListEntry &e) const;
    static void sortEntries(std::vector<browse::ListEntry> &v);

    QString folder_;
    std::vector<browse::ListEntry> items_;
    int shown_ = 0;
    mutable QHash<QString, TypeInfo> types_;  // by MIME type name
    mutable QHash<QString, QString> mimeOfSuffix_;
    mutable bool iconsWaited_ = false;  // placeholders drawn while the icons were held back
};

class ShellList : public QWidget, public ScenarioAccess {
    Q_OBJECT
public:
    explicit ShellList(QWidget *parent = nullptr);
    ~ShellList() override;

    void setLinkedTree(ShellTree *tree) { tree_ = tree; }

    // The folder shown; setting it moves the linked tree too.
    QString folder() const { return model_->folder(); }
    void setFolder(const QString &path);
    // Shows Path without touching the tree (the tree calls this when it drives the list).
    void showFolder(const QString &path);
    // The filter, as given ("*.JPG;*.JPE"); a change lists the folder again.
    QString pattern() const { return patterns_.text(); }
    void setPattern(const QString &pattern);

    // 0 large icons, 1 small icons, 2 list, 3 details.
    int viewMode() const { return view_; }
    void setViewMode(int mode);

    // Items, in display order.
    int itemCount() const { return model_->itemCount(); }
    QString itemPath(int i) const { return model_->itemPath(i); }
    QStringList itemPaths() const;
    // The selected items: how many, and the item index of the n-th (display order).
    int selectedCount() const;
    int selectedItem(int n) const;
    QString focusedItemPath() const;
    // Takes the item of that index out of the selection.
    void deselectItem(int i);
    // Selects the item of that name (or path) as a user's click does; false when absent.
    bool clickItem(const QString &nameOrPath);
    bool doubleClickItem(const QString &nameOrPath);
    // Selects and focuses the item of that path and scrolls it into view, as code does
    // (no click); false when absent.
    bool markItem(const QString &path);
    // Reads the folder again now rather than when the watcher reports.
    void refresh() { applyWatcher(); }

    // One level up, Levels times; the tree follows.
    void upOneLevel(int levels = 1);

    void setColors(const QColor &back, const QColor &text);
    QAbstractItemView *currentView() const;
    ShellListModel *listModel() const { return model_; }

    // ScenarioAccess
    bool scenarioSelect(const QString &arg, QString *error) override;
    bool scenarioDoubleClick(const QString &arg, QString *error) override;
    QStringList scenarioRows() const override;
    QString scenarioSelected() const override;
    QString scenarioFolder() const override { return folder(); }

signals:
    // The list shows another folder, or the folder's contents changed on disk.
    void contentsChanged();
    // An item was selected; the first form carries no item, the second the item clicked.
    void itemSelected();
    void itemClicked(const QString &path);
    void itemDoubleClicked(const QString &path);
    void escapePressed();

protected:
    bool eventFilter(QObject *o, QEvent *e) override;

private:
    void onDoubleClicked(const QModelIndex &idx);
    void onWatcher(const QString &path);
    void applyWatcher();
    void scheduleFill();
    void setupViews();

    ShellListModel *model_ = nullptr;
    ShellTree *tree_ = nullptr;
    browse::PatternSet patterns_{QStringLiteral("*.*")};
    int view_ = 0;
    QStackedWidget *stack_ = nullptr;
    QListView *listView_ = nullptr;
    QTreeView *detailView_ = nullptr;
    QItemSelectionModel *selection_ = nullptr;
    QFileSystemWatcher *watcher_ = nullptr;
    QTimer *watchDelay_ = nullptr;
    QTimer *fillTimer_ = nullptr;
};

}  // namespace tw
