#include "media/mci_device.h"

#include "media/media_engine.h"

namespace tw {

MciDevice::~MciDevice()
{
    if (cd_)
        if (const MediaEngineTable *e = mediaEngine()) e->mciCommand(*this, QStringLiteral("Close"));
}

bool MciDevice::command(const QString &cmd)
{
    log << (deviceType.isEmpty() ? cmd : cmd + u':' + deviceType);
    lastError.clear();
    // A close of a device never opened needs no engine.
    if (cmd == QLatin1String("Close") && !cd_) {
        track_ = 0;
        return true;
    }
    const MediaEngineTable *e = mediaEngine();
    if (!e) {
        lastError = QStringLiteral("The media engine module libtw_mediaengine.so is missing.");
        return false;
    }
    return e->mciCommand(*this, cmd);
}

}  // namespace tw
