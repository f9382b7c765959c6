// WebBrowser1 of the document tab: the surface for the documents that need rendering.
// HTML pages in the web engine, PDF through QtPdf, DOC/WPS/WRI through LibreOffice's
// converter into the web engine when it is installed, else their text.
#pragma once

#include "core/printing.h"

#include <QStackedWidget>
#include <QString>
#include <QTemporaryDir>
#include <memory>

class QTextBrowser;
class QPagedPaintDevice;

namespace tw {

class PdfEngine;
class WebView;

class DocumentBrowser : public QStackedWidget {
    Q_OBJECT
    Q_PROPERTY(QString text READ shownText)
public:
    enum class Surface { Blank, Web, Pdf, Text };

    explicit DocumentBrowser(QWidget *parent = nullptr);
    ~DocumentBrowser() override;

    // Opens the local file at Path ("File://" + Path).
    void navigate(const QString &path);
    // The browser's command interface: 4 save as, 6 print, 10 properties; option 0 leaves
    // the choice to the user (a dialog).
    void execCommand(int command, int option);
    void setSilent(bool on);

    QString path() const { return path_; }
    Surface surface() const { return surface_; }
    // The location name: the page's title, else the path.
    QString locationName() const;
    // The text on show (the page's text, the PDF's first page, the extracted text).
    QString shownText() const;
    WebView *webView() const { return web_; }
    PdfEngine *pdfEngine() const { return pdf_.get(); }

    // Prints what is shown; Done runs when it is over. Used by command 6.
    void printOn(printing::Job &job, std::function<void(bool)> done);

signals:
    void documentLoaded();

private:
    void showBlank();
    WebView *ensureWeb();
    void showText(const QString &text);
    void savePage();
    void showProperties();

    QWidget *blank_ = nullptr;
    WebView *web_ = nullptr;
    std::unique_ptr<PdfEngine> pdf_;
    QTextBrowser *text_ = nullptr;
    QString path_;
    Surface surface_ = Surface::Blank;
    bool silent_ = true;
    std::unique_ptr<QTemporaryDir> converted_;
};

// Prints every page of a PDF, each composited onto white, scaled to the page.
bool printPdf(PdfEngine &doc, QPagedPaintDevice &printer);

}  // namespace tw
