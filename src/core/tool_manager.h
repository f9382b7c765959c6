// The one tool manager: every menu item and toolbar button is a tool known by its string
// identifier. Changing a tool's checked state from code raises the same click as the user
// would, unless SuppressToolCommand is set.
#pragma once

#include <QHash>
#include <QObject>
#include <QString>
#include <QStringList>

class QAction;
class QActionGroup;
class QMainWindow;
class QMenu;
class QMenuBar;
class QToolBar;
class QWidget;

namespace tw {

struct ToolDef;

class Tool {
public:
    QString id, caption, toolTip, category, group;
    QAction *action = nullptr;
    QMenu *popup = nullptr;  // drop-down tools
};

class ToolManager : public QObject {
    Q_OBJECT
public:
    explicit ToolManager(QMainWindow *window);
    ~ToolManager() override;

    // Builds every tool, the menus and the seven toolbar positions.
    void build(const QString &imageDir);

    Tool *tool(const QString &id) const;
    bool has(const QString &id) const { return tool(id) != nullptr; }
    QAction *action(const QString &id) const;

    void setEnabled(const QString &id, bool on);
    bool isEnabled(const QString &id) const;
    void setVisible(const QString &id, bool on);
    bool isVisible(const QString &id) const;
    // Checks or presses a tool from code; raises toolClicked unless SuppressToolCommand is on.
    void setChecked(const QString &id, bool on);
    void press(const QString &id);
    bool isChecked(const QString &id) const;
    void setCaption(const QString &id, const QString &caption);
    QString caption(const QString &id) const;
    QString toolTip(const QString &id) const;
    void setToolTip(const QString &id, const QString &tip);
    QString category(const QString &id) const;

    // Toolbars by position 1..7; position 1 is the menu bar.
    QToolBar *toolbar(int position) const;
    void setToolbarVisible(int position, bool on);
    bool toolbarVisible(int position) const;
    // The whole tool area below the menu bar.
    void setToolAreaVisible(bool on);
    bool toolAreaVisible() const;
    void setAllEnabled(bool on);

    // Dynamic tools.
    Tool *addDynamicTool(const QString &id, const QString &category, const QString &menuId,
                         const QString &image);
    QStringList toolsOfCategory(const QString &category) const;
    // Takes every dynamic tool of the category out of its menu and the table (the View menu's
    // files of the session, on the selection list's Clear).
    void removeDynamicTools(const QString &category);
    QMenu *menu(const QString &id) const;
    // Pops up the list of a drop-down tool below it.
    void dropDown(const QString &id);
    QStringList allIds() const;

    // Marks a tool whose feature this build does not have yet: it stays disabled.
    bool isUnbuilt(const QString &id) const { return unbuilt_.contains(id); }
    void markUnbuilt(const QStringList &ids);
    void markBuilt(const QStringList &ids);
    QStringList unbuiltIds() const { return unbuilt_; }

signals:
    void toolClicked(const QString &id);

private:
    Tool *make(const QString &id, const QString &caption, const QString &tip, const QString &category,
               const QString &image);
    void wire(Tool *t);
    QMainWindow *window_;
    QHash<QString, Tool *> tools_;
    QStringList order_;
    QHash<QString, QMenu *> menus_;
    QToolBar *bars_[8] = {};
    QHash<QString, QActionGroup *> groups_;
    QStringList unbuilt_;
    bool toolArea_ = true;
    QString imageDir_;
};

}  // namespace tw
