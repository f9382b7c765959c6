#pragma once

#include <QString>

class QWidget;

namespace tw {

// The network computer browser: hosts of mounted network shares plus a free entry.
// Returns the chosen name, or "" on Cancel.
QString askComputerName(QWidget *parent);
// Hosts behind the network shares mounted on this machine (cifs, nfs, sshfs, gvfs).
QStringList networkShareHosts();

}  // namespace tw
