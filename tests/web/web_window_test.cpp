// The document and Internet tabs inside the main window: printing (to a PDF file, read back
// with poppler's tools), the fonts of an RTF, a long text's progress and stop, a server that
// never answers.
#include "app/tarnwick1.h"
#include "common/main_window_fixture.h"
#include "core/colors.h"
#include "core/globals.h"
#include "core/tool_ids.h"
#include "pictures/pictures_module.h"
#include "web/document_browser.h"
#include "web/engine/engine_api.h"
#include "web/get_url.h"
#include "web/document_text.h"
#include "web/documents_page.h"
#include "web/plain_text_reader.h"
#include "web/plain_text_view.h"
#include "web/internet_page.h"
#include "web/text_loading.h"
#include "web/web_view.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QHostAddress>
#include <QProcess>
#include <QProgressDialog>
#include <QPushButton>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>
#include <QTimer>
#include <QComboBox>
#include <QElapsedTimer>
#include <QPrinter>
#include <QImage>
#include <QRegularExpression>
#include <clocale>

using namespace tw;

namespace {

QString runTool(const char *cmd, const QStringList &args)
{
    QProcess p;
    p.start(QString::fromLatin1(cmd), args);
    p.waitForFinished(30000);
    return QString::fromUtf8(p.readAllStandardOutput());
}

void writeAll(const QString &path, const QByteArray &bytes)
{
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write(bytes);
}

// A server on 127.0.0.1: /page.htm answers, /never.htm accepts and never answers.
class StallServer : public QTcpServer {
public:
    StallServer()
    {
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket *s = nextPendingConnection())
                connect(s, &QTcpSocket::readyRead, s, [s] {
                    const QByteArray path = s->readAll().split(' ').value(1);
                    if (path != "/page.htm" && path != "/untitled.htm") return;  // held open
                    const QByteArray body = path == "/page.htm"
                        ? "<html><head><title>Served</title></head><body>Served page</body></html>"
                        : "<html><body>No title</body></html>";
                    s->write("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: "
                             + QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body);
                    s->flush();
                    s->disconnectFromHost();
                });
        });
        listen(QHostAddress::LocalHost, 0);
    }
    QString url(const char *path) const
    {
        return QStringLiteral("http://127.0.0.1:%1%2").arg(serverPort()).arg(QLatin1String(path));
    }
};

}  // namespace

class WebWindowTest : public QObject {
    Q_OBJECT
    Tarnwick1 *w = nullptr;
    QTemporaryDir dir;
    DocumentsPage *docs() { return dynamic_cast<DocumentsPage *>(w->page(6)); }
    InternetPage *web() { return dynamic_cast<InternetPage *>(w->page(7)); }
    QString file(const char *name) const { return dir.path() + u'/' + QLatin1String(name); }

private slots:
    void initTestCase()
    {
        setlocale(LC_NUMERIC, "C");
        w = twtest::startMainWindow();
        QVERIFY(docs() && web());
    }
    void cleanupTestCase()
    {
        printOutputFile().clear();
        delete w;
    }

    void startUpMakesNoWebEngine()
    {
        // Start-up pays nothing for the engine: it is made on first use.
        QVERIFY(!web()->built() || !web()->browser()->engineMade());
        // Nor is the engine module loaded at start-up.
        auto moduleMapped = [] {
            QFile maps(QStringLiteral("/proc/self/maps"));
            return maps.open(QIODevice::ReadOnly) && maps.readAll().contains("libtw_webengine.so");
        };
        QVERIFY(!engineTableLoaded());
        QVERIFY(!moduleMapped());
        // Entering the Internet tab loads the module in the background, while the address is
        // typed; the engine itself waits for the first page.
        const int before = w->selectedTab();
        w->selectTab(7);
        QTRY_VERIFY_WITH_TIMEOUT(engineTableLoaded(), 10000);
        QVERIFY(moduleMapped());
        QVERIFY(engineTable() != nullptr);
        QVERIFY(!web()->browser()->engineMade());
        w->selectTab(before);
    }

