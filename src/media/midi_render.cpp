#include "media/midi_render.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>
#include <fluidsynth.h>

#include <vector>

namespace tw {

namespace {
constexpr int Rate = 44100;
// A rendering stops after this many seconds of sound, whatever the file says.
constexpr int MaxSeconds = 30 * 60;

void silent(int, const char *, void *) {}

quint32 le32(const QByteArray &b, qsizetype at)
{
    const auto *p = reinterpret_cast<const unsigned char *>(b.constData() + at);
    return quint32(p[0]) | quint32(p[1]) << 8 | quint32(p[2]) << 16 | quint32(p[3]) << 24;
}

QByteArray wavHeader(quint32 dataBytes)
{
    QByteArray h;
    QDataStream s(&h, QIODevice::WriteOnly);
    s.setByteOrder(QDataStream::LittleEndian);
    s.writeRawData("RIFF", 4);
    s << quint32(36 + dataBytes);
    s.writeRawData("WAVEfmt ", 8);
    s << quint32(16) << quint16(1) << quint16(2) << quint32(Rate) << quint32(Rate * 4) << quint16(4)
      << quint16(16);
    s.writeRawData("data", 4);
    s << dataBytes;
    return h;
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

    for (int level = FLUID_PANIC; level <= FLUID_DBG; ++level) fluid_set_log_function(level, silent, nullptr);
    fluid_settings_t *settings = new_fluid_settings();
    fluid_settings_setnum(settings, "synth.sample-rate", Rate);
    fluid_settings_setstr(settings, "player.timing-source", "sample");
    fluid_settings_setint(settings, "synth.lock-memory", 0);
    fluid_synth_t *synth = new_fluid_synth(settings);
    QString result;
    if (synth && fluid_synth_sfload(synth, font.toLocal8Bit().constData(), 1) != FLUID_FAILED) {
        fluid_player_t *player = new_fluid_player(synth);
        if (player && fluid_player_add_mem(player, data.constData(), size_t(data.size())) == FLUID_OK
            && fluid_player_play(player) == FLUID_OK) {
            QSaveFile f(out);
            if (f.open(QIODevice::WriteOnly)) {
                f.write(wavHeader(0));
                constexpr int Block = 1024;
                std::vector<int16_t> buf(Block * 2);
                quint32 bytes = 0;
                const quint32 limit = quint32(MaxSeconds) * Rate * 4;
                while (fluid_player_get_status(player) == FLUID_PLAYER_PLAYING && bytes < limit) {
                    if (fluid_synth_write_s16(synth, Block, buf.data(), 0, 2, buf.data(), 1, 2) != FLUID_OK)
                        break;
                    f.write(reinterpret_cast<const char *>(buf.data()), Block * 4);
                    bytes += Block * 4;
                }
                // Half a second more, so the last notes die away.
                for (int i = 0; i < Rate / 2 / Block; ++i) {
                    fluid_synth_write_s16(synth, Block, buf.data(), 0, 2, buf.data(), 1, 2);
                    f.write(reinterpret_cast<const char *>(buf.data()), Block * 4);
                    bytes += Block * 4;
                }
                f.seek(0);
                f.write(wavHeader(bytes));
                // A file that gave no sound at all is no MIDI the synthesiser could play.
                if (bytes > quint32(Rate / 2 / Block) * Block * 4 && f.commit()) result = out;
                else f.cancelWriting();
            }
        }
        if (player) {
            fluid_player_stop(player);
            delete_fluid_player(player);
        }
    }
    if (synth) delete_fluid_synth(synth);
    delete_fluid_settings(settings);
    return result;
}

}  // namespace tw
