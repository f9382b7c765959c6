// Shared by the start-up probes: at the first paint of the window it watches, print
// the resident memory and leave the event loop.
#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QFile>
#include <QTimer>
#include <cstdio>

inline long residentKiB()
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
