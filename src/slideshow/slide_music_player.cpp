// The music of a slide show, played by the program's own music player (libmpv through the
// media engine): one hidden player per show, its play states as the runner reads them.
#include "media/media_player.h"
#include "core/scenario_hooks.h"
#include "slideshow/slide_music.h"

#include <QGuiApplication>

namespace tw::slides {

namespace {
class PlayerMusic : public SlideMusic {
public:
    static PlayerMusic *&current()
    {
        static PlayerMusic *c = nullptr;
        return c;
    }
    ~PlayerMusic() override
    {
        if (current() == this) current() = nullptr;
    }
    PlayerMusic() : player_(false, nullptr)
    {
        current() = this;
        MediaPlayer::setHeadless(QGuiApplication::platformName() == QLatin1String("offscreen")
                                 || QGuiApplication::platformName() == QLatin1String("minimal"));
        player_.setAutoStart(true);
        player_.hide();
    }
    void setEnabled(bool on) override { player_.setEnabled(on); }
    int playState() const override
    {
        switch (player_.playState()) {
        case MediaPlayer::Playing:
        case MediaPlayer::Waiting:  // opening: the song is on its way
            return Playing;
        case MediaPlayer::Paused:
            return Paused;
        default:  // stopped, ended or nothing open
            return Closed;
        }
    }
    void play(const QString &path) override
    {
        player_.setFileName(path);
        if (player_.playState() != MediaPlayer::Playing) player_.play();
    }
    void pause() override { player_.pause(); }
    void resume() override { player_.play(); }
    void stop() override { player_.stop(); }
    QString fileName() const { return player_.fileName(); }

private:
    MediaPlayer player_;
};
}  // namespace

// The show's music is the music player's unless something else was installed.
void installPlayerMusic()
{
    if (!slideMusicFactory()) setSlideMusicFactory([] { return std::make_unique<PlayerMusic>(); });
    // What the show's player is doing, and in which file, for scenarios.
    registerScenarioVariables(QStringLiteral("SlideMusicPlayer"), [](const QString &name, QString *out) {
        PlayerMusic *m = PlayerMusic::current();
        if (name == QLatin1String("ShowMusicState"))
            *out = m ? QString::number(m->playState()) : QStringLiteral("none");
        else if (name == QLatin1String("ShowMusicFile")) *out = m ? m->fileName() : QString();
        else return false;
        return true;
    });
}

}  // namespace tw::slides
