// Puts the fuzzer's bytes where the settings readers look: a program folder of this process.
#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <cstdint>
#include <unistd.h>

inline QString fuzzProgramDir()
{
    static const QString dir = [] {
        const QString d = QDir::tempPath() + QStringLiteral("/tw-fuzz-") + QString::number(getpid());
        QDir().mkpath(d);
        return d;
    }();
    return dir;
}

inline void putSettingsFile(const char *name, const uint8_t *data, size_t size)
{
    QFile f(fuzzProgramDir() + QLatin1Char('/') + QLatin1String(name));
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        f.write(reinterpret_cast<const char *>(data), qint64(size));
}