    void textPrintsAllItHolds()
    {
        writeAll(file("a.txt"), "Alpha words\r\nBravo words\r\n");
        w->DisplayFile(file("a.txt"));
        printOutputFile() = file("out1.pdf");
        w->OnToolClick(tool::TxtPrint);
        QVERIFY(QFile::exists(file("out1.pdf")));
        const QString text = runTool("pdftotext", {file("out1.pdf"), QStringLiteral("-")});
        QVERIFY2(text.contains(QLatin1String("Alpha words")) && text.contains(QLatin1String("Bravo words")),
                 qPrintable(text));
    }

    void pdfPrintsWhatText1LastHeld()
    {
        // PDF is outside the browser's set of seven: the print goes to Text1's contents.
        QFile::copy(QStringLiteral(TW_FIXTURES "/web/hello.pdf"), file("h.pdf"));
        w->DisplayFile(file("h.pdf"));
        QCOMPARE(docs()->WebBrowser1->surface(), DocumentBrowser::Surface::Pdf);
        printOutputFile() = file("out2.pdf");
        w->OnToolClick(tool::TxtPrint);
        const QString text = runTool("pdftotext", {file("out2.pdf"), QStringLiteral("-")});
        QVERIFY2(text.contains(QLatin1String("Alpha words")), qPrintable(text));
    }

    void pdfDocumentPrintsItsPagesOnWhite()
    {
        QFile::copy(QStringLiteral(TW_FIXTURES "/web/hello.pdf"), file("h2.pdf"));
        w->DisplayFile(file("h2.pdf"));
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(file("out3.pdf"));
        QVERIFY(printPdf(*docs()->WebBrowser1->pdfEngine(), printer));
        QVERIFY(runTool("pdfinfo", {file("out3.pdf")})
                    .contains(QRegularExpression(QStringLiteral("Pages:\\s+2"))));
        // The page is white under the rendered text, not transparent black.
        const QString png = file("page");
        runTool("pdftoppm",
                {QStringLiteral("-r"), QStringLiteral("20"), QStringLiteral("-png"), QStringLiteral("-f"),
                 QStringLiteral("1"), QStringLiteral("-l"), QStringLiteral("1"), file("out3.pdf"), png});
        QImage img(png + QStringLiteral("-1.png"));
        QVERIFY(!img.isNull());
        QCOMPARE(QColor(img.pixel(img.width() / 2, img.height() - 3)), QColor(Qt::white));
    }

