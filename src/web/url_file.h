// The Internet favorites on disk: the folder that holds them and the .URL shortcut file in
// its Windows form (four lines, CR LF), plus the list of remote file addresses
// (PictList.INI). Pure logic, no widgets.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace tw {

// The folder that contains "Favorites": ~/Favorites when it exists (base: the home folder),
// else a Wine prefix's drive_c/users/<user>/Favorites when it exists, else the program's own
// folder, whose Favorites folder is made on demand.
QString FindFavoritesFolder(const QString &home, const QString &user, const QString &programDir);
// The login name of the user running the program; empty when the system gives none.
QString systemUserName();

// The four lines of a shortcut to Url, each ending CR LF, in the 8-bit code page.
QByteArray urlFileBytes(const QString &url);

// The file name a page title becomes: ":" turned to "-", the extension rule (a last dot
// followed by at most five characters counts), ".URL" added, cut to 200 characters.
QString urlFileName(const QString &pageTitle);

struct UrlFileResult {
    QString url;  // the address read from the second line
    QString name;  // the file name behind the last separator
};
// Reads a shortcut: the address is taken from line 2 ("URL=..." or "BASEURL=...", else the
// whole line). A file that cannot be read or has no second line gives an empty address.
UrlFileResult readUrlFile(const QString &path);

// Writes a shortcut for PageUrl named after PageTitle into Folder (ending in "/"). False only
// when the title is empty; a file that cannot be written still answers true.
bool writeUrlFile(const QString &folder, const QString &pageTitle, const QString &pageUrl,
                  QString *writtenPath = nullptr);

// PictList.INI: read value by value (a comma splits an address in two, empty rows are
// passed over); written one address a line, CR LF after each, unquoted.
QStringList readPictList(const QString &path);
bool writePictList(const QString &path, const QStringList &rows);

}  // namespace tw
