#include "media/media_lists.h"

#include "core/catalogue.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>
#include <QXmlStreamReader>

namespace tw {

QStringList asxEntries(const QByteArray &xml, const QString &folder)
{
    QStringList out;
    QXmlStreamReader r(xml);
    while (!r.atEnd() && !r.hasError()) {
        if (r.readNext() != QXmlStreamReader::StartElement) continue;
        if (r.name().compare(QLatin1String("ref"), Qt::CaseInsensitive) != 0) continue;
        for (const QXmlStreamAttribute &a : r.attributes()) {
            if (a.name().compare(QLatin1String("href"), Qt::CaseInsensitive) != 0) continue;
            const QString v = a.value().toString().trimmed();
            if (v.isEmpty()) continue;
            const QUrl u(v);
            if (u.isLocalFile()) out << u.toLocalFile();
            else if (!u.scheme().isEmpty() && u.scheme().size() > 1) out << v;
            else out << QDir(folder).absoluteFilePath(v);
        }
    }
    return out;
}

QStringList playListEntries(const QString &path)
{
    if (GetFileExt(path).toUpper() != QLatin1String("ASX")) return {};
    QFile f(path);
    // A list file is small; a larger one is no list.
    if (f.size() > 4 * 1024 * 1024 || !f.open(QIODevice::ReadOnly)) return {};
    return asxEntries(f.readAll(), QFileInfo(path).absolutePath());
}

}  // namespace tw
