// The desktop's media keys: the program registers on the session bus as an MPRIS 2 player
// ("org.mpris.MediaPlayer2.tarnwick") whose play, pause, stop, next and previous act on the
// player of the tab in use and its play list, and which tells the track's title. With no
// session bus the program runs on without it, silently.
#pragma once

#include <QObject>
#include <QVariantMap>

namespace tw {

class PlayListPage;

class MprisPlayer : public QObject {
    Q_OBJECT
public:
    // The one registration of the program, made with the first player page; null with no bus.
    static MprisPlayer *attach(PlayListPage *page, int index);
    // A player's state or file changed: the bus is told.
    void changed();

    // The player the keys act on: the one of CurrentPlayer.
    QString playbackStatus() const;
    QVariantMap metadata() const;
    void play();
    void pause();
    void playPause();
    void stop();
    void next();
    void previous();
    void raise();

private:
    MprisPlayer();
    QString lastStatus_;
    QString lastFile_;
};

}  // namespace tw
