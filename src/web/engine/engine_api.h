// The web engine and the PDF renderer live in a module of their own (libtw_webengine.so),
// loaded the first time a page or a PDF is shown, so that start-up neither loads nor
// relocates QtWebEngine and QtPdf. These are the only types that cross into it.
#pragma once

#include <QImage>
#include <QSize>
#include <QSizeF>
#include <QString>
#include <QUrl>
#include <functional>

class QPrinter;
class QWidget;

namespace tw {

// A browser view. Its widget is a child of the parent given at its making; deleting the
// engine deletes the widget. The owner's callbacks are never called while it goes.
class BrowserEngine {
public:
    virtual ~BrowserEngine() = default;
    virtual QWidget *widget() = 0;
    virtual void load(const QUrl &url) = 0;
    virtual void back() = 0;
    virtual void forward() = 0;
    virtual void stop() = 0;
    virtual void reload() = 0;
    virtual QUrl url() const = 0;
    virtual QString title() const = 0;  // the engine's (the address for a page without one)
    virtual void toPlainText(std::function<void(const QString &)> done) = 0;
    virtual void toHtml(std::function<void(const QString &)> done) = 0;
    virtual void documentTitle(std::function<void(const QString &)> done) = 0;
    virtual void print(QPrinter *printer, std::function<void(bool)> done) = 0;

    // Set by the owner.
    std::function<bool()> silent;  // script dialogs passed over while true
    std::function<void()> onLoadStarted;
    std::function<void(bool ok)> onLoadFinished;
    std::function<void()> onTitleChanged;
    std::function<void(const QString &)> onLinkHovered;
};

// A PDF document and its view.
class PdfEngine {
public:
    virtual ~PdfEngine() = default;
    virtual QWidget *widget() = 0;
    // Opens the file and shows its first page; false when it cannot be read.
    virtual bool load(const QString &path) = 0;
    virtual void close() = 0;
    virtual int pageCount() const = 0;
    virtual QString pageText(int page) const = 0;
    virtual QSizeF pagePointSize(int page) const = 0;
    // The page at that size; transparent where the page has no ink.
    virtual QImage render(int page, QSize size) = 0;
};

struct EngineTable {
    int version;
    BrowserEngine *(*makeBrowser)(QWidget *parent);
    PdfEngine *(*makePdf)(QWidget *parent);
};

constexpr int EngineTableVersion = 1;
constexpr const char *EngineTableSymbol = "tw_web_engine_table";

// The module's table, the module loaded on the first call; null when it is not there. A call
// while the module is being loaded on another thread waits for that load.
const EngineTable *engineTable();
// Whether the module's load has been done (or tried).
bool engineTableLoaded();
// Loads the module off the window's thread, so that the first page or PDF does not wait for
// it; the engines themselves are still made on first use.
void preloadEngineTable();

}  // namespace tw
