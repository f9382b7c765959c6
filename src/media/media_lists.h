// The list files that a player is handed as a file name. mpv reads M3U by itself; an ASX
// file (the XML form of a media list) is read here and its entries are given to mpv.
#pragma once

#include <QString>
#include <QStringList>

namespace tw {

// The entries of an ASX file (each <ref href="..."/>, relative ones taken from the file's
// folder); empty for any other file, or an ASX file with no entry.
QStringList playListEntries(const QString &path);
QStringList asxEntries(const QByteArray &xml, const QString &folder);

}  // namespace tw
