// The play-list file (.PLST): one full path per line, each line ended by CR LF, no header and
// no count; an empty list is a file of 0 bytes. It is read back value by value with the
// program's delimited reader, so a comma inside a path splits that entry in two (kept so:
// a list saved by the old program reads the same way here).
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace tw {

// The entries of a play list's bytes, as the delimited reader gives them.
QStringList readPlayListBytes(const QByteArray &bytes);
// The bytes of a play list: every entry followed by CR LF.
QByteArray playListBytes(const QStringList &entries);
// Reads the file; false (and Entries untouched) when it cannot be opened.
bool readPlayListFile(const QString &file, QStringList *entries);
// Writes the file through a temporary file that is renamed over it, so a failure never
// leaves half a list; false when it could not be written.
bool writePlayListFile(const QString &file, const QStringList &entries);
// The names of the lists in a folder (file names less their extension), made when missing.
QStringList playListNames(const QString &folder);

// The extensions a family admits (the add and drop commands), upper case.
const QStringList &videoListExtensions();
const QStringList &musicListExtensions();
bool familyAdmits(bool video, const QString &path);

}  // namespace tw
