#include "core/internal_drag.h"

#include "core/text_rules.h"

#include <QList>
#include <QListWidgetItem>
#include <QMimeData>
#include <QUrl>

namespace tw {

QMimeData *makeListDrag(const QString &tag, const QStringList &files)
{
    auto *m = new QMimeData;
    m->setData(QLatin1String(DragSourceMime), tag.toUtf8());
    QByteArray lines;
    QList<QUrl> urls;
    for (const QString &f : files) {
        lines += pathToBytes(f);
        lines += '\n';
        urls << QUrl::fromLocalFile(f);
    }
    m->setData(QLatin1String(DragFilesMime), lines);
    m->setUrls(urls);
    return m;
}

QMimeData *makeRowsDrag(const QString &tag, const QList<QListWidgetItem *> &items)
{
    QStringList files;
    for (const QListWidgetItem *it : items)
        if (it) files << it->text();
    return makeListDrag(tag, files);
}

bool canReadDrop(const QMimeData *data)
{
    if (!data) return false;
    if (data->hasFormat(QLatin1String(DragSourceMime))) return true;
    if (data->hasUrls())
        for (const QUrl &u : data->urls())
            if (u.isLocalFile()) return true;
    return false;
}

ListDrop readDrop(const QMimeData *data)
{
    ListDrop d;
    if (!data) return d;
    if (data->hasFormat(QLatin1String(DragSourceMime))) {
        d.tag = QString::fromUtf8(data->data(QLatin1String(DragSourceMime)));
        for (const QByteArray &line : data->data(QLatin1String(DragFilesMime)).split('\n'))
            if (!line.isEmpty()) d.files << pathFromBytes(line);
        if (!d.tag.isEmpty()) return d;
    }
    d.files.clear();
    for (const QUrl &u : data->urls())
        if (u.isLocalFile()) d.files << u.toLocalFile();
    return d;
}

}  // namespace tw
