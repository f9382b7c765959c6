#include "print_target.h"

#include "scenario_hooks.h"

#include <QStringList>

namespace tw {

QString &printOutputFile()
{
    static QString file;
    return file;
}

void registerPrintTargetRoutine()
{
    registerScenarioRoutine(QStringLiteral("PrintToFile"), [](const QStringList &a) {
        printOutputFile() = a.value(0);
        return QString();
    });
}

}  // namespace tw
