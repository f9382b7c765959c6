// PTxShTree1: the folder tree pane. A QTreeView over ShellTreeModel that keeps the view's
// expansion and current row in step with the model, drives the linked file list, and
// answers the scenario runner by path.
#pragma once

#include "browse/shell_tree_model.h"
#include "core/scenario_access.h"

#include <QTreeView>
#include <vector>

namespace tw {

class ShellList;

class ShellTree : public QTreeView, public ScenarioAccess {
    Q_OBJECT
public:
    explicit ShellTree(QWidget *parent = nullptr);
    ~ShellTree() override;

    browse::ShellTreeModel *nodes() const { return model_; }
    void setRoots(const std::vector<browse::RootSpec> &roots);

    // The file list that this tree drives.
    void setLinkedList(ShellList *list) { list_ = list; }

    // The selected node and its flat index (-1 when none, or hidden under a collapsed node).
    browse::TreeNode *selectedNode() const { return model_->selected(); }
    int selectedIndex() const { return model_->indexOf(model_->selected()); }
    // The folder the tree shows: the selected node's path ("" for a virtual node or none).
    QString folderPath() const;

    // Selects a node as a user's click does: the list follows and folderChanged is raised.
    void selectNode(browse::TreeNode *n);
    // Expands down to Path and selects it; false when the tree cannot reach it.
    bool selectPath(const QString &path);
    // The list moved to Path by itself: select the node quietly for the list (it already
    // shows the folder) and raise folderChanged.
    void followFolder(const QString &path);

    void refresh();

    // While a walk runs, the view's expansion is brought up to date only at flushView(),
    // so that a walk over thousands of folders does not lay the view out at every node.
    void setDeferViewSync(bool on);
    void flushView();

    // ScenarioAccess
    bool scenarioSelect(const QString &arg, QString *error) override;
    bool scenarioDoubleClick(const QString &arg, QString *error) override;
    QStringList scenarioRows() const override;
    QString scenarioSelected() const override;
    QString scenarioFolder() const override { return folderPath(); }
    QModelIndex scenarioIndex(const QString &arg, QString *error) override;

signals:
    // The selected folder has changed.
    void folderChanged();
    void escapePressed();

protected:
    void keyPressEvent(QKeyEvent *e) override;

private:
    void onModelExpansion(browse::TreeNode *n, bool on);
    void onViewExpanded(const QModelIndex &idx, bool on);
    void onCurrentChanged(const QModelIndex &cur);
    void setViewCurrent(browse::TreeNode *n);
    // The node a scenario names by folder path or by node name, and the nodes above it
    // expanded; null when there is none.
    browse::TreeNode *scenarioNode(const QString &arg, QString *error);

    browse::ShellTreeModel *model_ = nullptr;
    ShellList *list_ = nullptr;
    bool syncing_ = false;
    bool defer_ = false;
    std::vector<std::pair<browse::TreeNode *, bool>> pending_;
};

}  // namespace tw
