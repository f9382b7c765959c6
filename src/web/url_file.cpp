#include "web/url_file.h"

#include "core/text_rules.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <pwd.h>
#include <unistd.h>

namespace tw {

QString systemUserName()
{
    if (const passwd *pw = getpwuid(getuid())) return QString::fromLocal8Bit(pw->pw_name);
    return QString();
}

QString FindFavoritesFolder(const QString &home, const QString &user, const QString &programDir)
{
    if (!home.isEmpty() && QFileInfo(home + QStringLiteral("/Favorites")).isDir()) return home;
    if (!home.isEmpty() && !user.isEmpty()) {
        const QString wine = home + QStringLiteral("/.wine/drive_c/users/") + user;
        if (QFileInfo(wine + QStringLiteral("/Favorites")).isDir()) return wine;
    }
    QDir().mkpath(programDir + QStringLiteral("/Favorites"));
    return programDir;
}

QByteArray urlFileBytes(const QString &url)
{
    const QByteArray u = url.toLocal8Bit();
    return "[DEFAULT]\r\nBASEURL=" + u + "\r\n[InternetShortcut]\r\nURL=" + u + "\r\n";
}

QString urlFileName(const QString &pageTitle)
{
    QString name = pageTitle;
    name.replace(u':', u'-');
    const qsizetype dot = name.lastIndexOf(u'.');
    const bool counts = dot >= 0 && name.size() - dot - 1 <= 5;
    if (counts) {
        if (name.mid(dot + 1).toUpper() != QLatin1String("URL"))
            name = name.left(dot) + QStringLiteral(".URL");
    } else {
        name += QStringLiteral(".URL");
    }
    if (name.size() > 200) name.truncate(200);
    return name;
}

UrlFileResult readUrlFile(const QString &path)
{
    UrlFileResult r;
    r.name = path.mid(path.lastIndexOf(u'/') + 1);
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) return r;
    // Lines 1 to 3 are read as text lines; only the second carries the address.
    QByteArray lines[3];
    int n = 0;
    QByteArray cur;
    char c;
    while (n < 3 && f.getChar(&c)) {
        if (c == '\r' || c == '\n') {
            if (c == '\r') {
                char d;
                if (f.getChar(&d) && d != '\n') f.ungetChar(d);
            }
            lines[n++] = cur;
            cur.clear();
            continue;
        }
        if (n == 1) cur += c;  // the other lines are passed over, however long
    }
    if (n == 1 && !cur.isEmpty()) lines[n++] = cur;  // a last line without its line end
    if (n < 2) return r;
    const QString line = QString::fromLocal8Bit(lines[1]);
    if (line.startsWith(QLatin1String("URL"))) r.url = line.mid(4);
    else if (line.startsWith(QLatin1String("BASEURL"))) r.url = line.mid(8);
    else r.url = line;
    return r;
}

bool writeUrlFile(const QString &folder, const QString &pageTitle, const QString &pageUrl,
                  QString *writtenPath)
{
    if (pageTitle.trimmed().isEmpty()) return false;
    const QString path = folder + urlFileName(pageTitle);
    if (writtenPath) *writtenPath = path;
    QFile f(path);
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate)) f.write(urlFileBytes(pageUrl));
    // A failed write is passed over: only an empty title reports a failure.
    return true;
}

QStringList readPictList(const QString &path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) return {};
    DelimitedReader r(f.readAll());
    QStringList rows;
    while (auto v = r.readString())
        if (!v->isEmpty()) rows << *v;
    return rows;
}

bool writePictList(const QString &path, const QStringList &rows)
{
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate)) return true;
    for (const QString &row : rows) f.write(pathToBytes(row) + "\r\n");
    return true;
}

}  // namespace tw
