// A 50 MB plain text file to its first paint in the document tab, against cat of it to
// /dev/null and a bare QPlainTextEdit loading it, in one run, with the peak memory; and the
// first local HTML page on the Internet tab, from the command to the load-finished signal,
// against a bare QWebEngineView loading the same page. Each web figure is taken in a fresh
// process (the engine's start is part of a first page), in alternating rounds. A timed run,
// not a test.
#include "app/tarnwick1.h"
#include "../../tests/common/process_status.h"
#include "common/main_window_fixture.h"
#include "core/tool_ids.h"
#include "web/document_text.h"
#include "web/documents_page.h"
#include "web/plain_text_view.h"
#include "web/internet_page.h"
#include "web/web_view.h"

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QPlainTextEdit>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QUrl>
#include <algorithm>
#include <clocale>
#include <cstdio>

using namespace tw;

namespace {

void resetPeak()
{
    QFile f(QStringLiteral("/proc/self/clear_refs"));
    if (f.open(QIODevice::WriteOnly)) f.write("5");
}

void makeText(const QString &path, qint64 bytes)
{
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly)) return;
    qint64 n = 0;
    for (int i = 0; n < bytes; ++i) {
        const QByteArray line =
            "Line " + QByteArray::number(i) + " of the long text file, with a few words in it.\r\n";
        f.write(line);
        n += line.size();
    }
}

double catMs(const QString &file)
{
    QElapsedTimer t;
    t.start();
    QProcess p;
    p.setStandardOutputFile(QProcess::nullDevice());
    p.start(QStringLiteral("cat"), {file});
    p.waitForFinished(-1);
    return t.nsecsElapsed() / 1e6;
}

double barePlainTextMs(const QString &file, long *peakKiB)
{
    const long base = twtest::statusKiB("VmRSS:");
    resetPeak();
    QElapsedTimer t;
    t.start();
    QPlainTextEdit e;
    e.resize(800, 600);
    QFile f(file);
    if (!f.open(QIODevice::ReadOnly)) return -1;
    e.setPlainText(QString::fromUtf8(f.readAll()));
    e.show();
    e.viewport()->repaint();
    const double ms = t.nsecsElapsed() / 1e6;
    *peakKiB = twtest::statusKiB("VmHWM:") - base;
    return ms;
}

double documentTabMs(Tarnwick1 *w, const QString &file, long *peakKiB)
{
    auto *docs = dynamic_cast<DocumentsPage *>(w->page(6));
    const long base = twtest::statusKiB("VmRSS:");
    resetPeak();
    QElapsedTimer t;
    t.start();
    w->DisplayFile(file);
    docs->Text1->plainView()->viewport()->repaint();
    const double ms = t.nsecsElapsed() / 1e6;
    *peakKiB = twtest::statusKiB("VmHWM:") - base;
    return ms;
}

// One cold first page on the Internet tab in this process. Entering the tab starts loading
// the engine module in the background; with Typing, the command comes a second after the
// entry, as when the address is typed, else at once.
int firstPage(const QString &page, bool typing)
{
    const QUrl url = QUrl::fromLocalFile(page);
    QEventLoop loop;
    QElapsedTimer t;
    double ms = -1;
    {
        Tarnwick1 *w = twtest::startMainWindow();
        w->selectTab(7);
        auto *web = dynamic_cast<InternetPage *>(w->page(7));
        web->addressBox()->setEditText(url.toString());
        if (typing) {
            QElapsedTimer wait;
            wait.start();
            while (wait.elapsed() < 1000) QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
        }
        t.start();
        w->OnToolClick(tool::IntGo);
        QObject::connect(web->browser(), &WebView::loadFinished, &loop, [&] {
            ms = t.nsecsElapsed() / 1e6;
            loop.quit();
        });
        loop.exec();
        delete w;
    }
    std::printf("%.1f\n", ms);
    return 0;
}

// One figure from a fresh process: the last line of its output, in milliseconds.
double childMs(const QString &program, const QStringList &args)
{
    QProcess p;
    p.start(program, args);
    p.waitForFinished(-1);
    const QList<QByteArray> lines = p.readAllStandardOutput().trimmed().split('\n');
    bool ok = false;
    const double v = lines.last().toDouble(&ok);
    return ok && v > 0 ? v : -1;
}

