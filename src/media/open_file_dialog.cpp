#include "media/open_file_dialog.h"

#include <QFileDialog>

namespace tw {

QString openFileDialog(QWidget *parent, const QString &title, const QString &folder, const QString &oldFilter,
                       const QString &defaultExt)
{
    QFileDialog d(parent);
    d.setObjectName(QStringLiteral("CommonDialog1"));
    d.setOption(QFileDialog::DontUseNativeDialog, true);
    d.setAcceptMode(QFileDialog::AcceptOpen);
    d.setFileMode(QFileDialog::AnyFile);
    d.setWindowTitle(title);
    d.setDirectory(folder);
    d.setNameFilters(qtNameFilters(oldFilter));
    d.setDefaultSuffix(defaultExt);
    if (d.exec() != QDialog::Accepted) return {};
    return d.selectedFiles().value(0);
}

}  // namespace tw
