#include "tab_page.h"

#include "globals.h"

#include <QLabel>
#include <QWidget>
#include <array>

namespace tw {

namespace {
const char *const kTabKeys[TabCount + 1] = {"",      "Find",      "Pictures", "Videos", "Music",
                                            "Slide", "Documents", "Internet", "Tools"};
const char *const kTabCaptions[TabCount + 1] = {"",           "Find and Open", "Pictures", "Videos", "Music",
                                                "Slide Show", "Documents",     "Internet", "Tools"};
const char *const kTabTips[TabCount + 1] = {"",
                                            "Find and Open Files",
                                            "View Selected Pictures",
                                            "Play Selected Videos",
                                            "Play Selected Music Files",
                                            "Set up and Run Slide Show",
                                            "View Selected Text and Documents",
                                            "Surf the Internet",
                                            "Set up Program Options and Colors"};

std::array<PageFactory, TabCount + 1> &factories()
{
    static std::array<PageFactory, TabCount + 1> f;
    return f;
}

bool validIndex(int index) { return index >= 1 && index <= TabCount; }
}  // namespace

QString tabKey(int index) { return validIndex(index) ? QString::fromLatin1(kTabKeys[index]) : QString(); }
QString tabCaption(int index)
{
    return validIndex(index) ? QString::fromLatin1(kTabCaptions[index]) : QString();
}
QString tabToolTip(int index) { return validIndex(index) ? QString::fromLatin1(kTabTips[index]) : QString(); }

int tabIndexOfKey(const QString &key)
{
    for (int i = 1; i <= TabCount; ++i)
        if (key == QLatin1String(kTabKeys[i])) return i;
    return 0;
}

TabPage::~TabPage() = default;

void TabPage::ensureBuilt()
{
    if (built_ || !panel_) return;
    built_ = true;
    build(panel_);
    host_.pageBuilt(this);
}

QString TabPage::tabTitle() const { return AppTitle; }

void TabPage::setClockLabels(QLabel *date, QLabel *time, const QString &clockVariable)
{
    clock_[0] = date;
    clock_[1] = time;
    clockVariable_ = clockVariable;
}

void TabPage::showClock(const QString &date, const QString &time)
{
    if (!clock_[0]) return;
    clock_[0]->setText(date);
    clock_[1]->setText(time);
}

bool TabPage::variableText(const QString &name, QString *out) const
{
    if (clockVariable_.isEmpty() || name != clockVariable_) return false;
    const bool on = !clock_[0]->text().isEmpty() && !clock_[1]->text().isEmpty();
    *out = on ? QStringLiteral("true") : QStringLiteral("false");
    return true;
}

PageRegistration::PageRegistration(int index, PageFactory make)
{
    if (validIndex(index)) factories()[size_t(index)] = std::move(make);
}

CommandSet::~CommandSet() = default;

namespace {
std::vector<CommandSetFactory> &commandSets()
{
    static std::vector<CommandSetFactory> f;
    return f;
}
}  // namespace

CommandSetRegistration::CommandSetRegistration(CommandSetFactory make)
{
    commandSets().push_back(std::move(make));
}

const std::vector<CommandSetFactory> &commandSetFactories() { return commandSets(); }

PageFactory pageFactory(int index) { return validIndex(index) ? factories()[size_t(index)] : PageFactory(); }

}  // namespace tw
