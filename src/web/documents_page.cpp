#include "web/documents_page.h"

#include "core/busy.h"
#include "core/catalogue.h"
#include "core/context_help.h"
#include "core/globals.h"
#include "core/printing.h"
#include "core/loaders.h"
#include "core/looks.h"
#include "core/prompt.h"
#include "core/scenario_hooks.h"
#include "core/tool_ids.h"
#include "core/tool_manager.h"
#include "web/document_browser.h"
#include "web/document_text.h"
#include "web/plain_text_reader.h"
#include "web/plain_text_view.h"
#include "web/text_loading.h"
#include "web/web_view.h"

#include <QDateTime>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QMainWindow>
#include <QProgressDialog>
#include <QTemporaryDir>
#include <QTimer>
#include <QVBoxLayout>
#include <thread>

namespace tw {

DocumentsPage::DocumentsPage(PageHost &host) : TabPage(host, 6) {}

DocumentsPage::~DocumentsPage() = default;

void DocumentsPage::reset()
{
    if (Text1) Text1->hide();
    if (WebBrowser1) {
        WebBrowser1->hide();
        WebBrowser1->setSilent(true);
    }
}

void DocumentsPage::entering()
{
    host_.tools().setToolbarVisible(5, true);
    // The View menu's check mark follows the selected document.
    if (List6 && List6->currentRow() >= 0) host_.tools().press(List6->currentItem()->text());
}

QString DocumentsPage::tabTitle() const
{
    return (Text1 && Text1->isVisible() ? Text1Document : WebBrowser1Document) + QStringLiteral(" - ")
        + AppTitle;
}

QStringList DocumentsPage::handledTools() const
{
    return {tool::mnuCopy, tool::TxtPrint, tool::TxtSave, tool::TxtProperties};
}

bool DocumentsPage::toolClick(const QString &id)
{
    if (id == tool::TxtPrint) PrintDocument();
    else if (id == tool::TxtSave) SaveDocument();
    else if (id == tool::TxtProperties) ShowDocumentProperties();
    else if (id == tool::mnuCopy) {
        if (!built()) return false;
        // The text half of Copy: the whole text of the document on show.
        if (host_.selectedTab() != 6 || !Text1->isVisible() || Text1->toPlainText().isEmpty()) return false;
        Text1->selectAll();
        Text1->copy();
    } else {
        return false;
    }
    return true;
}

void DocumentsPage::applyColors()
{
    if (!built()) return;
    const ColorSettings &c = G.Colors;
    paintWidget(Text6, c.DocumentBack, c.DocumentText);
    paintWidget(Text1, c.DocumentBack, c.DocumentText);
    paintWidget(List6, c.ListBack, c.ListText);
}

void DocumentsPage::addLoaders(FileLoaders &loaders)
{
    loaders.set(LoaderKind::Document, [this](const QString &path) { LoadDocument(path); });
    loaders.set(LoaderKind::Text, [this](const QString &path) { LoadText(path); });
}

bool DocumentsPage::variableText(const QString &name, QString *out) const
{
    if (name == QLatin1String("Text1Font")) {
        *out = Text1 ? Text1->font().family() + u' ' + QString::number(Text1->font().pointSize()) : QString();
    } else if (name == QLatin1String("Text1ReadOnly")) {
        *out = Text1 && Text1->isReadOnly() ? QStringLiteral("true") : QStringLiteral("false");
    } else if (name == QLatin1String("Text1Document")) {
        *out = Text1Document;
    } else if (name == QLatin1String("WebBrowser1Document")) {
        *out = WebBrowser1Document;
    } else if (name == QLatin1String("DocumentSurface")) {
        static const char *names[] = {"Blank", "Web", "Pdf", "Text"};
        *out =
            WebBrowser1 ? QString::fromLatin1(names[int(WebBrowser1->surface())]) : QStringLiteral("Blank");
    } else {
        return false;
    }
    return true;
}

void DocumentsPage::build(QWidget *panel)
{
    // A converter that takes long shows its progress over the main window.
    setConverterProgressWindow(host_.window());
    setHelpTopic(panel, QStringLiteral("documents"));
    auto *p6 = new QVBoxLayout(panel);
    Text6 = new QLabel(panel);
    Text6->setObjectName(QStringLiteral("Text6"));
    Text6->setAutoFillBackground(true);
    setHelpTopic(Text6, QStringLiteral("documents"));
    p6->addWidget(Text6);
    // The two surfaces share one cell; the loaders show one and hide the other.
    auto *cell = new QGridLayout;
    Text1 = new DocumentText(panel);
    Text1->setObjectName(QStringLiteral("Text1"));
    Text1->setReadOnly(true);
    Text1->hide();
    cell->addWidget(Text1, 0, 0);
    WebBrowser1 = new DocumentBrowser(panel);
    WebBrowser1->setObjectName(QStringLiteral("WebBrowser1"));
    WebBrowser1->hide();
    cell->addWidget(WebBrowser1, 0, 0);
    p6->addLayout(cell, 1);
    List6 = new QListWidget(panel);
    List6->setObjectName(QStringLiteral("List6"));
    List6->hide();
    QObject::connect(WebBrowser1, &DocumentBrowser::documentLoaded, WebBrowser1, [this] {
        WebBrowser1Document = WebBrowser1->locationName();
        if (host_.selectedTab() == 6 && WebBrowser1->isVisible()) host_.setTitle(tabTitle());
    });
}

// ---------------------------------------------------------------- loaders

void DocumentsPage::LoadDocument(const QString &path)
{
    ensureBuilt();
    showHourglass();
    Text1->hide();
    WebBrowser1->show();
    WebBrowser1->setSilent(true);
    WebBrowser1Document = path;
    // The browser loads on its own; the hourglass goes before the page has arrived.
    WebBrowser1->navigate(path);
    hideHourglass();
}

void DocumentsPage::LoadText(const QString &path)
{
    ensureBuilt();
    WebBrowser1->hide();
    if (G.CurrentExt != QLatin1String("RTF") && isWordProcessorExt(G.CurrentExt)
        && !G.Options.DocumentsAsSource) {
        // A Write (or Word) file in the text box: rendered by LibreOffice when it is there,
        // else its text through the extractors; its raw bytes would show as noise.
        Text1->show();
        Text1->setReadOnly(false);
        Text1->setFont(QFont(QStringLiteral("MS Sans Serif"), 8));
        QTemporaryDir out;
        std::optional<QString> html;
        if (officeInstalled()) {
            if (auto file = officeToHtml(path, out.path())) {
                QFile f(*file);
                if (f.open(QIODevice::ReadOnly)) html = QString::fromUtf8(f.readAll());
            }
        }
        if (html) {
            Text1->setHtml(*html);
        } else if (auto text = wordText(path)) {
            Text1->setPlainText(*text);
        } else {
            return;
        }
        Text1->setReadOnly(true);
    } else if (G.CurrentExt != QLatin1String("RTF")) {
        Text1->show();
        Text1->setReadOnly(false);
        Text1->setFont(QFont(QStringLiteral("MS Sans Serif"), 8));
        std::optional<PlainText> text = readPlainText(path);
        // A failed read ends here: the former contents stay.
        if (!text) return;
        Text1->setContent(std::move(*text));
        Text1->setReadOnly(true);
    } else {
        Text1->show();
        WebBrowser1->hide();
        Text1->setReadOnly(false);
        // The converter keeps the file's own fonts, sizes, styles and colours.
        const auto html = rtfToHtml(path);
        if (!html) return;
        Text1->setHtml(*html);
        Text1->setReadOnly(true);
    }
    Text1Document = path;
}

std::optional<PlainText> DocumentsPage::readPlainText(const QString &path)
{
    auto job = std::make_shared<PlainTextJob>(path);
    QEventLoop loop;
    job->onFinished = [&loop] { QMetaObject::invokeMethod(&loop, "quit", Qt::QueuedConnection); };
    std::thread worker([job] { job->run(); });
    {
        BusyScope busy;
        QProgressDialog progress(QStringLiteral("Loading Document - ") + path, QStringLiteral("Cancel"), 0,
                                 1000, host_.window());
        progress.setObjectName(QStringLiteral("DocumentProgress"));
        progress.setWindowTitle(AppTitle);
        progress.setWindowModality(Qt::WindowModal);
        progress.setMinimumDuration(400);
        progress.setAutoReset(false);
        progress.setAutoClose(false);
        QObject::connect(&progress, &QProgressDialog::canceled, [job] { job->cancel = true; });
        QTimer tick;
        QObject::connect(&tick, &QTimer::timeout, [&] {
            const qint64 total = job->total.load();
            if (total > 0) progress.setValue(int(job->done.load() * 1000 / total));
        });
        tick.start(100);
        if (!job->finished.load()) loop.exec();
    }
    worker.join();
    return job->takeText();
}

// ---------------------------------------------------------------- commands

QString DocumentsPage::selectedDocument() const
{
    if (!List6 || List6->count() == 0 || List6->currentRow() < 0) return QString();
    return List6->currentItem()->text();
}

void DocumentsPage::SaveDocument()
{
    const QString path = selectedDocument();
    if (path.isEmpty()) return;
    if (IsViewerDocumentExt(GetFileExt(path), false)) {
        WebBrowser1->execCommand(4, 0);
    } else if (PictureSide *pictures = host_.pictures()) {
        pictures->SaveFileAs(path);
    }
}

void DocumentsPage::PrintDocument()
{
    const QString path = selectedDocument();
    if (path.isEmpty()) return;
    if (IsViewerDocumentExt(GetFileExt(path), false)) {
        WebBrowser1->setFocus();
        WebBrowser1->execCommand(6, 0);
        return;
    }
    // The default printer, no dialog: Text1 prints all it holds.
    const auto job = printing::prepare(false, host_.window());
    if (!job) return;
    Text1->print(job->device());
}

void DocumentsPage::ShowDocumentProperties()
{
    const QString path = selectedDocument();
    if (path.isEmpty()) return;
    if (IsViewerDocumentExt(GetFileExt(path), false)) {
        WebBrowser1->execCommand(10, 0);
        return;
    }
    const QFileInfo fi(path);
    // A file that has gone ends the routine without a message.
    if (!fi.exists()) return;
    const QLocale loc = QLocale::system();
    auto when = [&loc](const QDateTime &t) { return loc.toString(t, QLocale::ShortFormat); };
    QDateTime created = fi.birthTime();
    if (!created.isValid()) created = fi.metadataChangeTime();
    const QString lf = QStringLiteral("\n");
    const QString text = QStringLiteral("File: ") + path + lf + lf + QStringLiteral("Size: ")
        + QString::number(fi.size()) + QStringLiteral(" Bytes ") + lf + QStringLiteral("Date Created: ")
        + when(created) + lf + QStringLiteral("Date Last Accessed: ") + when(fi.lastRead()) + lf
        + QStringLiteral("Date Last Modified: ") + when(fi.lastModified()) + lf;
    inform(text, AppTitle, host_.window());
}

TW_REGISTER_PAGE(6, DocumentsPage);

}  // namespace tw
