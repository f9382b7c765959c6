// Start-up probe: shows the real main window, and at its first paint prints the resident
// memory and exits. The driver measures the
// time from starting the process to that line.
#include "app/tarnwick1.h"
#include "core/options_store.h"

#include <QApplication>
#include <QDir>
#include <QEvent>
#include <QFile>
#include <QMainWindow>
#include <QTimer>
#include <clocale>
#include <cstdio>

namespace {
long residentKiB()
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
            // Report after this paint has finished.
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
}  // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    FirstPaint probe;
    QApplication::setApplicationName(QStringLiteral("tarnwick"));
    tw::Tarnwick1 w{QString()};
    w.installEventFilter(&probe);
    w.show();
    return app.exec();
}
