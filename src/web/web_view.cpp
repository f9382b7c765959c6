#include "web/web_view.h"

#include <QFile>
#include <QPointer>
#include <QVariant>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QVBoxLayout>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineView>

namespace tw {

namespace {

// A page without script dialogs while its view is silent.
class SilentPage : public QWebEnginePage {
public:
    SilentPage(const WebView *owner, QObject *parent) : QWebEnginePage(parent), owner_(owner) {}

protected:
    void javaScriptAlert(const QUrl &origin, const QString &msg) override
    {
        if (!owner_->silent()) QWebEnginePage::javaScriptAlert(origin, msg);
    }
    bool javaScriptConfirm(const QUrl &origin, const QString &msg) override
    {
        return owner_->silent() ? false : QWebEnginePage::javaScriptConfirm(origin, msg);
    }
    bool javaScriptPrompt(const QUrl &origin, const QString &msg, const QString &def,
                          QString *result) override
    {
        return owner_->silent() ? false : QWebEnginePage::javaScriptPrompt(origin, msg, def, result);
    }
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString &, int,
                                  const QString &) override
    {}

private:
    const WebView *owner_;
};

}  // namespace

WebView::WebView(QWidget *parent) : QWidget(parent)
{
    auto *lay = new QVBoxLayout(this);
    lay->setContentsMargins(0, 0, 0, 0);
}

WebView::~WebView()
{
    // The engine answers its pending script calls while it goes: nobody hears them now.
    dying_ = true;
    delete view_;
    view_ = nullptr;
}

QWebEngineView *WebView::view()
{
    if (view_) return view_;
    view_ = new QWebEngineView(this);
    view_->setPage(new SilentPage(this, view_));
    layout()->addWidget(view_);
    connect(view_, &QWebEngineView::loadStarted, this, [this] {
        loading_ = true;
        emit beforeNavigate(view_->url().toString());
    });
    connect(view_, &QWebEngineView::loadFinished, this, [this](bool ok) {
        loading_ = false;
        const QString address = view_->url().toString();
        QPointer<WebView> self(this);
        view_->page()->toPlainText([self, address, ok](const QString &t) {
            if (!self || self->dying_) return;
            self->text_ = t;
            emit self->navigateComplete(address, ok);
        });
    });
    connect(view_->page(), &QWebEnginePage::linkHovered, this, &WebView::statusTextChanged);
    // The engine puts the address in place of a missing title: the document's own title counts.
    connect(view_, &QWebEngineView::titleChanged, this, [this] {
        QPointer<WebView> self(this);
        view_->page()->runJavaScript(QStringLiteral("document.title"), [self](const QVariant &v) {
            if (!self || self->dying_) return;
            const QString t = v.toString();
            if (t == self->docTitle_) return;
            self->docTitle_ = t;
            emit self->titleChanged(t);
        });
    });
    return view_;
}

void WebView::navigate(const QUrl &url)
{
    if (!url.isValid() || url.isEmpty()) return;
    text_.clear();
    docTitle_.clear();
    view()->load(url);
}

void WebView::back()
{
    if (view_) view_->back();
}
void WebView::forward()
{
    if (view_) view_->forward();
}
void WebView::home() { navigate(homeUrl()); }
void WebView::stop()
{
    if (view_) view_->stop();
    loading_ = false;
}
void WebView::refresh()
{
    if (view_) view_->reload();
}
QUrl WebView::url() const { return view_ ? view_->url() : QUrl(); }
QString WebView::address() const { return url().toString(); }
QString WebView::title() const { return view_ ? view_->title() : QString(); }
QString WebView::documentTitle() const { return docTitle_; }

void WebView::saveHtml(const QString &path, std::function<void(bool)> done)
{
    if (!view_) {
        if (done) done(false);
        return;
    }
    QPointer<WebView> self(this);
    view_->page()->toHtml([self, path, done](const QString &html) {
        if (!self || self->dying_) return;
        QFile f(path);
        const bool ok = f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(html.toUtf8()) >= 0;
        if (done) done(ok);
    });
}

void WebView::print(QPrinter *printer, std::function<void(bool)> done)
{
    if (!view_) {
        if (done) done(false);
        return;
    }
    auto conn = std::make_shared<QMetaObject::Connection>();
    *conn = connect(view_, &QWebEngineView::printFinished, this, [conn, done](bool ok) {
        QObject::disconnect(*conn);
        if (done) done(ok);
    });
    view_->print(printer);
}

QString &printOutputFile()
{
    static QString file;
    return file;
}

bool preparePrinter(QPrinter &printer, bool askUser, QWidget *parent)
{
    if (!printOutputFile().isEmpty()) {
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(printOutputFile());
        return true;
    }
    if (askUser) {
        QPrintDialog dlg(&printer, parent);
        dlg.setOption(QAbstractPrintDialog::PrintToFile, true);
        return dlg.exec() == QDialog::Accepted;
    }
    // The default printer; none set up means nothing to print on.
    return !QPrinterInfo::defaultPrinter().isNull();
}

}  // namespace tw
