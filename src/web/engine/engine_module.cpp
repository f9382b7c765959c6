// The module's side: QtWebEngine and QtPdf behind the engine table.
#include "web/engine/engine_api.h"

#include <QPdfDocument>
#include <QPdfPageNavigator>
#include <QPdfSelection>
#include <QPdfView>
#include <QPrinter>
#include <QVariant>
#include <QWebEnginePage>
#include <QWebEngineView>

namespace tw {

namespace {

class SilentPage : public QWebEnginePage {
public:
    SilentPage(BrowserEngine *owner, QObject *parent) : QWebEnginePage(parent), owner_(owner) {}

protected:
    bool quiet() const { return owner_->silent && owner_->silent(); }
    void javaScriptAlert(const QUrl &origin, const QString &msg) override
    {
        if (!quiet()) QWebEnginePage::javaScriptAlert(origin, msg);
    }
    bool javaScriptConfirm(const QUrl &origin, const QString &msg) override
    {
        return quiet() ? false : QWebEnginePage::javaScriptConfirm(origin, msg);
    }
    bool javaScriptPrompt(const QUrl &origin, const QString &msg, const QString &def,
                          QString *result) override
    {
        return quiet() ? false : QWebEnginePage::javaScriptPrompt(origin, msg, def, result);
    }
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString &, int,
                                  const QString &) override
    {}

private:
    BrowserEngine *owner_;
};

class WebEngineBrowser : public BrowserEngine {
public:
    explicit WebEngineBrowser(QWidget *parent)
    {
        view_ = new QWebEngineView(parent);
        view_->setPage(new SilentPage(this, view_));
        QObject::connect(view_, &QWebEngineView::loadStarted, view_, [this] {
            if (!dying_ && onLoadStarted) onLoadStarted();
        });
        QObject::connect(view_, &QWebEngineView::loadFinished, view_, [this](bool ok) {
            if (!dying_ && onLoadFinished) onLoadFinished(ok);
        });
        QObject::connect(view_, &QWebEngineView::titleChanged, view_, [this] {
            if (!dying_ && onTitleChanged) onTitleChanged();
        });
        QObject::connect(view_->page(), &QWebEnginePage::linkHovered, view_, [this](const QString &u) {
            if (!dying_ && onLinkHovered) onLinkHovered(u);
        });
        QObject::connect(view_, &QWebEngineView::printFinished, view_, [this](bool ok) {
            auto done = std::move(printDone_);
            printDone_ = nullptr;
            if (!dying_ && done) done(ok);
        });
    }
    ~WebEngineBrowser() override
    {
        // The page answers its pending calls while it goes: nobody hears them now.
        dying_ = true;
        delete view_;
    }
    QWidget *widget() override { return view_; }
    void load(const QUrl &url) override { view_->load(url); }
    void back() override { view_->back(); }
    void forward() override { view_->forward(); }
    void stop() override { view_->stop(); }
    void reload() override { view_->reload(); }
    QUrl url() const override { return view_->url(); }
    QString title() const override { return view_->title(); }
    void toPlainText(std::function<void(const QString &)> done) override
    {
        view_->page()->toPlainText([this, done](const QString &t) {
            if (!dying_) done(t);
        });
    }
    void toHtml(std::function<void(const QString &)> done) override
    {
        view_->page()->toHtml([this, done](const QString &t) {
            if (!dying_) done(t);
        });
    }
    void documentTitle(std::function<void(const QString &)> done) override
    {
        view_->page()->runJavaScript(QStringLiteral("document.title"), [this, done](const QVariant &v) {
            if (!dying_) done(v.toString());
        });
    }
    void print(QPrinter *printer, std::function<void(bool)> done) override
    {
        printDone_ = std::move(done);
        view_->print(printer);
    }

private:
    QWebEngineView *view_ = nullptr;
    std::function<void(bool)> printDone_;
    bool dying_ = false;
};

class QtPdf : public PdfEngine {
public:
    explicit QtPdf(QWidget *parent)
    {
        view_ = new QPdfView(parent);
        doc_ = new QPdfDocument;
        view_->setDocument(doc_);
        view_->setPageMode(QPdfView::PageMode::MultiPage);
        view_->setZoomMode(QPdfView::ZoomMode::FitToWidth);
    }
    ~QtPdf() override
    {
        // The document goes first, away from its view, so that it reports to nobody.
        view_->setDocument(nullptr);
        delete doc_;
        delete view_;
    }
    QWidget *widget() override { return view_; }
    bool load(const QString &path) override
    {
        doc_->close();
        if (doc_->load(path) != QPdfDocument::Error::None || doc_->pageCount() <= 0) {
            doc_->close();
            return false;
        }
        view_->pageNavigator()->jump(0, {}, 0);
        return true;
    }
    void close() override { doc_->close(); }
    int pageCount() const override { return doc_->pageCount(); }
    QString pageText(int page) const override { return doc_->getAllText(page).text(); }
    QSizeF pagePointSize(int page) const override { return doc_->pagePointSize(page); }
    QImage render(int page, QSize size) override { return doc_->render(page, size); }

private:
    QPdfView *view_ = nullptr;
    QPdfDocument *doc_ = nullptr;
};

BrowserEngine *makeBrowser(QWidget *parent) { return new WebEngineBrowser(parent); }
PdfEngine *makePdf(QWidget *parent) { return new QtPdf(parent); }

const EngineTable table{EngineTableVersion, &makeBrowser, &makePdf};

}  // namespace

}  // namespace tw

extern "C" __attribute__((visibility("default"))) const tw::EngineTable *tw_web_engine_table()
{
    return &tw::table;
}
