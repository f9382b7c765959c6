#include "media/playlist_file.h"

#include "core/catalogue.h"
#include "core/text_rules.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace tw {

QStringList readPlayListBytes(const QByteArray &bytes)
{
    QStringList out;
    DelimitedReader in(bytes);
    while (auto v = in.readString()) out << *v;
    return out;
}

QByteArray playListBytes(const QStringList &entries)
{
    QByteArray b;
    for (const QString &e : entries) b += pathToBytes(e) + "\r\n";
    return b;
}

bool readPlayListFile(const QString &file, QStringList *entries)
{
    QFile f(file);
    if (!f.open(QIODevice::ReadOnly)) return false;
    *entries = readPlayListBytes(f.readAll());
    return true;
}

bool writePlayListFile(const QString &file, const QStringList &entries)
{
    QSaveFile f(file);
    if (!f.open(QIODevice::WriteOnly)) return false;
    const QByteArray b = playListBytes(entries);
    if (f.write(b) != b.size()) {
        f.cancelWriting();
        return false;
    }
    return f.commit();
}

QStringList playListNames(const QString &folder)
{
    QDir d(folder);
    if (!d.exists() && !QDir().mkpath(folder)) return {};
    QStringList names;
    for (const QFileInfo &fi : d.entryInfoList(QDir::Files | QDir::Hidden, QDir::Name | QDir::IgnoreCase)) {
        const QString f = fi.fileName();
        if (!matchesPatternList(f, QStringLiteral("*.PLST"))) continue;
        // The name is all before the last dot, when that dot stands beyond the first character.
        const int dot = f.lastIndexOf(u'.');
        names << (dot > 0 ? f.left(dot) : f);
    }
    return names;
}

const QStringList &videoListExtensions()
{
    static const QStringList e{QStringLiteral("AVI"),  QStringLiteral("MOV"), QStringLiteral("MPG"),
                               QStringLiteral("MPEG"), QStringLiteral("MP2"), QStringLiteral("ASF"),
                               QStringLiteral("ASX")};
    return e;
}

const QStringList &musicListExtensions()
{
    static const QStringList e{QStringLiteral("MID"), QStringLiteral("WAV"), QStringLiteral("RMI"),
                               QStringLiteral("MP3"), QStringLiteral("M3U")};
    return e;
}

bool familyAdmits(bool video, const QString &path)
{
    const QString ext = GetFileExt(path).toUpper();
    return (video ? videoListExtensions() : musicListExtensions()).contains(ext);
}

}  // namespace tw
