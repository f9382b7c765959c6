#include "favorites/fav_file.h"

#include "core/catalogue.h"
#include "core/globals.h"
#include "core/text_rules.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <algorithm>

namespace tw::fav {

QString listFolder() { return QDir(G.ProgramDir).filePath(QStringLiteral("FavoriteLists")); }

QString listBasePath(const QString &name) { return listFolder() + QLatin1Char('/') + name; }

bool SaveFavList(const QString &path, const QStringList &entries)
{
    QSaveFile f(path);
    if (!f.open(QIODevice::WriteOnly)) return false;
    for (const QString &e : entries) {
        f.write(pathToBytes(e));
        f.write("\r\n", 2);
    }
    return f.commit();
}

QStringList LoadFavList(const QString &path, bool *ok)
{
    QStringList out;
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) {
        if (ok) *ok = false;
        return out;
    }
    DelimitedReader r(f.readAll());
    while (std::optional<QString> v = r.readString()) out << *v;
    if (ok) *ok = true;
    return out;
}

QStringList ListFavListNames(const QString &folder)
{
    QStringList names;
    QDir d(folder);
    if (!d.exists()) return names;
    // The folder list's pattern matches the extension in any case, in name order.
    QStringList files =
        d.entryList({QStringLiteral("*.FLST")}, QDir::Files | QDir::Hidden, QDir::Name | QDir::IgnoreCase);
    for (QString n : files) {
        const qsizetype dot = n.lastIndexOf(QLatin1Char('.'));
        if (dot > 0) n.truncate(dot);
        names << n;
    }
    return names;
}

bool IsSupportedFile(const QString &path)
{
    const QString ext = GetFileExt(path);
    if (ext.isEmpty()) return false;
    const auto &cells = Cat.built() ? Cat.FileExtTable : fileExtLiterals();
    return std::any_of(cells.begin(), cells.end(),
                       [&](const QString &c) { return c.trimmed().compare(ext, Qt::CaseInsensitive) == 0; });
}

}  // namespace tw::fav
