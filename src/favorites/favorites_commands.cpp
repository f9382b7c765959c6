#include "favorites/favorites_commands.h"

#include "browse/shell_list.h"
#include "core/globals.h"
#include "core/internal_drag.h"
#include "core/looks.h"
#include "core/scenario_hooks.h"
#include "core/tool_ids.h"
#include "core/tool_manager.h"
#include "favorites/sel_favorites.h"
#include "favorites/select1.h"
#include "favorites/set_fav_list.h"
#include "slideshow/slide_show_files.h"

#include <QApplication>
#include <QDropEvent>
#include <QListWidget>
#include <QMainWindow>
#include <QMimeData>

namespace tw {

FavoriteCommands::FavoriteCommands(PageHost &host) : CommandSet(host)
{
    setObjectName(QStringLiteral("FavoriteCommands"));
    // A drag of the favorite browser's list dropped on a control of any window, as a user's
    // press, hold and move does: "SelList1" (the highlighted entry) or "SelList2" (the list).
    registerScenarioRoutine(QStringLiteral("DragFavorite"), [this](const QStringList &a) {
        // a: "SelList1"|"SelList2", window name, control name
        if (!browser_) return QStringLiteral("the favorite browser is not open");
        QWidget *win = nullptr;
        for (QWidget *w : QApplication::topLevelWidgets())
            if (w->objectName() == a.value(1)) win = w;
        if (!win) return QStringLiteral("no window ") + a.value(1);
        QWidget *target = win->findChild<QWidget *>(a.value(2));
        if (!target) return QStringLiteral("no control ") + a.value(2);
        if (auto *v = qobject_cast<QAbstractItemView *>(target)) target = v->viewport();
        std::unique_ptr<QMimeData> data(
            browser_->dragData(a.value(0) == QLatin1String("SelList1") ? browser_->List1 : browser_->List2));
        const QPointF at = target->rect().center();
        QDragEnterEvent enter(at.toPoint(), Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(target, &enter);
        QDropEvent drop(at, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(target, &drop);
        if (a.value(0) == QLatin1String("SelList1") && browser_) browser_->refresh(2);
        return QString();
    });
}

FavoriteCommands::~FavoriteCommands()
{
    delete browser_.data();
    delete select_.data();
}

QStringList FavoriteCommands::handledTools() const
{
    return {tool::mnuSelectFiles,
            tool::Select,
            tool::mnuSelectFavoriteList,
            tool::mnuCreateFavoriteList,
            tool::mnuCreateandChangeFavoriteLists,
            tool::PicFavorites};
}

bool FavoriteCommands::toolClick(const QString &id)
{
    if (id == tool::mnuCreateFavoriteList || id == tool::mnuCreateandChangeFavoriteLists
        || id == tool::PicFavorites)
        showEditor();
    else if (id == tool::mnuSelectFavoriteList) showBrowser();
    else if (id == tool::mnuSelectFiles || id == tool::Select) showSelection();
    else return false;
    return true;
}

void FavoriteCommands::showEditor()
{
    // The browser opens on the main list's folder, unless the window is still in its load.
    const bool restricted = host_.state().StartingUp;
    const QString folder = host_.explorer() && !restricted ? host_.explorer()->listFolder() : QString();
    SetFavList1 dlg(host_.window(), folder);
    dlg.exec();
}

void FavoriteCommands::showBrowser()
{
    if (browser_) {
        browser_->show();
        browser_->raise();
        browser_->activateWindow();
        return;
    }
    browser_ = new SelFavorites1(host_.window());
    browser_->displayFile = [this](const QString &p) { host_.DisplayFile(p); };
    browser_->selectionList = [this]() -> QListWidget * { return select_ ? select_->List1 : nullptr; };
    browser_->addToSlideShow = [this](const QString &p) {
        if (auto *s = dynamic_cast<slides::SlideShowFiles *>(host_.page(5))) s->AddFile(p);
    };
    browser_->pointFileList = [this](const QString &folder) {
        if (G.FavBrowserFromSlideShow) {
            TabPage *p = host_.page(5);
            if (ShellList *l = p && p->panel()
                    ? p->panel()->findChild<ShellList *>(QStringLiteral("PTxShList2"))
                    : nullptr)
                l->setFolder(folder);
        } else if (ExplorerSide *ex = host_.explorer()) {
            ex->setListFolder(folder);
        }
    };
    // The builder's flag lasts as long as the browser it opened.
    connect(browser_, &QObject::destroyed, this, [] { G.FavBrowserFromSlideShow = false; });
    applyColors();
    browser_->show();
}

Select1 *FavoriteCommands::selection()
{
    if (select_) return select_;
    select_ = new Select1(host_.window());
    select_->displayFile = [this](const QString &p) { host_.DisplayFile(p); };
    select_->addToSlideShow = [this](const QString &p) {
        if (auto *s = dynamic_cast<slides::SlideShowFiles *>(host_.page(5))) s->AddFile(p);
    };
    select_->openFavorites = [this] { showBrowser(); };
    select_->clearHistory = [this] {
        host_.tools().removeDynamicTools(QStringLiteral("MenuViewList"));
        for (int tab : {2, 6})
            if (TabPage *p = host_.page(tab))
                if (QListWidget *h = p->history()) h->clear();
    };
    connect(select_, &Select1::closed, this, [this] {
        {
            SuppressTools quiet;
            host_.tools().setChecked(tool::Select, false);
        }
        if (G.FavBrowserFromSelection && G.SelFavorites1Loaded && browser_) browser_->close();
        // Closing unloads the window; the next file shown loads it again, hidden.
        G.Select1Visible = false;
        G.Select1Loaded = false;
        if (select_) select_->deleteLater();
        select_ = nullptr;
    });
    applyColors();
    return select_;
}

void FavoriteCommands::showSelection()
{
    Select1 *s = selection();
    s->show();
    s->raise();
    s->activateWindow();
}

void FavoriteCommands::fileDisplayed(const QString &path)
{
    if (path.trimmed().isEmpty()) return;
    QListWidget *l = selection()->List1;
    const QString key = path.trimmed().toUpper();
    for (int i = 0; i < l->count(); ++i)
        if (l->item(i)->text().trimmed().toUpper() == key) return;
    l->addItem(path);
}

void FavoriteCommands::applyColors()
{
    const ColorSettings &c = G.Colors;
    if (select_) paintWidget(select_->List1, c.ListBack, c.ListText);
    if (browser_) {
        paintWidget(browser_->List1, c.ListBack, c.ListText);
        paintWidget(browser_->List2, c.ListBack, c.ListText);
    }
}

void FavoriteCommands::shutDown()
{
    if (browser_) browser_->close();
    delete select_.data();
}

TW_REGISTER_COMMANDS(FavoriteCommands);

}  // namespace tw
