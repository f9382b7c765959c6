// The media engine module: the table of mpv's calls, the MIDI synthesiser (FluidSynth) and the
// CD device (libcdio). Loaded by the program when the first media file arrives.
#include "media/mci_device.h"
#include "media/media_engine.h"

#include <QByteArray>
#include <QDataStream>
#include <QSaveFile>
#include <QString>
#include <cdio/cdio.h>
#include <cdio/audio.h>
#include <cdio/logging.h>
#include <cdio/track.h>
#include <fluidsynth.h>

#include <vector>

namespace tw {

namespace {
constexpr int Rate = 44100;
// A rendering stops after this many seconds of sound, whatever the file says.
constexpr int MaxSeconds = 30 * 60;

void silent(int, const char *, void *) {}

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

bool synthesise(const QByteArray &data, const QString &font, const QString &out)
{
    for (int level = FLUID_PANIC; level <= FLUID_DBG; ++level) fluid_set_log_function(level, silent, nullptr);
    fluid_settings_t *settings = new_fluid_settings();
    fluid_settings_setnum(settings, "synth.sample-rate", Rate);
    fluid_settings_setstr(settings, "player.timing-source", "sample");
    fluid_settings_setint(settings, "synth.lock-memory", 0);
    fluid_synth_t *synth = new_fluid_synth(settings);
    bool result = false;
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
                if (bytes > quint32(Rate / 2 / Block) * Block * 4 && f.commit()) result = true;
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

bool mciCommand(MciDevice &d, const QString &cmd)
{
    CdIo_t *&cd = d.cd_;
    const bool cdAudio = d.deviceType.compare(QLatin1String("CDAudio"), Qt::CaseInsensitive) == 0;
    if (cmd == QLatin1String("Close")) {
        if (cd) {
            cdio_audio_stop(cd);
            cdio_destroy(cd);
            cd = nullptr;
        }
        d.track_ = 0;
        return true;
    }
    if (cmd == QLatin1String("Open")) {
        if (!cdAudio) {
            d.lastError = QStringLiteral("The specified device is not open or is not recognized by MCI.");
            return false;
        }
        if (cd) return true;
        cdio_log_set_handler([](cdio_log_level_t, const char *) {});
        cd = cdio_open(nullptr, DRIVER_DEVICE);
        if (!cd) {
            d.lastError = QStringLiteral("There is no CD in the drive, or there is no drive.");
            return false;
        }
        const track_t first = cdio_get_first_track_num(cd);
        const track_t n = cdio_get_num_tracks(cd);
        if (first == CDIO_INVALID_TRACK || n == CDIO_INVALID_TRACK) {
            cdio_destroy(cd);
            cd = nullptr;
            d.lastError = QStringLiteral("There is no CD in the drive.");
            return false;
        }
        d.first_ = first;
        d.last_ = first + n - 1;
        d.track_ = d.first_;
        return true;
    }
    if (!cd) {
        d.lastError = QStringLiteral("The specified device is not open or is not recognized by MCI.");
        return false;
    }
    if (cmd == QLatin1String("Next")) {
        if (d.track_ < d.last_) ++d.track_;
        return true;
    }
    if (cmd == QLatin1String("Play")) {
        msf_t start, end;
        if (!cdio_get_track_msf(cd, track_t(d.track_), &start)
            || !cdio_get_track_msf(cd, CDIO_CDROM_LEADOUT_TRACK, &end))
            return false;
        return cdio_audio_play_msf(cd, &start, &end) == DRIVER_OP_SUCCESS;
    }
    if (cmd == QLatin1String("Stop")) return cdio_audio_stop(cd) == DRIVER_OP_SUCCESS;
    return false;
}

const MediaEngineTable s_table{MediaEngineVersion,
                               &mpv_create,
                               &mpv_initialize,
                               &mpv_set_option_string,
                               &mpv_command,
                               &mpv_set_property,
                               &mpv_get_property,
                               &mpv_observe_property,
                               &mpv_wait_event,
                               &mpv_set_wakeup_callback,
                               &mpv_terminate_destroy,
                               &mpv_render_context_create,
                               &mpv_render_context_set_update_callback,
                               &mpv_render_context_update,
                               &mpv_render_context_render,
                               &mpv_render_context_free,
                               &synthesise,
                               &mciCommand};
}  // namespace

}  // namespace tw

extern "C" __attribute__((visibility("default"))) const tw::MediaEngineTable *tw_media_engine_table()
{
    return &tw::s_table;
}
