// The reference of the first-page figure: a bare QWebEngineView loading a local page, from
// the load call to its load-finished signal, in a fresh process. Prints milliseconds.
#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QUrl>
#include <QWebEngineView>
#include <cstdio>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    if (argc < 2) return 2;
    QEventLoop loop;
    QElapsedTimer t;
    double ms = -1;
    t.start();
    QWebEngineView v;
    v.resize(800, 600);
    v.show();
    QObject::connect(&v, &QWebEngineView::loadFinished, &loop, [&] {
        ms = t.nsecsElapsed() / 1e6;
        loop.quit();
    });
    v.load(QUrl::fromLocalFile(QString::fromLocal8Bit(argv[1])));
    loop.exec();
    std::printf("%.1f\n", ms);
    return 0;
}
