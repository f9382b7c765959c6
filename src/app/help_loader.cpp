#include "help_window.h"

#include "core/modules.h"

namespace tw {

HelpWindow *makeHelpWindow(const QString &helpDir, QWidget *parent, QString *error)
{
    using Make = HelpWindow *(*)(const QString &, QWidget *);
    static Make make = nullptr;
    static QString why;
    if (!make) {
        make = reinterpret_cast<Make>(
            resolveModuleEntry(QStringLiteral("libtw_help.so"), "twMakeHelpWindow", &why));
    }
    if (!make) {
        if (error) *error = why;
        return nullptr;
    }
    return make(helpDir, parent);
}

}  // namespace tw
