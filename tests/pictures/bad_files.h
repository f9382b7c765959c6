// Files that crash or freeze a picture decoder, made from the shared corpus at test time.
#pragma once

#include "test_support.h"

#include <QByteArray>
#include <QFile>
#include <QString>

namespace twtest {

// The corpus's JBIG file with the header's width and height (bytes 4 to 11) replaced.
inline QString jbigWithSize(const QString &dir, const QString &name, const QByteArray &size)
{
    QFile in(corpus(QStringLiteral("jbg/input.bie")));
    if (!in.open(QIODevice::ReadOnly)) return QString();
    QByteArray d = in.readAll();
    d.replace(4, 8, size);
    const QString path = dir + QLatin1Char('/') + name;
    QFile out(path);
    if (!out.open(QIODevice::WriteOnly)) return QString();
    out.write(d);
    return path;
}

// A PostScript picture that never ends: Ghostscript loops for ever on it.
inline QString endlessEps(const QString &dir, const QString &name = QStringLiteral("endless.eps"))
{
    const QString path = dir + QLatin1Char('/') + name;
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly)) return QString();
    f.write("%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 10 10\n{} loop\n");
    return path;
}

inline const QByteArray CrashingJbigSize("\x00\x10\x00\x00\x00\x10\x00\x00", 8);  // 1048576 x 1048576
inline const QByteArray FreezingJbigSize("\x7f\xff\xff\xff\x00\x10\x00\x00", 8);  // width 7fffffff

}  // namespace twtest
