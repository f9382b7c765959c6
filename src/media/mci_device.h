// The device that plays CD tracks and .DAT files beside the players (the MCI control of the
// old program): a command that takes "Open", "Close", "Play", "Stop" and "Next", a device
// type, and the notify, wait and shareable switches. CD audio goes through libcdio to the
// drive. Every failure (no drive, no disc, a device type nobody offers) is ignored, as the
// callers want; the commands are kept in a log that the tests read.
#pragma once

#include <QString>
#include <QStringList>

typedef struct _CdIo CdIo_t;

namespace tw {

class MciDevice {
public:
    MciDevice() = default;
    ~MciDevice();
    MciDevice(const MciDevice &) = delete;
    MciDevice &operator=(const MciDevice &) = delete;

    // Runs a command; false when it failed (which callers ignore).
    bool command(const QString &cmd);
    QString deviceType;
    bool notify = false, wait = false, shareable = false;

    bool isOpen() const { return cd_ != nullptr; }
    int track() const { return track_; }
    // The commands given, oldest first, each with the device type it was given under.
    QStringList log;
    QString lastError;

    // The drive, kept by the engine module.
    CdIo_t *cd_ = nullptr;
    int track_ = 0, first_ = 0, last_ = 0;
};

}  // namespace tw
