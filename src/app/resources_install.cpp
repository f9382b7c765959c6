#include "resources_install.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

static void initProgramResources() { Q_INIT_RESOURCE(program); }

namespace tw {

QString shippedHelpDir()
{
    // Beside the executable in the build tree: bin/../share/tarnwick/Help.
    const QString exeDir = QCoreApplication::applicationDirPath();
    for (const QString &c : {exeDir + QStringLiteral("/../share/tarnwick/Help"),
                             exeDir + QStringLiteral("/../../share/tarnwick/Help")}) {
        if (QFileInfo::exists(c + QStringLiteral("/Ostrel.qhc"))) return QDir::cleanPath(c);
    }
    return QString();
}

static bool copyMissing(const QString &from, const QString &to)
{
    if (QFileInfo::exists(to)) return true;
    if (!QFile::copy(from, to)) return false;
    QFile::setPermissions(to, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup
                                  | QFile::ReadOther);
    return true;
}

bool installProgramResources(const QString &programDir)
{
    initProgramResources();
    QDir d;
    if (!d.mkpath(programDir)) return false;
    bool ok = d.mkpath(programDir + QStringLiteral("/BMPS"));
    QDirIterator it(QStringLiteral(":/program"), QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString src = it.next();
        if (QFileInfo(src).isDir()) continue;
        const QString rel = src.mid(QStringLiteral(":/program/").size());
        ok = copyMissing(src, programDir + u'/' + rel) && ok;
    }
    const QString help = shippedHelpDir();
    if (!help.isEmpty()) {
        d.mkpath(programDir + QStringLiteral("/Help"));
        for (const QString &f : QDir(help).entryList(QDir::Files))
            ok = copyMissing(help + u'/' + f, programDir + QStringLiteral("/Help/") + f) && ok;
    }
    return ok;
}

}  // namespace tw
