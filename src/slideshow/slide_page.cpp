// The Slide Show tab's page. No toolbar shows on this tab, so its panel Frame1(5) keeps
// the date and time itself.
#include "core/context_help.h"
#include "core/globals.h"
#include "core/looks.h"
#include "core/tab_page.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace tw {

class SlidePage : public TabPage {
public:
    explicit SlidePage(PageHost &host) : TabPage(host, 5) {}

    QString tabTitle() const override
    {
        return AppTitle + QStringLiteral(" - Set Picture Slide Show with Music");
    }
    void applyColors() override
    {
        if (built()) paintWidget(Frame1_5, G.Colors.ServiceBack, G.Colors.ServiceText);
    }

protected:
    void build(QWidget *panel) override
    {
        Frame1_5 = new QFrame(panel);
        Frame1_5->setObjectName(QStringLiteral("Frame1_5"));
        setHelpTopic(panel, QStringLiteral("slideshow"));
        auto *p5 = new QVBoxLayout(panel);
        p5->addWidget(Frame1_5);
        auto *f5 = new QVBoxLayout(Frame1_5);
        auto *clock = new QHBoxLayout;
        for (int i = 0; i < 2; ++i) {
            Clock[i] = new QLabel(Frame1_5);
            Clock[i]->setObjectName(QStringLiteral("Label2_%1").arg(8 + i));
            clock->addWidget(Clock[i]);
        }
        clock->addStretch(1);
        setClockLabels(Clock[0], Clock[1], QStringLiteral("ClockOnSlide"));
        f5->addLayout(clock);
        f5->addStretch(1);
    }

private:
    QFrame *Frame1_5 = nullptr;
    QLabel *Clock[2] = {};  // Label2(8), Label2(9)
};

TW_REGISTER_PAGE(5, SlidePage);

}  // namespace tw