    void htmlPrintsThroughTheBrowser()
    {
        writeAll(file("p.htm"), "<html><body><h1>Printed heading</h1></body></html>");
        w->DisplayFile(file("p.htm"));
        QTRY_VERIFY_WITH_TIMEOUT(docs()->WebBrowser1->shownText().contains(QLatin1String("Printed heading")),
                                 10000);
        printOutputFile() = file("out4.pdf");
        w->OnToolClick(tool::TxtPrint);
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(file("out4.pdf")).size() > 0, 10000);
        QTRY_VERIFY_WITH_TIMEOUT(runTool("pdfinfo", {file("out4.pdf")})
                                     .contains(QRegularExpression(QStringLiteral("Pages:\\s+1"))),
                                 10000);
        printOutputFile().clear();
    }

    void plainTextShowsInTheDocumentColoursAndFont()
    {
        writeAll(file("c.txt"), "coloured\r\n");
        w->DisplayFile(file("c.txt"));
        PlainTextView *v = docs()->Text1->plainView();
        QVERIFY(v->isVisible());
        QCOMPARE(v->font().family(), QStringLiteral("MS Sans Serif"));
        QCOMPARE(v->font().pointSize(), 8);
        const QColor back = toQColor(G.Colors.DocumentBack), text = toQColor(G.Colors.DocumentText);
        QCOMPARE(v->palette().color(QPalette::Base), back);
        QCOMPARE(v->palette().color(QPalette::Text), text);
        // What is painted: the background below the text, and the text's colour in its row
        // (near it: the glyphs are smoothed).
        const QImage img = v->viewport()->grab().toImage();
        QCOMPARE(QColor(img.pixel(img.width() - 2, img.height() - 2)), back);
        bool sawText = false;
        const int rowHeight = v->fontMetrics().lineSpacing();
        for (int y = 4; y < 4 + rowHeight && !sawText; ++y)
            for (int x = 4; x < 80 && !sawText; ++x) {
                const QColor c(img.pixel(x, y));
                sawText = std::abs(c.red() - text.red()) + std::abs(c.green() - text.green())
                        + std::abs(c.blue() - text.blue())
                    < 120;
            }
        QVERIFY(sawText);
    }

    void rtfKeepsItsFontsSizesStylesAndColours()
    {
        QFile::copy(QStringLiteral(TW_FIXTURES "/web/styled.rtf"), file("s.rtf"));
        w->DisplayFile(file("s.rtf"));
        QTextDocument *doc = docs()->Text1->richText()->document();
        auto formatAt = [doc](const QString &word) {
            QTextCursor c = doc->find(word);
            return c.charFormat();
        };
        QVERIFY(formatAt(QStringLiteral("Big"))
                    .fontFamilies()
                    .toStringList()
                    .contains(QStringLiteral("Courier New")));
        QCOMPARE(formatAt(QStringLiteral("Big")).fontPointSize(), 20.0);
        QCOMPARE(formatAt(QStringLiteral("bold")).fontWeight(), int(QFont::Bold));
        QCOMPARE(formatAt(QStringLiteral("red")).foreground().color(), QColor(255, 0, 0));
        QVERIFY(formatAt(QStringLiteral("italic")).fontItalic());
        QVERIFY(formatAt(QStringLiteral("small"))
                    .fontFamilies()
                    .toStringList()
                    .contains(QStringLiteral("Arial")));
        QVERIFY(docs()->Text1->isReadOnly());
    }

    void longTextShowsProgressAndCanBeStopped()
    {
        writeAll(file("small.txt"), "kept text");
        w->DisplayFile(file("small.txt"));
        QCOMPARE(docs()->Text1->toPlainText(), QStringLiteral("kept text"));
        {
            QFile f(file("big.txt"));
            QVERIFY(f.open(QIODevice::WriteOnly));
            const QByteArray line = QByteArray(70, 'x') + "\r\n";
            QByteArray block;
            for (int i = 0; i < 8192; ++i) block += line;
            for (int i = 0; i < 60; ++i) f.write(block);  // about 35 MB
        }
        bool sawProgress = false;
        QTimer poll;
        connect(&poll, &QTimer::timeout, [&] {
            auto *p = qobject_cast<QProgressDialog *>(QApplication::activeModalWidget());
            if (!p) return;
            sawProgress = true;
            if (auto *b = p->findChild<QPushButton *>()) b->click();
        });
        poll.start(50);
        QElapsedTimer t;
        t.start();
        // The reader is quick: a pause after each piece makes the read long enough to stop.
        PlainTextJob::pieceDelayMs = 150;
        w->DisplayFile(file("big.txt"));
        PlainTextJob::pieceDelayMs = 0;
        poll.stop();
        QVERIFY(sawProgress);
        QVERIFY2(t.elapsed() < 8000, qPrintable(QString::number(t.elapsed())));
        // Stopped: the former contents stay.
        QCOMPARE(docs()->Text1->toPlainText(), QStringLiteral("kept text"));
        QFile::remove(file("big.txt"));
    }

    void slowConverterShowsProgressAndCanBeStopped()
    {
        // A converter that never finishes: its box shows and Cancel ends the wait.
        const QString bin = dir.path() + QStringLiteral("/bin");
        QDir().mkpath(bin);
        writeAll(bin + QStringLiteral("/slowconv"),
                 ("#!/bin/sh\nsleep 60 &\necho $! > " + file("child.pid").toLocal8Bit() + "\nwait\n"));
        QFile::setPermissions(bin + QStringLiteral("/slowconv"),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        const QByteArray oldPath = qgetenv("PATH");
        qputenv("PATH", bin.toLocal8Bit() + ':' + oldPath);
        bool sawProgress = false;
        QTimer poll;
        connect(&poll, &QTimer::timeout, [&] {
            auto *p = qobject_cast<QProgressDialog *>(QApplication::activeModalWidget());
            if (!p) return;
            sawProgress = true;
            if (auto *b = p->findChild<QPushButton *>()) b->click();
        });
        poll.start(50);
        QElapsedTimer t;
        t.start();
        const auto out = runConverter(QStringLiteral("slowconv"), {QStringLiteral("x.doc")}, 60000);
        poll.stop();
        qputenv("PATH", oldPath);
        QVERIFY(!out.has_value());
        QVERIFY(sawProgress);
        QVERIFY2(t.elapsed() < 5000, qPrintable(QString::number(t.elapsed())));
        // What the converter started is stopped with it.
        QFile pidFile(file("child.pid"));
        QVERIFY(pidFile.open(QIODevice::ReadOnly));
        const QByteArray child = pidFile.readAll().trimmed();
        QVERIFY(!child.isEmpty());
        QTRY_VERIFY_WITH_TIMEOUT(
            [&] {
                QFile stat(QStringLiteral("/proc/") + QString::fromLatin1(child) + QStringLiteral("/stat"));
                if (!stat.open(QIODevice::ReadOnly)) return true;  // gone
                const QByteArray s = stat.readAll();
                return s.mid(s.lastIndexOf(')') + 2, 1) == "Z";  // dead, waiting to be reaped
            }(),
            3000);
    }

    void wordDocumentsRenderThroughTheOfficeConverterWhenInstalled()
    {
        // An "soffice" on the path that converts as LibreOffice's headless converter does:
        // the HTML it writes into the output folder is what the document tab shows.
        const QString bin = dir.path() + QStringLiteral("/office");
        QDir().mkpath(bin);
        writeAll(bin + QStringLiteral("/soffice"),
                 "#!/bin/sh\n"
                 "[ \"$1 $2 $3 $4\" = \"--headless --convert-to html --outdir\" ] || exit 3\n"
                 "name=$(basename \"$6\"); printf '<html><body><b>Rendered</b> %s</body></html>' \"$name\" "
                 "> \"$5/${name%.*}.html\"\n");
        QFile::setPermissions(bin + QStringLiteral("/soffice"),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        const QByteArray oldPath = qgetenv("PATH");
        qputenv("PATH", bin.toLocal8Bit() + ':' + oldPath);
        writeAll(file("letter.wps"), "not really works");
        writeAll(file("note.wri"), "not really write");
        w->DisplayFile(file("letter.wps"));
        QCOMPARE(docs()->WebBrowser1->surface(), DocumentBrowser::Surface::Web);
        QTRY_COMPARE_WITH_TIMEOUT(docs()->WebBrowser1->shownText(), QStringLiteral("Rendered letter.wps"),
                                  10000);
        QVERIFY(docs()->WebBrowser1->isVisible());
        QVERIFY(!docs()->Text1->isVisible());
        // A Write file goes to the text box, rendered there.
        w->DisplayFile(file("note.wri"));
        qputenv("PATH", oldPath);
        QVERIFY(docs()->Text1->isVisible());
        QCOMPARE(docs()->Text1->toPlainText(), QStringLiteral("Rendered note.wri"));
        QVERIFY(docs()->Text1->richText()->document()->toHtml().contains(QLatin1String("font-weight")));
    }

    void stalledServerCanBeStopped()
    {
        StallServer server;
        w->selectTab(7);
        WebView *b = web()->browser();
        b->navigate(QUrl(server.url("/never.htm")));
        QTRY_VERIFY_WITH_TIMEOUT(b->loading(), 5000);
        QTest::qWait(300);
        QVERIFY(b->loading());
        w->OnToolClick(tool::IntStop);
        QVERIFY(!b->loading());
        // The program goes on: the next page loads.
        b->navigate(QUrl(server.url("/page.htm")));
        QTRY_COMPARE_WITH_TIMEOUT(b->pageText(), QStringLiteral("Served page"), 10000);
        QTRY_COMPARE_WITH_TIMEOUT(w->title(), QStringLiteral("Served"), 5000);
        QCOMPARE(web()->addressBox()->findText(server.url("/page.htm")) >= 0, true);
    }

    void remoteListOpensThroughTheDispatcherWithTheLoadingPanel()
    {
        // The server outlives the window: the fetch it holds never ends while the tests run.
        static StallServer server;
        const QString address = server.url("/never.jpg");
        w->OnToolClick(tool::mnuOpenFilelnterent);
        auto *g = w->findChild<GetURL1 *>(QStringLiteral("GetURL1"));
        QVERIFY(g && g->isVisible());
        g->Text1->setText(address);
        g->OpenBtn->click();
        QVERIFY(!G.GetURL1Loaded);
        // The picture side fetches it: the loading panel shows over the picture.
        QWidget *frame5 = w->findChild<QWidget *>(QStringLiteral("Frame5"));
        QVERIFY(frame5);
        QTRY_VERIFY(frame5->isVisible());
        QCOMPARE(G.CurrentFile, address);
        QFile list(G.ProgramDir + QStringLiteral("/PictList.INI"));
        QVERIFY(list.open(QIODevice::ReadOnly));
        QCOMPARE(list.readAll(), (address + QStringLiteral("\r\n")).toUtf8());
        list.close();
        // The watchdog's removal reaches the list through the picture side.
        auto *pictures = dynamic_cast<PicturesModule *>(w->page(2));
        QVERIFY(pictures && pictures->RemoveRemoteAddress);
        pictures->RemoveRemoteAddress(QStringLiteral(" ") + address);
        QVERIFY(list.open(QIODevice::ReadOnly));
        QCOMPARE(list.readAll(), QByteArray());
        G.FromInternet = false;
    }

    void favoriteOfAPageWithoutTitleTakesTheCaption()
    {
        static StallServer server;
        w->selectTab(7);
        WebView *b = web()->browser();
        b->navigate(QUrl(server.url("/untitled.htm")));
        QTRY_COMPARE_WITH_TIMEOUT(b->pageText(), QStringLiteral("No title"), 10000);
        w->setTitle(QStringLiteral("Caption Now"));
        QTimer::singleShot(200, [] {
            if (QWidget *d = QApplication::activeModalWidget()) d->close();
        });
        w->OnToolClick(tool::IntAddFavorite);
        QCOMPARE(web()->PageUrl, server.url("/untitled.htm"));
        // Its address for a title starts with "http:": the caption stands in.
        QCOMPARE(web()->PageTitle, QStringLiteral("Caption Now"));
        QVERIFY(!web()->FavoritesOpen);
    }

    void addressWithSpacesDoesNotBreak()
    {
        writeAll(file("with space.htm"), "<title>Spaced</title>Spaced page");
        web()->addressBox()->setEditText(QStringLiteral("file://") + file("with space.htm"));
        w->OnToolClick(tool::IntGo);
        QTRY_COMPARE_WITH_TIMEOUT(web()->browser()->pageText(), QStringLiteral("Spaced page"), 10000);
        // The Internet tab's print goes through the same printer.
        printOutputFile() = file("web.pdf");
        w->OnToolClick(tool::IntPrint);
        QTRY_VERIFY_WITH_TIMEOUT(
            runTool("pdfinfo", {file("web.pdf")}).contains(QRegularExpression(QStringLiteral("Pages:\\s+1"))),
            10000);
        printOutputFile().clear();
    }
};

QTEST_MAIN(WebWindowTest)
#include "web_window_test.moc"
