#include "dialogs/small_dialogs.h"

#include "core/globals.h"
#include "core/scenario_hooks.h"
#include "core/scenario_hooks.h"
#include "core/tool_ids.h"
#include "dialogs/about_dialog.h"
#include "dialogs/quick_tips.h"
#include "dialogs/rename_dialog.h"

#include <QMainWindow>
#include <QTimer>

namespace tw {

SmallDialogs::SmallDialogs(PageHost &host) : CommandSet(host)
{
    setObjectName(QStringLiteral("SmallDialogs"));
    // The file the file commands act on, as another window (a search, a list) sets it.
    registerScenarioRoutine(QStringLiteral("SetSelectedFile"), [](const QStringList &a) {
        G.SelectedFile = a.value(0);
        return QString();
    });
}

QStringList SmallDialogs::handledTools() const
{
    return {tool::mnuRenameFile, tool::mnuViewQuickTips, tool::mnuHelpAbout};
}

bool SmallDialogs::toolClick(const QString &id)
{
    if (id == tool::mnuRenameFile) {
        Rename1 dlg(host_.window(), [this] {
            if (ExplorerSide *ex = host_.explorer()) ex->refreshList();
        });
        dlg.exec();
    } else if (id == tool::mnuViewQuickTips) {
        ShowQuickTips();
    } else if (id == tool::mnuHelpAbout) {
        About1 dlg(host_.window(), [this] {
            host_.LoadInternetPage(G.CurrentUrl);
            host_.selectTab(7);
        });
        dlg.exec();
    } else {
        return false;
    }
    return true;
}

void SmallDialogs::ShowQuickTips()
{
    // An open tips window is brought forward, not opened twice.
    if (tips_) {
        tips_->raise();
        tips_->activateWindow();
        return;
    }
    // The tips' own box (a file that is not there) activates the main window again while the
    // window is still being made: that activation must not make a second one.
    if (opening_) return;
    opening_ = true;
    tips_ = new QuikTip1(host_.window());
    opening_ = false;
    tips_->show();
}

void SmallDialogs::activated()
{
    // Every activation of the main window: the tips open while both flags are on (a window
    // already open is left as it is). They come one event-loop turn later, so the main
    // window paints first.
    if (!G.QuickTipsOpen || !G.Options.ShowQuickTips || tips_ || pending_) return;
    pending_ = true;
    QTimer::singleShot(0, this, [this] {
        pending_ = false;
        if (G.QuickTipsOpen && G.Options.ShowQuickTips && !tips_) ShowQuickTips();
    });
}

void SmallDialogs::shutDown()
{
    if (tips_) tips_->close();
}

TW_REGISTER_COMMANDS(SmallDialogs);

}  // namespace tw
