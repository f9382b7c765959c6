#include "media/mci_device.h"

#include <cdio/cdio.h>
#include <cdio/audio.h>
#include <cdio/logging.h>
#include <cdio/track.h>

namespace tw {

MciDevice::~MciDevice()
{
    if (cd_) cdio_destroy(cd_);
}

bool MciDevice::command(const QString &cmd)
{
    log << (deviceType.isEmpty() ? cmd : cmd + u':' + deviceType);
    lastError.clear();
    const bool cdAudio = deviceType.compare(QLatin1String("CDAudio"), Qt::CaseInsensitive) == 0;
    if (cmd == QLatin1String("Close")) {
        if (cd_) {
            cdio_audio_stop(cd_);
            cdio_destroy(cd_);
            cd_ = nullptr;
        }
        track_ = 0;
        return true;
    }
    if (cmd == QLatin1String("Open")) {
        if (!cdAudio) {
            lastError = QStringLiteral("The specified device is not open or is not recognized by MCI.");
            return false;
        }
        if (cd_) return true;
        cdio_log_set_handler([](cdio_log_level_t, const char *) {});
        cd_ = cdio_open(nullptr, DRIVER_DEVICE);
        if (!cd_) {
            lastError = QStringLiteral("There is no CD in the drive, or there is no drive.");
            return false;
        }
        const track_t first = cdio_get_first_track_num(cd_);
        const track_t n = cdio_get_num_tracks(cd_);
        if (first == CDIO_INVALID_TRACK || n == CDIO_INVALID_TRACK) {
            cdio_destroy(cd_);
            cd_ = nullptr;
            lastError = QStringLiteral("There is no CD in the drive.");
            return false;
        }
        first_ = first;
        last_ = first + n - 1;
        track_ = first_;
        return true;
    }
    if (!cd_) {
        lastError = QStringLiteral("The specified device is not open or is not recognized by MCI.");
        return false;
    }
    if (cmd == QLatin1String("Next")) {
        if (track_ < last_) ++track_;
        return true;
    }
    if (cmd == QLatin1String("Play")) {
        msf_t start, end;
        if (!cdio_get_track_msf(cd_, track_t(track_), &start)
            || !cdio_get_track_msf(cd_, CDIO_CDROM_LEADOUT_TRACK, &end))
            return false;
        return cdio_audio_play_msf(cd_, &start, &end) == DRIVER_OP_SUCCESS;
    }
    if (cmd == QLatin1String("Stop")) return cdio_audio_stop(cd_) == DRIVER_OP_SUCCESS;
    return false;
}

}  // namespace tw
