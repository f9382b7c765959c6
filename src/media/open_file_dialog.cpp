#include "media/open_file_dialog.h"

#include <QFileDialog>

namespace tw {

QStringList qtNameFilters(const QString &oldFilter)
{
    const QStringList parts = oldFilter.split(u'|');
    QStringList out;
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        QStringList pats;
        for (const QString &p : parts[i + 1].split(u';', Qt::SkipEmptyParts)) {
            const QString t = p.trimmed();
            pats << t;
            if (t.toLower() != t) pats << t.toLower();
        }
        out << QStringLiteral("%1 (%2)").arg(parts[i].trimmed(), pats.join(u' '));
    }
    return out;
}

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
