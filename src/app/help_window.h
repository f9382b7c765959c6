// The help window as the main window sees it. It lives in a module of its own (the help
// engine and its database libraries are loaded only when the user first asks for help).
#pragma once

#include <QString>
#include <QWidget>

namespace tw {

class HelpWindow : public QWidget {
public:
    using QWidget::QWidget;
    ~HelpWindow() override = default;
    // The contents (or the search page) on the front page of the help.
    virtual void showContents(bool search) = 0;
    // The page of one topic ("finding", "pictures", ...).
    virtual void showTopic(const QString &keyword) = 0;
    virtual QString currentPage() const = 0;
    virtual QString currentTitle() const = 0;
};

// Loads the help module and makes its window; null (with the reason in Error) when the
// module cannot be loaded.
HelpWindow *makeHelpWindow(const QString &helpDir, QWidget *parent, QString *error);

}  // namespace tw
