// The commands of the small dialogs: Rename File, View Quick Tips, About, and the quick tips
// shown at start.
#pragma once

#include "core/tab_page.h"

#include <QObject>
#include <QPointer>

namespace tw {

class QuikTip1;

class SmallDialogs : public QObject, public CommandSet {
    Q_OBJECT
public:
    explicit SmallDialogs(PageHost &host);
    QStringList handledTools() const override;
    bool toolClick(const QString &id) override;
    void activated() override;
    void shutDown() override;

    void ShowQuickTips();

private:
    QPointer<QuikTip1> tips_;
    bool opening_ = false;
    bool pending_ = false;  // the tips are to open at the next event-loop turn
};

}  // namespace tw
