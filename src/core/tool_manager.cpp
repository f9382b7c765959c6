#include "tool_manager.h"

#include "core/globals.h"
#include "core/tool_table.h"
#include "lazy_icon.h"
#include "tool_ids.h"

#include <QAction>
#include <QActionGroup>
#include <QCursor>
#include <QFileInfo>
#include <QIcon>
#include <QKeySequence>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <QToolButton>

namespace tw {

ToolManager::ToolManager(QMainWindow *window) : QObject(window), window_(window)
{
    setObjectName(QStringLiteral("ToolBarComp1"));
}

Tool *ToolManager::make(const QString &id, const QString &caption, const QString &tip,
                        const QString &category, const QString &image)
{
    auto *t = new Tool;
    t->id = id;
    t->caption = caption;
    t->toolTip = tip;
    t->category = category;
    t->action = new QAction(caption, window_);
    t->action->setObjectName(id);
    t->action->setToolTip(tip.isEmpty() ? caption : tip);
    t->action->setIconVisibleInMenu(true);
    if (!image.isEmpty()) {
        const QString f = imageDir_ + u'/' + image;
        if (QFileInfo::exists(f)) t->action->setIcon(lazyFileIcon(f));
    }
    tools_.insert(id, t);
    order_ << id;
    return t;
}

void ToolManager::wire(Tool *t)
{
    const QString id = t->id;
    connect(t->action, &QAction::triggered, this, [this, id] {
        if (G.SuppressToolCommand) return;
        emit toolClicked(id);
    });
}

void ToolManager::build(const QString &imageDir)
{
    imageDir_ = imageDir;
    QMenuBar *mb = window_->menuBar();
    mb->setObjectName(QStringLiteral("MenuBar"));
    for (int p = 2; p <= 7; ++p) {
        auto *tb = new QToolBar(toolbarName(p), window_);
        tb->setObjectName(toolbarName(p));
        tb->setMovable(false);
        tb->setFloatable(false);
        tb->setToolButtonStyle(Qt::ToolButtonIconOnly);
        tb->setIconSize(QSize(16, 16));
        if (p == 7) window_->addToolBarBreak();
        window_->addToolBar(Qt::TopToolBarArea, tb);
        bars_[p] = tb;
    }

    for (const ToolDef &d : toolTable()) {
        Tool *t = make(d.id, d.caption, d.tip, d.category, d.image);
        t->group = d.group;
        if (d.kind == ToolKind::Menu) {
            auto *m = new QMenu(d.caption, window_);
            m->setObjectName(d.id + QStringLiteral("_Menu"));
            menus_.insert(d.id, m);
            t->action->setMenu(m);
            t->popup = m;
            if (d.position == 1 && d.parent.isEmpty()) mb->addAction(t->action);
            else if (QMenu *host = menus_.value(d.parent)) host->addMenu(m);
            else if (Tool *owner = tools_.value(d.parent)) {
                owner->popup = m;
                // The drop-down tool opens this list below it.
            }
            continue;
        }
        if (d.kind == ToolKind::Option || d.kind == ToolKind::Check) t->action->setCheckable(true);
        if (d.kind == ToolKind::Option && !d.group.isEmpty()) {
            QActionGroup *g = groups_.value(d.group);
            if (!g) {
                g = new QActionGroup(this);
                g->setObjectName(d.group);
                g->setExclusive(true);
                groups_.insert(d.group, g);
            }
            g->addAction(t->action);
        }
        const QString key = shortcutFromTip(d.tip);
        if (!key.isEmpty()) {
            t->action->setShortcut(QKeySequence(key));
            t->action->setShortcutContext(Qt::WindowShortcut);
            window_->addAction(t->action);
        }
        if (!d.parent.isEmpty()) {
            if (QMenu *m = menus_.value(d.parent)) {
                if (d.separatorBefore) m->addSeparator();
                m->addAction(t->action);
            }
        } else if (d.position >= 2 && d.position <= 7) {
            QToolBar *tb = bars_[d.position];
            if (d.kind == ToolKind::Label) {
                if (d.id.startsWith(QLatin1String("ID_Separator"))) {
                    t->action->setSeparator(true);
                }
                tb->addAction(t->action);
                t->action->setEnabled(true);
            } else if (d.kind == ToolKind::TextBox) {
                tb->addAction(t->action);
            } else {
                tb->addAction(t->action);
                if (d.kind == ToolKind::DropDown) {
                    if (auto *btn = qobject_cast<QToolButton *>(tb->widgetForAction(t->action)))
                        btn->setPopupMode(QToolButton::MenuButtonPopup);
                }
            }
            if (auto *btn = qobject_cast<QToolButton *>(tb->widgetForAction(t->action))) {
                btn->setObjectName(d.id);
                // A tool without an image shows its caption instead.
                if (t->action->icon().isNull()) btn->setToolButtonStyle(Qt::ToolButtonTextOnly);
            }
        }
        wire(t);
    }
    // Drop-down tools carry their lists.
    for (const ToolDef &d : toolTable()) {
        if (d.kind == ToolKind::Menu && !d.parent.isEmpty()) {
            Tool *owner = tools_.value(d.parent);
            QMenu *m = menus_.value(d.id);
            if (owner && m) {
                owner->popup = m;
                owner->action->setMenu(m);
                if (QToolBar *tb = bars_[d.position])
                    if (auto *btn = qobject_cast<QToolButton *>(tb->widgetForAction(owner->action)))
                        btn->setPopupMode(QToolButton::MenuButtonPopup);
            }
        }
    }
    // The date and time show on every toolbar that has room for them.
    for (int p = 3; p <= 6; ++p) {
        bars_[p]->addSeparator();
        for (QLatin1String id : {tool::Date, tool::Time}) {
            bars_[p]->addAction(action(id));
            if (auto *btn = qobject_cast<QToolButton *>(bars_[p]->widgetForAction(action(id))))
                btn->setToolButtonStyle(Qt::ToolButtonTextOnly);
        }
    }
}

ToolManager::~ToolManager() { qDeleteAll(tools_); }

Tool *ToolManager::tool(const QString &id) const { return tools_.value(id, nullptr); }

QAction *ToolManager::action(const QString &id) const
{
    Tool *t = tool(id);
    return t ? t->action : nullptr;
}

void ToolManager::setEnabled(const QString &id, bool on)
{
    if (QAction *a = action(id)) a->setEnabled(on && !unbuilt_.contains(id));
}

bool ToolManager::isEnabled(const QString &id) const
{
    QAction *a = action(id);
    return a && a->isEnabled();
}

void ToolManager::setVisible(const QString &id, bool on)
{
    if (QAction *a = action(id)) a->setVisible(on);
}

bool ToolManager::isVisible(const QString &id) const
{
    QAction *a = action(id);
    return a && a->isVisible();
}

void ToolManager::setChecked(const QString &id, bool on)
{
    QAction *a = action(id);
    if (!a) return;
    if (!a->isCheckable()) a->setCheckable(true);
    a->setChecked(on);
    // A change made from code raises the same click as the user's, unless suppressed.
    if (!G.SuppressToolCommand) emit toolClicked(id);
}

void ToolManager::press(const QString &id) { setChecked(id, true); }

bool ToolManager::isChecked(const QString &id) const
{
    QAction *a = action(id);
    return a && a->isChecked();
}

void ToolManager::setCaption(const QString &id, const QString &caption)
{
    if (Tool *t = tool(id)) {
        t->caption = caption;
        t->action->setText(caption);
        if (t->toolTip.isEmpty()) t->action->setToolTip(caption);
    }
}

QString ToolManager::caption(const QString &id) const
{
    Tool *t = tool(id);
    return t ? t->caption : QString();
}

void ToolManager::setToolTip(const QString &id, const QString &tip)
{
    if (Tool *t = tool(id)) {
        t->toolTip = tip;
        t->action->setToolTip(tip.isEmpty() ? t->caption : tip);
    }
}

QString ToolManager::toolTip(const QString &id) const
{
    Tool *t = tool(id);
    return t ? t->toolTip : QString();
}

QString ToolManager::category(const QString &id) const
{
    Tool *t = tool(id);
    return t ? t->category : QString();
}

QToolBar *ToolManager::toolbar(int position) const
{
    return position >= 2 && position <= 7 ? bars_[position] : nullptr;
}

void ToolManager::setToolbarVisible(int position, bool on)
{
    if (position == 1) return;  // the menu bar always stays
    if (QToolBar *tb = toolbar(position)) tb->setVisible(on && toolArea_);
    if (QToolBar *tb = toolbar(position)) tb->setProperty("twWanted", on);
}

bool ToolManager::toolbarVisible(int position) const
{
    if (position == 1) return true;
    QToolBar *tb = toolbar(position);
    return tb && tb->property("twWanted").toBool() && toolArea_;
}

void ToolManager::setToolAreaVisible(bool on)
{
    toolArea_ = on;
    for (int p = 2; p <= 7; ++p)
        if (bars_[p]) bars_[p]->setVisible(on && bars_[p]->property("twWanted").toBool());
}

bool ToolManager::toolAreaVisible() const { return toolArea_; }

void ToolManager::setAllEnabled(bool on)
{
    window_->menuBar()->setEnabled(on);
    for (int p = 2; p <= 7; ++p)
        if (bars_[p]) bars_[p]->setEnabled(on);
}

Tool *ToolManager::addDynamicTool(const QString &id, const QString &category, const QString &menuId,
                                  const QString &image)
{
    if (Tool *existing = tool(id)) return existing;
    imageDir_ = imageDir_.isEmpty() ? QString() : imageDir_;
    auto *t = new Tool;
    t->id = id;
    t->caption = id;
    t->category = category;
    t->action = new QAction(id, window_);
    t->action->setObjectName(id);
    t->action->setIconVisibleInMenu(true);
    if (!image.isEmpty() && QFileInfo::exists(image)) t->action->setIcon(lazyFileIcon(image));
    tools_.insert(id, t);
    order_ << id;
    if (category == QLatin1String("MenuViewList")) {
        t->action->setCheckable(true);
        QActionGroup *g = groups_.value(category);
        if (!g) {
            g = new QActionGroup(this);
            g->setExclusive(true);
            groups_.insert(category, g);
        }
        g->addAction(t->action);
    }
    if (QMenu *m = menus_.value(menuId)) m->addAction(t->action);
    wire(t);
    return t;
}

void ToolManager::removeDynamicTools(const QString &category)
{
    const QStringList ids = toolsOfCategory(category);
    QActionGroup *g = groups_.value(category);
    // From the last one back.
    for (auto it = ids.rbegin(); it != ids.rend(); ++it) {
        Tool *t = tools_.take(*it);
        if (!t) continue;
        order_.removeAll(*it);
        if (g) g->removeAction(t->action);
        delete t->action;
        delete t;
    }
}

QStringList ToolManager::toolsOfCategory(const QString &category) const
{
    QStringList r;
    for (const QString &id : order_)
        if (tools_.value(id)->category == category) r << id;
    return r;
}

QMenu *ToolManager::menu(const QString &id) const { return menus_.value(id, nullptr); }

void ToolManager::dropDown(const QString &id)
{
    Tool *t = tool(id);
    if (!t || !t->popup) return;
    QWidget *anchor = nullptr;
    for (int p = 2; p <= 7 && !anchor; ++p)
        if (bars_[p]) anchor = bars_[p]->widgetForAction(t->action);
    const QPoint at = anchor ? anchor->mapToGlobal(QPoint(0, anchor->height())) : QCursor::pos();
    t->popup->popup(at);
}

QStringList ToolManager::allIds() const { return order_; }

void ToolManager::markUnbuilt(const QStringList &ids)
{
    for (const QString &id : ids) {
        if (!unbuilt_.contains(id)) unbuilt_ << id;
        if (QAction *a = action(id)) a->setEnabled(false);
    }
}

void ToolManager::markBuilt(const QStringList &ids)
{
    for (const QString &id : ids) {
        unbuilt_.removeAll(id);
        if (QAction *a = action(id)) a->setEnabled(true);
    }
}

}  // namespace tw
