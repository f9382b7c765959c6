// Keeps the desktop's screensaver away while a show runs: the freedesktop ScreenSaver
// Inhibit call on the session bus, released with UnInhibit. Without a session bus, or with
// no screensaver service on it, nothing happens.
#pragma once

#include <QString>
#include <cstdint>

namespace tw::slides {

class ScreenSaverInhibitor {
public:
    ScreenSaverInhibitor() = default;
    ~ScreenSaverInhibitor() { release(); }
    ScreenSaverInhibitor(const ScreenSaverInhibitor &) = delete;
    ScreenSaverInhibitor &operator=(const ScreenSaverInhibitor &) = delete;

    // True when the screensaver took the inhibition.
    bool inhibit(const QString &application, const QString &reason);
    void release();
    bool active() const { return active_; }

private:
    uint32_t cookie_ = 0;
    bool active_ = false;
};

}  // namespace tw::slides
