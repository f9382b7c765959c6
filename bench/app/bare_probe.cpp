// The reference of the start-up benchmark: a bare Qt program showing one empty QMainWindow,
// reporting its first paint the same way as the probe of the main window.
#include <QApplication>
#include <QEvent>
#include <QFile>
#include <QMainWindow>
#include <QTimer>
#include <cstdio>

static long residentKiB()
{
    QFile f(QStringLiteral("/proc/self/status"));
    if (!f.open(QIODevice::ReadOnly)) return -1;
    for (const QByteArray &line : f.readAll().split('\n'))
        if (line.startsWith("VmRSS:")) return line.mid(6).trimmed().split(' ').value(0).toLong();
    return -1;
}

class FirstPaint : public QObject {
public:
    bool eventFilter(QObject *o, QEvent *e) override
    {
        if (e->type() == QEvent::Paint && !done_) {
            done_ = true;
            QTimer::singleShot(0, [] {
                std::printf("painted %ld\n", residentKiB());
                std::fflush(stdout);
                QCoreApplication::exit(0);
            });
        }
        return QObject::eventFilter(o, e);
    }

private:
    bool done_ = false;
};

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    FirstPaint probe;
    QMainWindow w;
    w.resize(700, 533);
    w.installEventFilter(&probe);
    w.show();
    return app.exec();
}
