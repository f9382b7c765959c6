// An icon read from its file only when it is first drawn: the program has well over a
// hundred tool images, and most of them sit in menus and toolbars not shown at start.
#pragma once

#include <QIcon>
#include <QString>

namespace tw {

QIcon lazyFileIcon(const QString &path);

}  // namespace tw
