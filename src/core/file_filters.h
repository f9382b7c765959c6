// The program's file filters ("caption|pattern;pattern|caption|pattern") turned into the
// filters of Qt's file dialog, for every dialog that opens or saves files.
#pragma once

#include <QString>
#include <QStringList>

namespace tw {

// "Name|*.A;*.B|..." as the dialog's filters "Name (*.A *.a *.B *.b)": patterns match
// either case, as the program's patterns always do.
QStringList qtNameFilters(const QString &pipeFilter);

}  // namespace tw
