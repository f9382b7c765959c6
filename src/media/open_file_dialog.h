// The open dialog of the play-list commands: a title, a starting folder, the filter in the
// old "Name|*.A;*.B|..." form and a default extension; a cancel comes back as "".
#pragma once

#include <QString>
#include <QStringList>

class QWidget;

namespace tw {

// Qt name filters for an old filter string ("AVI Files|*.AVI|..." gives "AVI Files (*.AVI
// *.avi)"): a pattern matches in either case, as the names on a Linux disk come in both.
QStringList qtNameFilters(const QString &oldFilter);
QString openFileDialog(QWidget *parent, const QString &title, const QString &folder, const QString &oldFilter,
                       const QString &defaultExt);

}  // namespace tw
