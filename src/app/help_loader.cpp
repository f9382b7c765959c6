#include "help_window.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibrary>

namespace tw {

HelpWindow *makeHelpWindow(const QString &helpDir, QWidget *parent, QString *error)
{
    using Make = HelpWindow *(*)(const QString &, QWidget *);
    static Make make = nullptr;
    static QString why;
    if (!make) {
        // Beside the program: the build's lib/ folder, or where the installation put it.
        const QString exe = QCoreApplication::applicationDirPath();
        for (const QString &path : {exe + QStringLiteral("/../lib/libtw_help.so"),
                                    exe + QStringLiteral("/" TW_MODULE_FROM_BIN "/libtw_help.so")}) {
            if (!QFileInfo::exists(path)) continue;
            QLibrary lib(QDir::cleanPath(path));
            lib.setLoadHints(QLibrary::PreventUnloadHint);
            make = reinterpret_cast<Make>(lib.resolve("twMakeHelpWindow"));
            if (make) break;
            why = lib.errorString();
        }
        if (!make && why.isEmpty()) why = QStringLiteral("the help module libtw_help.so is missing");
    }
    if (!make) {
        if (error) *error = why;
        return nullptr;
    }
    return make(helpDir, parent);
}

}  // namespace tw
