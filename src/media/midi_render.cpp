#include "media/midi_render.h"

#include "media/media_engine.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace tw {

namespace {
quint32 le32(const QByteArray &b, qsizetype at)
{
    const auto *p = reinterpret_cast<const unsigned char *>(b.constData() + at);
    return quint32(p[0]) | quint32(p[1]) << 8 | quint32(p[2]) << 16 | quint32(p[3]) << 24;
}

}  // namespace

QString soundFontPath()
{
    for (const char *p : {"/usr/share/sounds/sf2/TimGM6mb.sf2", "/usr/share/sounds/sf2/default-GM.sf2",
                          "/usr/share/sounds/sf2/FluidR3_GM.sf2"})
        if (QFileInfo::exists(QString::fromLatin1(p))) return QString::fromLatin1(p);
    return {};
}

QByteArray midiData(const QByteArray &b)
{
    // RIFF <size> RMID, then chunks; the "data" chunk holds the standard MIDI file.
    if (b.size() < 20 || !b.startsWith("RIFF") || b.mid(8, 4) != "RMID") return b;
    qsizetype at = 12;
    while (at + 8 <= b.size()) {
        const quint32 len = le32(b, at + 4);
        if (b.mid(at, 4) == "data") return b.mid(at + 8, qMin<qsizetype>(len, b.size() - at - 8));
        at += 8 + qsizetype(len) + (len & 1);
    }
    return {};
}

QString renderMidi(const QString &midiPath)
{
    QFile in(midiPath);
    if (!in.open(QIODevice::ReadOnly) || in.size() > 16 * 1024 * 1024) return {};
    const QByteArray data = midiData(in.readAll());
    // A standard MIDI file: its header chunk of six bytes, then at least one track.
    if (data.size() < 22 || !data.startsWith("MThd") || data.mid(4, 4) != QByteArray("\0\0\0\6", 4)
        || data.mid(14, 4) != "MTrk")
        return {};
    const QString font = soundFontPath();
    if (font.isEmpty()) return {};

    const QFileInfo fi(midiPath);
    QCryptographicHash h(QCryptographicHash::Sha1);
    h.addData(fi.absoluteFilePath().toUtf8());
    h.addData(QByteArray::number(fi.lastModified().toMSecsSinceEpoch()));
    h.addData(data);
    const QString dir = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation)
        + QStringLiteral("/tarnwick/midi");
    const QString out = dir + u'/' + QString::fromLatin1(h.result().toHex()) + QStringLiteral(".wav");
    if (QFileInfo::exists(out)) return out;
    if (!QDir().mkpath(dir)) return {};

    const MediaEngineTable *engine = mediaEngine();
    if (!engine || !engine->synthesise(data, font, out)) return {};
    return out;
}

}  // namespace tw
