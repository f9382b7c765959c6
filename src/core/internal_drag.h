// The program's one drag format between its lists: the thumbnail grid, the favorite browser,
// the selection list, the play lists and the slide-show lists. A drag names its source by a
// tag ("Thumbs", "SelList1", "SelList2", "SelectTag") and carries its files one path per
// line; it speaks the desktop's text/uri-list as well, so the files also drop into a file
// manager, and files dragged in from one read as a drop without a tag.
#pragma once

#include <QString>
#include <QList>
#include <QStringList>

class QMimeData;
class QListWidgetItem;

namespace tw {

inline constexpr char DragSourceMime[] = "application/x-tarnwick-drag-source";
inline constexpr char DragFilesMime[] = "application/x-tarnwick-drag-files";

// A new drag's data: the tag, the files, and the same files as local-file URLs.
QMimeData *makeListDrag(const QString &tag, const QStringList &files);

struct ListDrop {
    QString tag;  // the source's tag; empty for files from another program
    QStringList files;  // the paths, in order
    bool internal() const { return !tag.isEmpty(); }
};

// True when the data is one of the program's drags or holds local files.
bool canReadDrop(const QMimeData *data);
// What a drop carries: the program's own drag first, else the local files of a uri-list
// (other URLs are passed over).
ListDrop readDrop(const QMimeData *data);

// The rows of a list widget as a drag of that tag: used by the lists whose rows leave as
// files for a file manager ("SelectTag" rows, which no list of the program takes).
QMimeData *makeRowsDrag(const QString &tag, const QList<QListWidgetItem *> &items);

}  // namespace tw
