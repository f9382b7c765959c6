// What the picture benchmarks share: the best of three timed runs, and running a reference
// tool to its end.
#pragma once

#include <QElapsedTimer>
#include <QProcess>
#include <QStringList>
#include <algorithm>
#include <functional>

namespace twbench {

// The fastest of three runs of F, in milliseconds.
inline double bestOf3(const std::function<void()> &f)
{
    double best = 1e12;
    for (int i = 0; i < 3; ++i) {
        QElapsedTimer t;
        t.start();
        f();
        best = std::min(best, t.nsecsElapsed() / 1e6);
    }
    return best;
}

// Runs Program with Args and waits for it to end.
inline void runTool(const QString &program, const QStringList &args)
{
    QProcess p;
    p.start(program, args);
    p.waitForFinished(-1);
}

}  // namespace twbench
