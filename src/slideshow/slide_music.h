// The music of a running slide show goes through this small interface, so that the runner
// does not depend on how sound is played. The media subsystem installs a factory for it;
// until one is installed a show runs silent (the player's failures are ignored, as the
// runner's rules allow).
#pragma once

#include <QString>
#include <functional>
#include <memory>

namespace tw::slides {

class SlideMusic {
public:
    // The play states the runner reads: 0 nothing open or ended, 2 playing, 6 ready.
    enum State { Closed = 0, Paused = 1, Playing = 2, Ready = 6 };
    virtual ~SlideMusic() = default;
    virtual void setEnabled(bool on) = 0;
    virtual int playState() const = 0;
    // Opens the file and starts it.
    virtual void play(const QString &path) = 0;
    virtual void pause() = 0;
    virtual void resume() = 0;
    virtual void stop() = 0;
};

using SlideMusicFactory = std::function<std::unique_ptr<SlideMusic>()>;
// Installs the player the runner makes for each show (an empty factory: no player).
void setSlideMusicFactory(SlideMusicFactory make);
const SlideMusicFactory &slideMusicFactory();
// The program's music player as the show's music, unless another factory is installed.
void installPlayerMusic();

}  // namespace tw::slides
