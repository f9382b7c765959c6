#include "media/media_player.h"

#include "core/catalogue.h"
#include "media/media_engine.h"
#include "media/media_lists.h"
#include "media/midi_render.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QSlider>
#include <QVBoxLayout>

#include <clocale>
#include <cstring>

namespace tw {

namespace {
bool s_headless = false;
// The engine's calls; set when the first player makes its engine.
const MediaEngineTable *E = nullptr;

void wakeup(void *ctx)
{
    QMetaObject::invokeMethod(static_cast<MediaPlayer *>(ctx), "onMpvEvents", Qt::QueuedConnection);
}
void renderUpdate(void *ctx)
{
    QMetaObject::invokeMethod(static_cast<MediaPlayer *>(ctx), "onRenderUpdate", Qt::QueuedConnection);
}

QString clock(double s)
{
    if (s < 0) s = 0;
    const int t = int(s);
    return QStringLiteral("%1:%2").arg(t / 60).arg(t % 60, 2, 10, QLatin1Char('0'));
}

// The surface the video picture is painted on; the player paints it.
class Surface : public QWidget {
public:
    Surface(QImage *frame, QWidget *parent) : QWidget(parent), frame_(frame)
    {
        setObjectName(QStringLiteral("VideoSurface"));
        setAttribute(Qt::WA_OpaquePaintEvent);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter p(this);
        p.fillRect(rect(), Qt::black);
        if (frame_->isNull()) return;
        const QSize s = frame_->size().scaled(size(), Qt::KeepAspectRatio);
        p.drawImage(QRect(QPoint((width() - s.width()) / 2, (height() - s.height()) / 2), s), *frame_);
    }

private:
    QImage *frame_;
};
}  // namespace

void MediaPlayer::setHeadless(bool on) { s_headless = on; }

MediaPlayer::MediaPlayer(bool video, QWidget *parent) : QWidget(parent), video_(video)
{
    auto *lay = new QVBoxLayout(this);
    lay->setContentsMargins(0, 0, 0, 0);
    lay->setSpacing(1);
    if (video_) {
        surface_ = new Surface(&frame_, this);
        lay->addWidget(surface_, 1);
    } else {
        lay->addStretch(1);
    }
    display_ = new QLabel(this);
    display_->setObjectName(QStringLiteral("DisplayPanel"));
    display_->setFrameShape(QFrame::Panel);
    lay->addWidget(display_);
    strip_ = new QWidget(this);
    strip_->setObjectName(QStringLiteral("ControlStrip"));
    auto *sl = new QHBoxLayout(strip_);
    sl->setContentsMargins(2, 0, 2, 0);
    position_w_ = new QWidget(strip_);
    position_w_->setObjectName(QStringLiteral("PositionControls"));
    auto *pl = new QHBoxLayout(position_w_);
    pl->setContentsMargins(0, 0, 0, 0);
    seek_ = new QSlider(Qt::Horizontal, position_w_);
    seek_->setObjectName(QStringLiteral("SeekBar"));
    seek_->setRange(0, 0);
    time_ = new QLabel(clock(0) + QStringLiteral(" / ") + clock(0), position_w_);
    time_->setObjectName(QStringLiteral("TimeDisplay"));
    pl->addWidget(seek_, 1);
    pl->addWidget(time_);
    audio_ = new QWidget(strip_);
    audio_->setObjectName(QStringLiteral("AudioControls"));
    auto *al = new QHBoxLayout(audio_);
    al->setContentsMargins(0, 0, 0, 0);
    volume_ = new QSlider(Qt::Horizontal, audio_);
    volume_->setObjectName(QStringLiteral("Volume"));
    volume_->setRange(0, 100);
    volume_->setValue(100);
    volume_->setMaximumWidth(90);
    al->addWidget(new QLabel(QStringLiteral("Volume"), audio_));
    al->addWidget(volume_);
    sl->addWidget(position_w_, 1);
    sl->addWidget(audio_);
    lay->addWidget(strip_);
    status_ = new QLabel(this);
    status_->setObjectName(QStringLiteral("StatusBar"));
    status_->setFrameShape(QFrame::Panel);
    status_->setFrameShadow(QFrame::Sunken);
    lay->addWidget(status_);

    connect(volume_, &QSlider::valueChanged, this, [this](int v) {
        if (!mpv_) return;
        double d = v;
        E->set_property(mpv_, "volume", MPV_FORMAT_DOUBLE, &d);
    });
    connect(seek_, &QSlider::sliderPressed, this, [this] { seekDragging_ = true; });
    connect(seek_, &QSlider::sliderReleased, this, [this] {
        seekDragging_ = false;
        if (loaded_)
            command({QStringLiteral("seek"), QString::number(seek_->value()), QStringLiteral("absolute")});
    });
    updateParts();
    updateTexts();
}

MediaPlayer::~MediaPlayer()
{
    // No call may reach this object from mpv's threads once it is going.
    if (render_) {
        E->render_set_update_callback(render_, nullptr, nullptr);
        E->render_free(render_);
    }
    if (mpv_) {
        E->set_wakeup_callback(mpv_, nullptr, nullptr);
        E->terminate_destroy(mpv_);
    }
}

bool MediaPlayer::ensureEngine()
{
    if (mpv_) return true;
    E = mediaEngine();
    if (!E) return false;
    // mpv refuses to start under a numeric locale other than "C".
    std::setlocale(LC_NUMERIC, "C");
    mpv_ = E->create();
    if (!mpv_) return false;
    E->set_option_string(mpv_, "config", "no");
    E->set_option_string(mpv_, "terminal", "no");
    E->set_option_string(mpv_, "input-default-bindings", "no");
    E->set_option_string(mpv_, "idle", "yes");
    E->set_option_string(mpv_, "keep-open", "no");
    E->set_option_string(mpv_, "audio-fallback-to-null", "yes");
    E->set_option_string(mpv_, "audio-display", "no");
    E->set_option_string(mpv_, "ytdl", "no");
    E->set_option_string(mpv_, "load-scripts", "no");
    E->set_option_string(mpv_, "osc", "no");
    if (s_headless) E->set_option_string(mpv_, "ao", "null");
    if (video_) E->set_option_string(mpv_, "vo", "libmpv");
    else {
        E->set_option_string(mpv_, "vo", "null");
        E->set_option_string(mpv_, "vid", "no");
    }
    if (E->initialize(mpv_) < 0) {
        E->terminate_destroy(mpv_);
        mpv_ = nullptr;
        return false;
    }
    E->observe_property(mpv_, 1, "pause", MPV_FORMAT_FLAG);
    E->observe_property(mpv_, 2, "duration", MPV_FORMAT_DOUBLE);
    E->observe_property(mpv_, 3, "time-pos", MPV_FORMAT_DOUBLE);
    E->observe_property(mpv_, 4, "playback-time", MPV_FORMAT_DOUBLE);
    E->observe_property(mpv_, 5, "dwidth", MPV_FORMAT_INT64);
    E->observe_property(mpv_, 6, "dheight", MPV_FORMAT_INT64);
    E->observe_property(mpv_, 7, "idle-active", MPV_FORMAT_FLAG);
    E->set_wakeup_callback(mpv_, wakeup, this);
    if (video_) {
        mpv_render_param params[] = {{MPV_RENDER_PARAM_API_TYPE, const_cast<char *>(MPV_RENDER_API_TYPE_SW)},
                                     {MPV_RENDER_PARAM_INVALID, nullptr}};
        if (E->render_create(&render_, mpv_, params) >= 0)
            E->render_set_update_callback(render_, renderUpdate, this);
        else render_ = nullptr;
    }
    double vol = volume_->value();
    E->set_property(mpv_, "volume", MPV_FORMAT_DOUBLE, &vol);
    return true;
}

void MediaPlayer::command(const QStringList &args)
{
    if (!mpv_) return;
    std::vector<QByteArray> bytes;
    bytes.reserve(size_t(args.size()));
    for (const QString &a : args) bytes.push_back(a.toUtf8());
    std::vector<const char *> argv;
    for (const QByteArray &b : bytes) argv.push_back(b.constData());
    argv.push_back(nullptr);
    E->command(mpv_, argv.data());
}

void MediaPlayer::setFlag(const char *name, bool on)
{
    if (!mpv_) return;
    int f = on ? 1 : 0;
    E->set_property(mpv_, name, MPV_FORMAT_FLAG, &f);
}

void MediaPlayer::setFileName(const QString &path)
{
    fileName_ = path;
    updateTexts();
    if (!ensureEngine()) return;
    load(!autoStart_);
}

void MediaPlayer::load(bool startPaused)
{
    if (fileName_.isEmpty()) return;
    // MIDI has no decoder in mpv: the synthesiser renders it to sound first.
    const QString ext = GetFileExt(fileName_).toUpper();
    opened_ = fileName_;
    if (ext == QLatin1String("MID") || ext == QLatin1String("RMI")) {
        const QString wav = renderMidi(fileName_);
        if (!wav.isEmpty()) opened_ = wav;
    }
    loaded_ = false;
    lastEnd_ = -1;
    filesOpened_ = 0;
    stopped_ = startPaused;
    paused_ = startPaused;
    playbackTime_ = -1;
    natural_ = QSize();
    frame_ = QImage();
    setFlag("pause", startPaused);
    const QStringList entries = playListEntries(opened_);
    if (entries.isEmpty()) {
        command({QStringLiteral("loadfile"), opened_, QStringLiteral("replace")});
    } else {
        // A list file of the player's own kind hands its entries over one after another.
        command({QStringLiteral("loadfile"), entries.first(), QStringLiteral("replace")});
        for (int i = 1; i < entries.size(); ++i)
            command({QStringLiteral("loadfile"), entries[i], QStringLiteral("append")});
    }
    setState(startPaused ? Stopped : Waiting);
}

void MediaPlayer::play()
{
    if (!ensureEngine()) return;
    if (!loaded_ && state_ != Waiting) {
        load(false);
        return;
    }
    stopped_ = false;
    setFlag("pause", false);
    if (state_ == Stopped) setState(Waiting);
}

void MediaPlayer::pause()
{
    if (!mpv_ || !loaded_) return;
    setFlag("pause", true);
}

void MediaPlayer::stop()
{
    if (!mpv_) return;
    stopped_ = true;
    setFlag("pause", true);
    if (loaded_) command({QStringLiteral("seek"), QStringLiteral("0"), QStringLiteral("absolute")});
    setState(Stopped);
}

void MediaPlayer::setState(int s)
{
    if (s == state_) return;
    const int old = state_;
    state_ = s;
    updateTexts();
    emit stateChanged(old, s);
}

void MediaPlayer::onMpvEvents()
{
    while (mpv_) {
        mpv_event *ev = E->wait_event(mpv_, 0);
        if (!ev || ev->event_id == MPV_EVENT_NONE) break;
        switch (ev->event_id) {
        case MPV_EVENT_FILE_LOADED:
            loaded_ = true;
            ++filesOpened_;
            setState(paused_ ? (stopped_ ? Stopped : Paused) : Playing);
            break;
        case MPV_EVENT_END_FILE: {
            auto *ef = static_cast<mpv_event_end_file *>(ev->data);
            // The next entry of a list file follows by itself; when nothing is left mpv goes
            // idle, and only then has the file (or the list) ended.
            if (ef->reason == MPV_END_FILE_REASON_EOF || ef->reason == MPV_END_FILE_REASON_ERROR) {
                lastEnd_ = ef->reason;
                // Read late (a busy machine), the player may be idle already: a load that
                // failed at once leaves idle-active as it was, and no change of it is told.
                int idle = 0;
                if (E->get_property(mpv_, "idle-active", MPV_FORMAT_FLAG, &idle) >= 0 && idle) wentIdle();
            }
            break;
        }
        case MPV_EVENT_IDLE:
            wentIdle();
            break;
        case MPV_EVENT_PROPERTY_CHANGE: {
            auto *p = static_cast<mpv_event_property *>(ev->data);
            const char *n = p->name;
            if (!std::strcmp(n, "pause") && p->format == MPV_FORMAT_FLAG) {
                paused_ = *static_cast<int *>(p->data) != 0;
                if (loaded_) setState(paused_ ? (stopped_ ? Stopped : Paused) : Playing);
            } else if (!std::strcmp(n, "idle-active") && p->format == MPV_FORMAT_FLAG) {
                if (*static_cast<int *>(p->data)) wentIdle();
            } else if (!std::strcmp(n, "duration")) {
                duration_ = p->format == MPV_FORMAT_DOUBLE ? *static_cast<double *>(p->data) : 0;
                seek_->setRange(0, int(duration_));
                updateTexts();
            } else if (!std::strcmp(n, "time-pos")) {
                position_ = p->format == MPV_FORMAT_DOUBLE ? *static_cast<double *>(p->data) : 0;
                if (!seekDragging_) seek_->setValue(int(position_));
                updateTexts();
            } else if (!std::strcmp(n, "playback-time") && p->format == MPV_FORMAT_DOUBLE) {
                playbackTime_ = *static_cast<double *>(p->data);
            } else if ((!std::strcmp(n, "dwidth") || !std::strcmp(n, "dheight"))
                       && p->format == MPV_FORMAT_INT64) {
                const int v = int(*static_cast<int64_t *>(p->data));
                if (!std::strcmp(n, "dwidth")) natural_.setWidth(v);
                else natural_.setHeight(v);
                if (natural_.width() > 0 && natural_.height() > 0) emit naturalSizeKnown(natural_);
            }
            break;
        }
        default:
            break;
        }
    }
}

void MediaPlayer::wentIdle()
{
    // The file (or the list) has ended once: whichever of the signs of it comes first.
    if (lastEnd_ < 0) return;
    const bool eof = lastEnd_ == MPV_END_FILE_REASON_EOF;
    lastEnd_ = -1;
    loaded_ = false;
    stopped_ = true;
    setState(Stopped);
    if (eof) {
        ++endCount_;
        emit endOfStream(0);
    }
}

void MediaPlayer::onRenderUpdate()
{
    if (!render_) return;
    if (!(E->render_update(render_) & MPV_RENDER_UPDATE_FRAME)) return;
    // Every frame is drawn at the video's own size, also while the tab is not on show, so the
    // video runs on at its pace; the surface scales it when it paints.
    QSize s = natural_;
    if (s.width() <= 0 || s.height() <= 0 || s.width() > 8192 || s.height() > 8192) s = QSize(320, 240);
    if (frame_.size() != s) frame_ = QImage(s, QImage::Format_RGBX8888);
    int size[2] = {s.width(), s.height()};
    size_t stride = size_t(frame_.bytesPerLine());
    mpv_render_param params[] = {{MPV_RENDER_PARAM_SW_SIZE, size},
                                 {MPV_RENDER_PARAM_SW_FORMAT, const_cast<char *>("rgb0")},
                                 {MPV_RENDER_PARAM_SW_STRIDE, &stride},
                                 {MPV_RENDER_PARAM_SW_POINTER, frame_.bits()},
                                 {MPV_RENDER_PARAM_INVALID, nullptr}};
    E->render_render(render_, params);
    if (surface_) surface_->update();
}

void MediaPlayer::paintEvent(QPaintEvent *e) { QWidget::paintEvent(e); }

void MediaPlayer::setShowControls(bool on)
{
    showControls_ = on;
    updateParts();
}
void MediaPlayer::setShowAudioControls(bool on)
{
    showAudio_ = on;
    updateParts();
}
void MediaPlayer::setShowPositionControls(bool on)
{
    showPosition_ = on;
    updateParts();
}
void MediaPlayer::setShowDisplay(bool on)
{
    showDisplay_ = on;
    updateParts();
}
void MediaPlayer::setShowStatusBar(bool on)
{
    showStatus_ = on;
    updateParts();
}

void MediaPlayer::updateParts()
{
    strip_->setVisible(showControls_);
    audio_->setVisible(showAudio_);
    position_w_->setVisible(showPosition_);
    display_->setVisible(showDisplay_);
    status_->setVisible(showStatus_);
}

void MediaPlayer::updateTexts()
{
    time_->setText(clock(position_) + QStringLiteral(" / ") + clock(duration_));
    const QString name = QFileInfo(fileName_).fileName();
    display_->setText(name.isEmpty() ? QString() : name + QStringLiteral("   ") + clock(position_));
    switch (state_) {
    case Playing:
        status_->setText(QStringLiteral("Playing"));
        break;
    case Paused:
        status_->setText(QStringLiteral("Paused"));
        break;
    case Waiting:
        status_->setText(QStringLiteral("Opening"));
        break;
    case Stopped:
        status_->setText(QStringLiteral("Stopped"));
        break;
    default:
        status_->setText(QStringLiteral("Ready"));
    }
}

}  // namespace tw
