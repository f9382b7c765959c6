// A figure of this process's /proc/self/status in KiB (VmRSS, VmHWM, ...): the memory tests
// and benchmarks measure what a load costs with it.
#pragma once

#include <QByteArray>
#include <QFile>
#include <cstring>

namespace twtest {

// Key is the line's name with its colon, as "VmHWM:"; -1 when it cannot be read.
inline long statusKiB(const char *key)
{
    QFile f(QStringLiteral("/proc/self/status"));
    if (!f.open(QIODevice::ReadOnly)) return -1;
    for (const QByteArray &line : f.readAll().split('\n'))
        if (line.startsWith(key)) return line.mid(int(strlen(key))).trimmed().split(' ').first().toLong();
    return -1;
}

}  // namespace twtest
