// The help window: the compiled help collection with its contents, its index and a
// full-text search.
#pragma once

#include "help_window.h"

class QHelpEngine;
class QTabWidget;
class QTextBrowser;

namespace tw {

class HelpViewer : public HelpWindow {
    Q_OBJECT
public:
    HelpViewer(const QString &helpDir, QWidget *parent);
    void showContents(bool search) override;
    void showTopic(const QString &keyword) override;
    bool ready() const { return ready_; }
    QString currentPage() const override;
    QString currentTitle() const override;

private:
    QHelpEngine *engine_ = nullptr;
    QTabWidget *side_ = nullptr;
    QTextBrowser *page_ = nullptr;
    bool ready_ = false;
};

}  // namespace tw
