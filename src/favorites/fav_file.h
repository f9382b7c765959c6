// The favorite list files: one text file per list, "<name>.FLST" in the FavoriteLists folder
// of the program folder, one path a line ended by CR LF, no header. They are read back value
// by value through the program's delimited reader, so a path holding a comma comes back as
// two entries and blanks around an entry are dropped.
#pragma once

#include <QString>
#include <QStringList>

namespace tw::fav {

// The folder of the lists, "<program folder>/FavoriteLists".
QString listFolder();
// The list's path without extension, as the editor keeps it.
QString listBasePath(const QString &name);

// Writes the entries, first to last, atomically; false on any failure.
bool SaveFavList(const QString &path, const QStringList &entries);
// The entries of the file; ok = false and no entries when it is missing or unreadable.
QStringList LoadFavList(const QString &path, bool *ok = nullptr);
// The list names of the folder, in the folder list's order: every "*.FLST" file, its name cut
// at its last point when that lies beyond the first character.
QStringList ListFavListNames(const QString &folder);
// True when the file's extension is one of the catalogue's.
bool IsSupportedFile(const QString &path);

}  // namespace tw::fav
