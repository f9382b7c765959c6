#include "resources_install.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

namespace tw {

QString shippedDataDir()
{
    // Found from where the program lies, never from where it was built: the installation's
    // data folder relative to its bin folder, then bin/../share/tarnwick as the build tree
    // lays it out. TIPHELP.TXT marks the folder.
    const QString exeDir = QCoreApplication::applicationDirPath();
    if (exeDir.isEmpty()) return QString();
    for (const QString &c :
         {exeDir + QStringLiteral("/" TW_DATA_FROM_BIN), exeDir + QStringLiteral("/../share/tarnwick")}) {
        if (QFileInfo::exists(c + QStringLiteral("/TIPHELP.TXT"))) return QDir::cleanPath(c);
    }
    return QString();
}

static bool copyMissing(const QString &from, const QString &to)
{
    if (QFileInfo::exists(to)) return true;
    if (!QFile::copy(from, to)) return false;
    QFile::setPermissions(to, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
    return true;
}

bool installProgramResources(const QString &programDir)
{
    QDir d;
    if (!d.mkpath(programDir)) return false;
    const QString shipped = shippedDataDir();
    if (shipped.isEmpty()) return false;
    // Every shipped file in its folder; what the user already has (and may have edited)
    // stays as it is.
    bool ok = true;
    const QDir from(shipped);
    QDirIterator it(shipped, QDir::Files | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString src = it.next();
        const QString to = programDir + u'/' + from.relativeFilePath(src);
        ok = d.mkpath(QFileInfo(to).path()) && copyMissing(src, to) && ok;
    }
    return ok;
}

}  // namespace tw
