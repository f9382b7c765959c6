// The media player control on libmpv: a file name, play, pause and stop, the play state,
// the start-on-load switch, its own on-screen parts (control strip with the volume and the
// position controls, display panel, status bar) and the picture of a video drawn through
// mpv's software render API. The mpv engine is made when the player is first given a file,
// so a start of the program that plays nothing pays nothing for it.
#pragma once

#include <QImage>
#include <QString>
#include <QWidget>

struct mpv_handle;
struct mpv_render_context;

class QLabel;
class QSlider;

namespace tw {

class MediaPlayer : public QWidget {
    Q_OBJECT
public:
    // The play states as the control reports them.
    enum State { Stopped = 0, Paused = 1, Playing = 2, Waiting = 3, Closed = 6 };

    MediaPlayer(bool video, QWidget *parent);
    ~MediaPlayer() override;

    // Setting the file name opens the file (and plays it when the start-on-load switch is on).
    QString fileName() const { return fileName_; }
    void setFileName(const QString &path);
    void play();
    void pause();
    void stop();
    int playState() const { return state_; }
    bool autoStart() const { return autoStart_; }
    void setAutoStart(bool on) { autoStart_ = on; }

    // The on-screen parts.
    bool showControls() const { return showControls_; }
    void setShowControls(bool on);
    bool showAudioControls() const { return showAudio_; }
    void setShowAudioControls(bool on);
    bool showPositionControls() const { return showPosition_; }
    void setShowPositionControls(bool on);
    bool showDisplay() const { return showDisplay_; }
    void setShowDisplay(bool on);
    bool showStatusBar() const { return showStatus_; }
    void setShowStatusBar(bool on);

    // The natural size of the video in pixels (0 by 0 before one is known or for sound).
    QSize naturalSize() const { return natural_; }
    // Seconds played of the current file (mpv's playback time), -1 before the first frame.
    double playbackTime() const { return playbackTime_; }
    bool engineMade() const { return mpv_ != nullptr; }
    // How many times a file played to its end.
    int endCount() const { return endCount_; }
    // How many files mpv opened since the file name was last set (a list file opens several).
    int filesOpened() const { return filesOpened_; }
    // The file mpv actually opens (a MIDI file is rendered to sound first).
    QString openedFile() const { return opened_; }

    // With no screen (the offscreen platform) mpv gets no audio output either.
    static void setHeadless(bool on);

signals:
    void stateChanged(int oldState, int newState);
    void endOfStream(int result);
    void naturalSizeKnown(QSize size);

protected:
    void paintEvent(QPaintEvent *e) override;

private slots:
    void onMpvEvents();
    void onRenderUpdate();

private:
    bool ensureEngine();
    void load(bool startPaused);
    // mpv has gone idle after a file (or a list) that ended: the play state goes to Stopped.
    void wentIdle();
    void setState(int s);
    void updateParts();
    void updateTexts();
    void command(const QStringList &args);
    void setFlag(const char *name, bool on);

    bool video_;
    QString fileName_, opened_;
    bool autoStart_ = false;
    int state_ = Closed;
    bool loaded_ = false, paused_ = true, stopped_ = true;
    bool showControls_ = true, showAudio_ = true, showPosition_ = true, showDisplay_ = false,
         showStatus_ = false;
    double duration_ = 0, position_ = 0, playbackTime_ = -1;
    int endCount_ = 0, filesOpened_ = 0;
    int lastEnd_ = -1;  // why the last file ended, until mpv goes idle
    QSize natural_;
    QImage frame_;
    mpv_handle *mpv_ = nullptr;
    mpv_render_context *render_ = nullptr;

    QWidget *surface_ = nullptr, *strip_ = nullptr, *audio_ = nullptr, *position_w_ = nullptr;
    QSlider *volume_ = nullptr, *seek_ = nullptr;
    QLabel *time_ = nullptr, *display_ = nullptr, *status_ = nullptr;
    bool seekDragging_ = false;
};

}  // namespace tw
