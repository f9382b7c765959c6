#include "computer_name.h"

#include <QDialog>
#include <unistd.h>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace tw {

QStringList networkShareHosts()
{
    QStringList hosts;
    QFile f(QStringLiteral("/proc/mounts"));
    if (f.open(QIODevice::ReadOnly)) {
        for (const QByteArray &line : f.readAll().split('\n')) {
            const QList<QByteArray> parts = line.split(' ');
            if (parts.size() < 3) continue;
            const QString src = QString::fromLocal8Bit(parts[0]);
            const QString type = QString::fromLatin1(parts[2]);
            QString host;
            if (type == QLatin1String("cifs") || type == QLatin1String("smbfs")) {
                host = src.section(u'/', 2, 2);  // //host/share
            } else if (type.startsWith(QLatin1String("nfs")) || type == QLatin1String("fuse.sshfs")) {
                host = src.section(u':', 0, 0).section(u'@', -1);
            }
            if (!host.isEmpty() && !hosts.contains(host, Qt::CaseInsensitive)) hosts << host;
        }
    }
    // Shares mounted through the desktop's virtual file system.
    const QString gvfs = QStringLiteral("/run/user/%1/gvfs").arg(getuid());
    for (const QString &e : QDir(gvfs).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const int at = e.indexOf(QLatin1String("server="));
        if (at >= 0) {
            const QString host = e.mid(at + 7).section(u',', 0, 0);
            if (!host.isEmpty() && !hosts.contains(host, Qt::CaseInsensitive)) hosts << host;
        }
    }
    return hosts;
}

QString askComputerName(QWidget *parent)
{
    QDialog dlg(parent);
    dlg.setObjectName(QStringLiteral("ComputerName1"));
    dlg.setWindowTitle(QStringLiteral("Browse for Computer"));
    auto *lay = new QVBoxLayout(&dlg);
    auto *prompt = new QLabel(QStringLiteral("Please Select your Computer Name on the Network - "
                                             "Cancel if you are not using a Computer Network."),
                              &dlg);
    prompt->setObjectName(QStringLiteral("Label1"));
    prompt->setWordWrap(true);
    lay->addWidget(prompt);
    auto *list = new QListWidget(&dlg);
    list->setObjectName(QStringLiteral("List1"));
    list->addItems(networkShareHosts());
    lay->addWidget(list);
    auto *entry = new QLineEdit(&dlg);
    entry->setObjectName(QStringLiteral("Text1"));
    lay->addWidget(entry);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dlg);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("OKBtn"));
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("CancelBtn"));
    lay->addWidget(buttons);
    QObject::connect(list, &QListWidget::currentTextChanged, entry, &QLineEdit::setText);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dlg, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dlg, &QDialog::reject);
    if (dlg.exec() != QDialog::Accepted) return QString();
    return entry->text();
}

}  // namespace tw
