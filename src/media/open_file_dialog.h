// The open dialog of the play-list commands: a title, a starting folder, the filter in the
// old "Name|*.A;*.B|..." form and a default extension; a cancel comes back as "".
#pragma once

#include "core/file_filters.h"

#include <QString>
#include <QStringList>

class QWidget;

namespace tw {

QString openFileDialog(QWidget *parent, const QString &title, const QString &folder, const QString &oldFilter,
                       const QString &defaultExt);

}  // namespace tw
