#include "web/document_browser.h"

#include "core/globals.h"
#include "core/prompt.h"
#include "web/engine/engine_api.h"
#include "web/text_loading.h"
#include "web/web_view.h"

#include <QDateTime>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QLocale>
#include <QPainter>
#include <QPagedPaintDevice>
#include <QTextBrowser>
#include <QUrl>

namespace tw {

DocumentBrowser::DocumentBrowser(QWidget *parent) : QStackedWidget(parent)
{
    blank_ = new QWidget(this);
    blank_->setAutoFillBackground(true);
    addWidget(blank_);
}

DocumentBrowser::~DocumentBrowser() = default;

void DocumentBrowser::setSilent(bool on)
{
    silent_ = on;
    if (web_) web_->setSilent(on);
}

void DocumentBrowser::showBlank()
{
    surface_ = Surface::Blank;
    setCurrentWidget(blank_);
}

WebView *DocumentBrowser::ensureWeb()
{
    if (!web_) {
        web_ = new WebView(this);
        web_->setObjectName(QStringLiteral("WebBrowser1View"));
        web_->setSilent(silent_);
        addWidget(web_);
        connect(web_, &WebView::navigateComplete, this, [this] { emit documentLoaded(); });
        connect(web_, &WebView::titleChanged, this, [this] { emit documentLoaded(); });
    }
    return web_;
}

void DocumentBrowser::showText(const QString &text)
{
    if (!text_) {
        text_ = new QTextBrowser(this);
        text_->setObjectName(QStringLiteral("WebBrowser1Text"));
        text_->setOpenLinks(false);
        addWidget(text_);
    }
    text_->setPlainText(text);
    surface_ = Surface::Text;
    setCurrentWidget(text_);
}

void DocumentBrowser::navigate(const QString &path)
{
    path_ = path;
    const QString ext = QFileInfo(path).suffix().toUpper();
    if (ext == QLatin1String("PDF")) {
        if (!pdf_) {
            if (const EngineTable *t = engineTable()) {
                pdf_.reset(t->makePdf(this));
                pdf_->widget()->setObjectName(QStringLiteral("WebBrowser1Pdf"));
                addWidget(pdf_->widget());
            }
        }
        // A damaged PDF leaves the surface blank.
        if (pdf_ && pdf_->load(path)) {
            surface_ = Surface::Pdf;
            setCurrentWidget(pdf_->widget());
        } else {
            showBlank();
        }
        emit documentLoaded();
        return;
    }
    if (isWordProcessorExt(ext)) {
        if (officeInstalled()) {
            converted_ = std::make_unique<QTemporaryDir>();
            if (auto html = officeToHtml(path, converted_->path())) {
                surface_ = Surface::Web;
                setCurrentWidget(ensureWeb());
                web_->navigate(QUrl::fromLocalFile(*html));
                return;
            }
        }
        if (auto text = wordText(path)) showText(*text);
        else showBlank();
        emit documentLoaded();
        return;
    }
    surface_ = Surface::Web;
    setCurrentWidget(ensureWeb());
    web_->navigate(QUrl::fromLocalFile(path));
}

QString DocumentBrowser::locationName() const
{
    if (surface_ == Surface::Web && web_ && !web_->title().isEmpty()
        && !web_->title().startsWith(QLatin1String("file://")))
        return web_->title();
    return path_;
}

QString DocumentBrowser::shownText() const
{
    switch (surface_) {
    case Surface::Web:
        return web_ ? web_->pageText() : QString();
    case Surface::Pdf:
        return pdf_ ? pdf_->pageText(0) : QString();
    case Surface::Text:
        return text_ ? text_->toPlainText() : QString();
    case Surface::Blank:
        break;
    }
    return QString();
}

void DocumentBrowser::execCommand(int command, int option)
{
    (void)option;  // the user chooses in the dialog either way
    if (command == 4) savePage();
    else if (command == 6) {
        std::shared_ptr<printing::Job> job = printing::prepare(true, window());
        if (!job) return;
        printOn(*job, [job](bool) {});
    } else if (command == 10) {
        showProperties();
    }
}

void DocumentBrowser::printOn(printing::Job &job, std::function<void(bool)> done)
{
    switch (surface_) {
    case Surface::Web:
        if (web_) {
            web_->print(job.printer(), std::move(done));
            return;
        }
        break;
    case Surface::Pdf:
        if (done) done(printPdf(*pdf_, *job.device()));
        return;
    case Surface::Text:
        text_->print(job.device());
        if (done) done(true);
        return;
    case Surface::Blank:
        break;
    }
    if (done) done(false);
}

void DocumentBrowser::savePage()
{
    // The browser's own dialog, also over an empty surface (which then saves nothing).
    QFileDialog dlg(window(), QStringLiteral("Save As"),
                    path_.isEmpty() ? QString() : QFileInfo(path_).absolutePath());
    dlg.setOption(QFileDialog::DontUseNativeDialog, true);
    dlg.setAcceptMode(QFileDialog::AcceptSave);
    dlg.selectFile(QFileInfo(path_).fileName());
    if (dlg.exec() != QDialog::Accepted || dlg.selectedFiles().isEmpty()) return;
    const QString target = dlg.selectedFiles().constFirst();
    if (path_.isEmpty() || target == path_) return;
    if (surface_ == Surface::Web && web_
        && QFileInfo(path_).suffix().toUpper().startsWith(QLatin1String("HTM"))) {
        web_->saveHtml(target, nullptr);
        return;
    }
    QFile::remove(target);
    QFile::copy(path_, target);
}

void DocumentBrowser::showProperties()
{
    if (path_.isEmpty()) return;
    const QFileInfo fi(path_);
    if (!fi.exists()) return;
    const QLocale loc;
    QString type = fi.suffix().toUpper() + QStringLiteral(" Document");
    QString text = QStringLiteral("Name: ") + locationName() + u'\n' + QStringLiteral("Address: ")
        + QUrl::fromLocalFile(path_).toString() + u'\n' + QStringLiteral("Type: ") + type + u'\n'
        + QStringLiteral("Size: ") + QString::number(fi.size()) + QStringLiteral(" Bytes") + u'\n'
        + QStringLiteral("Modified: ") + loc.toString(fi.lastModified(), QLocale::ShortFormat);
    inform(text, QStringLiteral("Properties"), window());
}

bool printPdf(PdfEngine &doc, QPagedPaintDevice &printer)
{
    if (doc.pageCount() <= 0) return false;
    QPainter p;
    if (!p.begin(&printer)) return false;
    for (int i = 0; i < doc.pageCount(); ++i) {
        if (i > 0) printer.newPage();
        const QRect target = p.viewport();
        QSizeF pt = doc.pagePointSize(i);
        if (pt.isEmpty()) continue;
        const QSize px = pt.scaled(target.size(), Qt::KeepAspectRatio).toSize();
        // Rendered at 150 dots an inch; the renderer leaves the page transparent, so white
        // goes under it.
        const QSize dots = (pt * (150.0 / 72.0)).toSize();
        const QImage page = doc.render(i, dots);
        QImage white(dots, QImage::Format_RGB32);
        white.fill(Qt::white);
        {
            QPainter w(&white);
            w.drawImage(0, 0, page);
        }
        p.drawImage(QRect(target.topLeft(), px), white);
    }
    return p.end();
}

}  // namespace tw