struct Figures {
    std::vector<double> runs;
    double best() const { return runs.empty() ? -1 : *std::min_element(runs.begin(), runs.end()); }
    double median() const
    {
        if (runs.empty()) return -1;
        std::vector<double> r = runs;
        std::sort(r.begin(), r.end());
        return r.size() % 2 ? r[r.size() / 2] : (r[r.size() / 2 - 1] + r[r.size() / 2]) / 2;
    }
};

}  // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM",
            qgetenv("QT_QPA_PLATFORM").isEmpty() ? "offscreen" : qgetenv("QT_QPA_PLATFORM"));
    QApplication app(argc, argv);
    setlocale(LC_NUMERIC, "C");
    const QStringList args = app.arguments();
    if (args.value(1) == QLatin1String("--first-page"))
        return firstPage(args.value(3), args.value(2) == QLatin1String("typed"));

    QTemporaryDir dir;
    // The program's files go to a folder of this run.
    qputenv("HOME", dir.path().toLocal8Bit());
    const QString text = dir.path() + QStringLiteral("/big.txt");
    const qint64 size = 50ll << 20;
    makeText(text, size);
    std::printf("50 MB text (%lld bytes) to first paint\n", size);
    const double cat = catMs(text);
    long barePeak = 0, tabPeak = 0;
    const double bare = barePlainTextMs(text, &barePeak);
    Tarnwick1 *w = twtest::startMainWindow();
    const double tab = documentTabMs(w, text, &tabPeak);
    delete w;
    std::printf("  cat to /dev/null        %8.1f ms\n", cat);
    std::printf("  bare QPlainTextEdit     %8.1f ms  peak +%ld MiB\n", bare, barePeak / 1024);
    std::printf("  document tab (Text1)    %8.1f ms  peak +%ld MiB\n", tab, tabPeak / 1024);
    std::printf("  ratio tab / bare        %8.2f   memory / file size %.2f\n", tab / bare,
                (tabPeak * 1024.0) / double(size));

    const QString page = dir.path() + QStringLiteral("/page.htm");
    {
        QFile f(page);
        if (f.open(QIODevice::WriteOnly)) {
            QByteArray body = "<html><head><title>Bench page</title></head><body>";
            for (int i = 0; i < 200; ++i)
                body += "<p>Paragraph " + QByteArray::number(i) + " of the page.</p>";
            f.write(body + "</body></html>");
        }
    }
    const QString self = QCoreApplication::applicationFilePath();
    const QString bareProbe = QCoreApplication::applicationDirPath() + QStringLiteral("/web_bare_probe");
    // Alternating rounds, so that a change of the machine's load falls on all three alike.
    constexpr int rounds = 5;
    Figures bareWeb, atEntry, typed;
    for (int i = 0; i < rounds; ++i) {
        auto add = [](Figures &f, double v) {
            if (v > 0) f.runs.push_back(v);
        };
        add(bareWeb, childMs(bareProbe, {page}));
        add(atEntry, childMs(self, {QStringLiteral("--first-page"), QStringLiteral("tab"), page}));
        add(typed, childMs(self, {QStringLiteral("--first-page"), QStringLiteral("typed"), page}));
    }
    std::printf("first local HTML page, command to load finished (fresh processes, %d alternating rounds)\n",
                rounds);
    std::printf("                                             median      best   ratio of medians\n");
    std::printf("  bare QWebEngineView                      %8.1f ms %8.1f ms\n", bareWeb.median(),
                bareWeb.best());
    std::printf("  Internet tab, ID_IntGo at the entry      %8.1f ms %8.1f ms   %.2f\n", atEntry.median(),
                atEntry.best(), atEntry.median() / bareWeb.median());
    std::printf("  Internet tab, ID_IntGo 1 s after entry   %8.1f ms %8.1f ms   %.2f\n", typed.median(),
                typed.best(), typed.median() / bareWeb.median());
    return 0;
}
