#include "web/web_view.h"

#include "web/engine/engine_api.h"

#include <QFile>
#include <QPointer>
#include <QVBoxLayout>

namespace tw {

WebView::WebView(QWidget *parent) : QWidget(parent)
{
    auto *lay = new QVBoxLayout(this);
    lay->setContentsMargins(0, 0, 0, 0);
}

WebView::~WebView()
{
    dying_ = true;
    engine_.reset();
}

BrowserEngine *WebView::engine()
{
    if (engine_) return engine_.get();
    const EngineTable *t = engineTable();
    if (!t) return nullptr;
    engine_.reset(t->makeBrowser(this));
    layout()->addWidget(engine_->widget());
    engine_->silent = [this] { return silent_; };
    engine_->onLoadStarted = [this] {
        loading_ = true;
        emit beforeNavigate(address());
    };
    engine_->onLoadFinished = [this](bool ok) {
        loading_ = false;
        emit loadFinished(ok);
        const QString at = address();
        QPointer<WebView> self(this);
        engine_->toPlainText([self, at, ok](const QString &t) {
            if (!self || self->dying_) return;
            self->text_ = t;
            emit self->navigateComplete(at, ok);
        });
    };
    // The engine puts the address in place of a missing title: the document's own title counts.
    engine_->onTitleChanged = [this] {
        QPointer<WebView> self(this);
        engine_->documentTitle([self](const QString &t) {
            if (!self || self->dying_ || t == self->docTitle_) return;
            self->docTitle_ = t;
            emit self->titleChanged(t);
        });
    };
    engine_->onLinkHovered = [this](const QString &u) { emit statusTextChanged(u); };
    return engine_.get();
}

void WebView::navigate(const QUrl &url)
{
    if (!url.isValid() || url.isEmpty()) return;
    text_.clear();
    docTitle_.clear();
    if (BrowserEngine *e = engine()) e->load(url);
}

void WebView::back()
{
    if (engine_) engine_->back();
}
void WebView::forward()
{
    if (engine_) engine_->forward();
}
void WebView::home() { navigate(homeUrl()); }
void WebView::stop()
{
    if (engine_) engine_->stop();
    loading_ = false;
}
void WebView::refresh()
{
    if (engine_) engine_->reload();
}
QUrl WebView::url() const { return engine_ ? engine_->url() : QUrl(); }
QString WebView::address() const { return url().toString(); }
QString WebView::title() const { return engine_ ? engine_->title() : QString(); }

void WebView::saveHtml(const QString &path, std::function<void(bool)> done)
{
    if (!engine_) {
        if (done) done(false);
        return;
    }
    QPointer<WebView> self(this);
    engine_->toHtml([self, path, done](const QString &html) {
        if (!self || self->dying_) return;
        QFile f(path);
        const bool ok = f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(html.toUtf8()) >= 0;
        if (done) done(ok);
    });
}

void WebView::print(QPrinter *printer, std::function<void(bool)> done)
{
    if (!engine_) {
        if (done) done(false);
        return;
    }
    engine_->print(printer, std::move(done));
}

}  // namespace tw
