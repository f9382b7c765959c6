// The help window: the compiled help collection with its contents, its index and a
// full-text search.
#pragma once

#include <QWidget>

class QHelpEngine;
class QTabWidget;
class QTextBrowser;

namespace tw {

class HelpViewer : public QWidget {
    Q_OBJECT
public:
    HelpViewer(const QString &helpDir, QWidget *parent);
    void showContents(bool search);
    void showTopic(const QString &keyword);
    bool ready() const { return ready_; }
    QString currentPage() const;
    QString currentTitle() const;

private:
    QHelpEngine *engine_ = nullptr;
    QTabWidget *side_ = nullptr;
    QTextBrowser *page_ = nullptr;
    bool ready_ = false;
};

}  // namespace tw
