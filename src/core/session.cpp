#include "session.h"

#include <QDir>
#include <QStandardPaths>
#include <unistd.h>

namespace tw {

CommandLine GetCommandLine(const QString &raw, int maxArgs)
{
    CommandLine cl;
    bool open = false;
    for (const QChar c : raw) {
        if (c == u' ' || c == u'\t') {
            open = false;
            continue;
        }
        if (!open) {
            if (cl.Args.size() >= maxArgs) break;
            cl.Args << QString();
            open = true;
        }
        cl.Args.last() += c;
    }
    for (int i = 0; i < 6 && i < cl.Args.size(); ++i) cl.CommandArg[i] = cl.Args[i];
    return cl;
}

QString JoinCommandLine(const CommandLine &cl)
{
    QString s;
    for (int i = 0; i < 6; ++i) {
        if (i) s += u' ';
        s += cl.CommandArg[i];
    }
    s = s.trimmed();
    if (s.size() > 2 && s[0] == u'"') s = s.mid(1, s.size() - 2);
    return s;
}

QString rawCommandLine(const QStringList &args) { return args.join(u' '); }

QString FindProgramDir()
{
    QString base = qEnvironmentVariable("XDG_DATA_HOME");
    if (base.isEmpty() || !QDir::isAbsolutePath(base))
        base = QDir::homePath() + QStringLiteral("/.local/share");
    return QDir::cleanPath(base + QStringLiteral("/tarnwick"));
}

QString systemComputerName()
{
    char buf[256] = {};
    if (gethostname(buf, sizeof buf - 1) != 0) return QString();
    return QString::fromLocal8Bit(buf).toUpper();
}

QString cutComputerNameAnswer(const QString &answer)
{
    QString a = answer.toUpper();
    if (a.trimmed().isEmpty()) return QString();
    // The browser hands its answer back in a blank-padded buffer of 260 characters.
    a = a.leftJustified(260, u' ', true);
    int count = 0;
    for (int i = 0; i < a.size(); ++i) {
        if (a[i] == u' ' && ++count == 10) {
            const int pos = i + 1;  // 1-based
            return a.left(qMax(0, pos - 10));
        }
    }
    return a.left(qMax(0, a.size() - 9));
}

}  // namespace tw
