#include "core/modules.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibrary>

namespace tw {

QString programModuleFile(const QString &fileName)
{
    if (!QCoreApplication::instance()) return QString();
    const QString exe = QCoreApplication::applicationDirPath();
    // The build's lib/ folder first, then where the installation put it.
    for (const QString &path : {exe + QStringLiteral("/../lib/") + fileName,
                                exe + QStringLiteral("/" TW_MODULE_FROM_BIN "/") + fileName}) {
        const QFileInfo fi(path);
        if (fi.isFile()) return QDir::cleanPath(fi.absoluteFilePath());
    }
    return QString();
}

void *resolveModuleEntry(const QString &fileName, const char *symbol, QString *error)
{
    const QString path = programModuleFile(fileName);
    if (path.isEmpty()) {
        if (error) *error = QStringLiteral("the module %1 is missing").arg(fileName);
        return nullptr;
    }
    QLibrary lib(path);
    lib.setLoadHints(QLibrary::PreventUnloadHint);
    void *entry = reinterpret_cast<void *>(lib.resolve(symbol));
    if (!entry && error) *error = lib.errorString();
    return entry;
}

}  // namespace tw
