// The Tools tab's page: the colour table and the option pages on Frame1(8).
#include "core/context_help.h"
#include "core/globals.h"
#include "core/looks.h"
#include "core/scenario_hooks.h"
#include "core/tab_page.h"
#include "tools_tab.h"

#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace tw {

class ToolsPage : public TabPage {
public:
    explicit ToolsPage(PageHost &host) : TabPage(host, 8)
    {
        // The tab's routines, reachable by name from a scenario.
        auto routine = [this](const char *name, void (ToolsTab::*fn)()) {
            registerScenarioRoutine(QString::fromLatin1(name), [this, fn](const QStringList &) {
                ensureBuilt();
                (Tools->*fn)();
                return QString();
            });
        };
        routine("ShowColors", &ToolsTab::ShowColors);
        routine("ShowOptions", &ToolsTab::ShowOptions);
        routine("ReadColors", &ToolsTab::ReadColors);
        routine("ReadOptions", &ToolsTab::ReadOptions);
        registerScenarioRoutine(QStringLiteral("ValidateOptions"), [this](const QStringList &) {
            ensureBuilt();
            Tools->ValidateOptions();
            return QString();
        });
    }

    QString tabTitle() const override
    {
        return AppTitle + QStringLiteral(" - Set Window and Program Colors and Options");
    }
    void layout() override
    {
        if (Tools) Tools->layoutTab();
    }
    void applyColors() override
    {
        if (!built()) return;
        const ColorSettings &c = G.Colors;
        paintWidget(Frame1_8, c.ServiceBack, c.ServiceText);
        for (QWidget *w : Tools->Text4) paintWidget(w, c.EntryBack, c.EntryText);
        Tools->repaintEntries();
    }

protected:
    void build(QWidget *panel) override
    {
        Frame1_8 = new QFrame(panel);
        Frame1_8->setObjectName(QStringLiteral("Frame1_8"));
        setHelpTopic(panel, QStringLiteral("tools"));
        auto *p8 = new QVBoxLayout(panel);
        p8->setContentsMargins(0, 0, 0, 0);
        p8->addWidget(Frame1_8);
        auto *f8 = new QVBoxLayout(Frame1_8);
        f8->setContentsMargins(0, 0, 0, 0);
        Tools = new ToolsTab(host_, Frame1_8);
        setClockLabels(Tools->Label2[6], Tools->Label2[7], QStringLiteral("ClockOnTools"));
        f8->addWidget(Tools);
        // The boxes show the colours and options as the store holds them now.
        Tools->ShowColors();
        Tools->ShowOptions();
    }

private:
    QFrame *Frame1_8 = nullptr;
    ToolsTab *Tools = nullptr;
};

TW_REGISTER_PAGE(8, ToolsPage);

}  // namespace tw
