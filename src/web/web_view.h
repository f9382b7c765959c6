// The browser surface of both tabs: the web engine's view, made on first use from the engine
// module (start-up pays nothing for the web engine), in silent mode without script dialogs;
// plus the printer that the document and Internet commands print on.
#pragma once

#include "core/print_target.h"

#include <QString>
#include <QUrl>
#include <QWidget>
#include <functional>
#include <memory>

class QPrinter;

namespace tw {

class BrowserEngine;

class WebView : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString text READ pageText)
public:
    explicit WebView(QWidget *parent = nullptr);
    ~WebView() override;

    // The engine, made now if it is not there yet; null when the engine module is missing.
    BrowserEngine *engine();
    bool engineMade() const { return engine_ != nullptr; }

    void navigate(const QUrl &url);
    void back();
    void forward();
    void home();
    void stop();
    void refresh();
    QUrl url() const;
    QString address() const;
    // The engine's title (the address when the page has none), and the page's own title.
    QString title() const;
    QString documentTitle() const { return docTitle_; }
    bool loading() const { return loading_; }
    // The text of the page as it stood when its load finished.
    QString pageText() const { return text_; }
    // Script alerts, confirmations and prompts are passed over in silent mode.
    void setSilent(bool on) { silent_ = on; }
    bool silent() const { return silent_; }
    // Kept as a setting of the browser; the engine loads from the network either way.
    void setOffline(bool on) { offline_ = on; }
    bool offline() const { return offline_; }
    // Saves the page's HTML to Path.
    void saveHtml(const QString &path, std::function<void(bool)> done);
    // Prints the page; Done runs when the engine has finished.
    void print(QPrinter *printer, std::function<void(bool)> done);

    // The home page of the browser.
    static QUrl homeUrl() { return QUrl(QStringLiteral("about:blank")); }

signals:
    void beforeNavigate(const QString &address);
    void loadFinished(bool ok);
    void navigateComplete(const QString &address, bool ok);  // after the page's text is read
    void statusTextChanged(const QString &text);
    void titleChanged(const QString &title);  // the page's own title, "" for none

private:
    std::unique_ptr<BrowserEngine> engine_;
    bool silent_ = true;
    bool offline_ = false;
    bool loading_ = false;
    bool dying_ = false;
    QString text_;
    QString docTitle_;
};

}  // namespace tw
