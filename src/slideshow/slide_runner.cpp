#include "slideshow/slide_runner.h"

#include "core/catalogue.h"
#include "core/globals.h"
#include "core/prompt.h"
#include "core/scenario_hooks.h"
#include "core/tab_page.h"
#include "core/tool_ids.h"
#include "core/tool_manager.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMainWindow>
#include <QScreen>
#include <QTimer>
#include <QtConcurrent/QtConcurrentRun>

namespace tw::slides {

namespace {

SlideMusicFactory &musicFactory()
{
    static SlideMusicFactory f;
    return f;
}
SlideDecoder &decoder()
{
    static SlideDecoder d;
    return d;
}
RunRecord &record()
{
    static RunRecord r;
    return r;
}
SlideRunner *liveRunner = nullptr;

// The key codes of the old runtime for the keys the show answers.
int keyCode(const QKeyEvent *e)
{
    const int k = e->key();
    if (k == Qt::Key_Escape) return 27;
    if (k == Qt::Key_End) return 35;
    if (k >= Qt::Key_F1 && k <= Qt::Key_F24) return 112 + (k - Qt::Key_F1);
    if (k >= Qt::Key_A && k <= Qt::Key_Z) return 65 + (k - Qt::Key_A);
    if (k >= Qt::Key_0 && k <= Qt::Key_9) return 48 + (k - Qt::Key_0);
    if (k == Qt::Key_Space) return 32;
    if (k == Qt::Key_Return || k == Qt::Key_Enter) return 13;
    return 0;
}

// A player for the scenarios: it records what the show asks of it, and a song ends when
// the scenario says so.
class RecordingMusic : public SlideMusic {
public:
    RecordingMusic() { current() = this; }
    ~RecordingMusic() override
    {
        if (current() == this) current() = nullptr;
    }
    static RecordingMusic *&current()
    {
        static RecordingMusic *c = nullptr;
        return c;
    }
    static QStringList &log()
    {
        static QStringList l;
        return l;
    }
    void setEnabled(bool on) override { (void)on; }
    int playState() const override { return state_; }
    void play(const QString &path) override
    {
        log() << QStringLiteral("play ") + path;
        state_ = Playing;
    }
    void pause() override
    {
        log() << QStringLiteral("pause");
        if (state_ == Playing) state_ = Paused;
    }
    void resume() override
    {
        log() << QStringLiteral("resume");
        if (state_ == Paused) state_ = Playing;
    }
    void stop() override
    {
        log() << QStringLiteral("stop");
        state_ = Closed;
    }
    void end() { state_ = Closed; }

private:
    int state_ = Closed;
};

}  // namespace

void setSlideMusicFactory(SlideMusicFactory make) { musicFactory() = std::move(make); }
const SlideMusicFactory &slideMusicFactory() { return musicFactory(); }
void setSlideDecoder(SlideDecoder d) { decoder() = std::move(d); }
const SlideDecoder &slideDecoder() { return decoder(); }
const RunRecord &lastRun() { return record(); }

SlideRunner::SlideRunner(PageHost &host, Entry entry, const QString &builderPath)
    : QDialog(host.window(), Qt::Dialog | Qt::FramelessWindowHint), host_(host)
{
    setObjectName(QStringLiteral("SLSRun1"));
    setWindowTitle(QStringLiteral("Slide Show"));
    setModal(true);
    Image1 = new EffectImage(this);
    Image1->setObjectName(QStringLiteral("Image1"));
    Image1->installEventFilter(this);
    Image1->onNotify = [this](int pass, int kind) { onNotify(pass, kind); };
    Image1->onPainted = [this] { afterPicture(); };
    liveRunner = this;
    slides::record() = RunRecord();
    loadWindow(entry, builderPath);
}

SlideRunner::~SlideRunner()
{
    if (liveRunner == this) liveRunner = nullptr;
    // Decodes still under way finish on their own; their results are not needed.
    for (auto &f : decoding_) f.waitForFinished();
}

void SlideRunner::loadWindow(Entry entry, const QString &builderPath)
{
    ShowPath.clear();
    FirstActivate = true;
    ShowAborted = false;
    Image1->clear();
    Image1->setCursor(Qt::CrossCursor);
    S = runnerDefaults();
    bool framed = true;
    if (entry == FromBuilder) {
        ShowPath = builderPath;
        readRunnerShowFile(ShowPath, &S, &show_);
    } else if (entry == OnFolder) {
        collectFolder();
    } else {
        QFileDialog d(host_.window());
        d.setOption(QFileDialog::DontUseNativeDialog, true);
        d.setWindowTitle(QStringLiteral("Open File to Run Slide Show"));
        d.setDefaultSuffix(QStringLiteral("SLS"));
        d.setNameFilter(QStringLiteral("Slide Show File (*.SLS)"));
        d.setDirectory(G.ProgramDir);
        d.setFileMode(QFileDialog::ExistingFile);
        if (d.exec() == QDialog::Accepted && !d.selectedFiles().isEmpty()) {
            ShowPath = d.selectedFiles().first();
            S = runnerDefaults();
            readRunnerShowFile(ShowPath, &S, &show_);
        } else {
            ShowAborted = true;
            framed = false;
        }
    }
    LastPicture = show_.lastPicture();
    if (framed) {
        if (S.OmitFrame) Image1->setFrame(0, 0, 0, S.FrameInnerColor, S.FrameOuterColor, S.FrameColor);
        else Image1->setFrame(2, 2, 5, S.FrameInnerColor, S.FrameOuterColor, S.FrameColor);
    }
    rec_.path = ShowPath;
    rec_.settings = S;
    rec_.lastPicture = LastPicture;
    rec_.frame[0] = Image1->frameInner();
    rec_.frame[1] = Image1->frameOuter();
    rec_.frame[2] = Image1->frameWidth();
    if (ShowAborted) {
        Image1->hide();
        FirstActivate = false;
    } else {
        if (QScreen *s = QGuiApplication::primaryScreen()) setGeometry(s->geometry());
        setWindowState(Qt::WindowFullScreen);
        Image1->setGeometry(0, 0, width(), height());
        if (slideMusicFactory()) player_ = slideMusicFactory()();
    }
    record();
    // The show begins from a timer, once the window is up.
    QTimer::singleShot(3, this, [this] { tick(); });
    SuppressTools quiet;
    for (const auto &id :
         {tool::mnuRunSlideShow, tool::mnuCreateSlideShow, tool::mnuRunSlideShowonCurrentFolder})
        host_.tools().setEnabled(id, false);
}

// The pictures of the explorer's folder, by the catalogue's picture rows; nothing else.
void SlideRunner::collectFolder()
{
    ExplorerSide *ex = host_.explorer();
    const QString folder = ex ? ex->listFolder() : QString();
    if (folder.isEmpty()) return;
    const QStringList names =
        QDir(folder).entryList(QStringList{QStringLiteral("*")}, QDir::Files, QDir::Name | QDir::IgnoreCase);
    const QString sep = folder.endsWith(u'/') ? QString() : QStringLiteral("/");
    for (const QString &n : names) {
        const int row = Cat.extRow(GetFileExt(n));
        if (row < PictureFirst || row > PictureLast) continue;
        if (show_.pictures.size() >= ShowPictureSlots) break;
        show_.pictures << folder + sep + n;
    }
}

void SlideRunner::showEvent(QShowEvent *e)
{
    QDialog::showEvent(e);
    if (!FirstActivate) return;
    const QColor back = bgr(S.PaintTransparentColor);
    QPalette pal = palette();
    pal.setColor(QPalette::Window, back);
    setPalette(pal);
    setAutoFillBackground(true);
    Image1->setBackColor(back);
    raise();
    activateWindow();
    Image1->setFocus();
    FirstActivate = false;
    inhibitScreenSaver(true);
}

void SlideRunner::tick()
{
    if (ShowAborted) {
        done(QDialog::Rejected);
        return;
    }
    slot_ = NextPicture;
    nextSlot();
}

QFuture<QImage> SlideRunner::decodeLater(const QString &path)
{
    auto it = decoding_.find(path);
    if (it != decoding_.end()) return *it;
    const SlideDecoder dec = slideDecoder();
    QFuture<QImage> f = QtConcurrent::run([dec, path] {
        QImage img;
        if (!dec || !dec(path, &img)) return QImage();
        return img;
    });
    decoding_.insert(path, f);
    return f;
}

// The test load: the picture decoded on the worker (already under way for every slide but
// the first), a failure caught before any effect is set up.
bool SlideRunner::testLoad(const QString &path, QImage *out)
{
    *out = path.isEmpty() ? QImage() : decodeLater(path).result();
    return !out->isNull();
}

void SlideRunner::nextSlot()
{
    if (closing_) return;
    if (slot_ > LastPicture) {
        done(QDialog::Accepted);
        return;
    }
    // Music: the next song starts at the first slide boundary after the last one ended.
    if (player_ && NextMusic < show_.music.size() && !show_.music[NextMusic].isEmpty()) {
        player_->setEnabled(true);
        const int st = player_->playState();
        if (st == SlideMusic::Closed || st == SlideMusic::Ready) {
            player_->play(show_.music[NextMusic]);
            rec_.music << show_.music[NextMusic];
            ++NextMusic;
        }
    }
    Image1->setAutoRepaint(false);
    Image1->setEffectEnabled(false);
    const QString path = show_.pictures.value(slot_);
    QImage img;
    const bool loaded = testLoad(path, &img);
    // The next slide decodes while this one shows.
    if (slot_ + 1 <= LastPicture) decodeLater(show_.pictures[slot_ + 1]);
    record();
    if (!loaded) {
        inform(QStringLiteral("File : ") + path + QStringLiteral(" Cannot be Displayed - Check File Path "),
               AppTitle, this);
        afterPicture();
        return;
    }
    Image1->setEffectEnabled(true);
    showPicture(img);
}

void SlideRunner::showPicture(const QImage &tested)
{
    if (ShowAborted) {
        afterPicture();
        return;
    }
    Image1->setAutoRepaint(false);
    Image1->setEffectEnabled(false);
    const QString path = show_.pictures.value(NextPicture);
    QImage img = path == show_.pictures.value(slot_) ? tested : QImage();
    if (img.isNull() && !path.isEmpty()) testLoad(path, &img);
    if (!img.isNull()) Image1->setPicture(img);
    rec_.shown << path;
    ++NextPicture;
    Image1->setEffectEnabled(true);
    EffectImage &im = *Image1;
    if (S.TransitionEffect != NoEffect) {
        im.TransitionEffect = S.TransitionEffect;
        im.PassCount = 1;
        im.PassIndex = 1;
        im.Grain = S.TransitionGrain;
        im.Delay = S.TransitionDelay;
        im.Wand = S.TransitionWand;
        im.EffectColor = S.TransitionColor;
        // The transition's own transparent switch and colour are not in the file.
        im.Transparent = false;
        im.TransparentColor = 0;
        im.FillKind = S.TransitionStyle >= 1000 ? 1 : 2;
        if (im.FillKind == 2) {
            im.GradientValue = S.GradientStyle;
        } else {
            im.FillValue = S.GradientFill;
            im.GradientValue = 1;
        }
        im.PatternColor[2] = S.PatternColor3;
        im.PatternColor[3] = S.PatternColor4;
        im.PatternColor[0] = S.PatternColor1;
        im.PatternColor[1] = S.PatternColor2;
    } else {
        im.FillKind = 0;
        im.TransitionEffect = NoEffect;
    }
    im.Option = S.EffectOption;
    im.PaintEffect = S.PaintEffect;
    im.PassCount = S.MultipleEffects ? S.SlidePasses : 1;
    im.PassIndex = 1;
    im.PatternColor[2] = S.PatternColor3;
    im.PatternColor[3] = S.PatternColor4;
    im.PatternColor[0] = S.PatternColor1;
    im.PatternColor[1] = S.PatternColor2;
    record();
    im.setAutoRepaint(true);
}

void SlideRunner::onNotify(int pass, int kind)
{
    EffectImage &im = *Image1;
    if (!ShowAborted) {
        im.setEffectEnabled(true);
        if (S.MultipleEffects && kind == 1 && pass >= 0 && pass < im.PassCount)
            im.PaintEffect = S.PaintEffect;
        if (kind == 1 && pass == 0) {
            im.Grain = S.PaintGrain;
            im.Delay = S.PaintDelay;
            im.Wand = S.PaintWand;
            im.EffectColor = S.PaintColor;
            im.Transparent = S.PaintTransparent;
            im.TransparentColor = S.PaintTransparentColor;
        }
        if (pass == im.PassCount && kind == 0) {
            im.PatternColor[2] = S.PatternColor3;
            im.PatternColor[3] = S.PatternColor4;
            im.PatternColor[0] = S.PatternColor1;
            im.PatternColor[1] = S.PatternColor2;
        }
        // The only point where keys get through during a show.
        runKeys();
    }
    if (ShowAborted) {
        // The effect ends at once instead of finishing its passes.
        im.setEffectEnabled(false);
        im.PaintEffect = NoEffect;
        im.TransitionEffect = NoEffect;
        im.PassCount = 1;
    }
}

void SlideRunner::afterPicture()
{
    if (closing_) return;
    rec_.played << Image1->playLog().join(u' ');
    Image1->setEffectEnabled(true);
    record();
    if (ShowAborted) {
        done(QDialog::Rejected);
        return;
    }
    // The wait: the window keeps painting, keys wait for the next painting.
    const qint64 ms = std::clamp<qint64>(qint64(S.SlideSeconds) * 1000, 0, 24LL * 3600 * 1000);
    SlideClock::after(this, int(ms), [this] {
        ++slot_;
        nextSlot();
    });
}

void SlideRunner::runKeys()
{
    while (!keys_.isEmpty() && !closing_) showKey(keys_.takeFirst());
}

void SlideRunner::showKey(int key)
{
    Image1->setEffectEnabled(false);
    if (key == 69 || key == 27 || key == 35) {
        ShowAborted = true;
        if (player_
            && (player_->playState() == SlideMusic::Playing || player_->playState() == SlideMusic::Closed))
            player_->stop();
    } else if (key == 112 || key == 80) {
        if (player_) player_->pause();
        inform(QStringLiteral("Pausing . . . Click OK to Continue..."), QString(), this);
        if (player_) player_->resume();
    }
    record();
}

// A press reaches the control when it has the focus and the window otherwise, never both
// (the control's filter takes it), so each press is queued once.
void SlideRunner::keyPressEvent(QKeyEvent *e)
{
    KeyHandled = true;
    if (const int k = keyCode(e)) keys_ << k;
    e->accept();
}

bool SlideRunner::eventFilter(QObject *o, QEvent *e)
{
    if (o == Image1 && e->type() == QEvent::KeyPress) {
        if (const int k = keyCode(static_cast<QKeyEvent *>(e))) keys_ << k;
        KeyHandled = false;
        return true;
    }
    return QDialog::eventFilter(o, e);
}

void SlideRunner::done(int r)
{
    if (closing_) return;
    closing_ = true;
    if (player_) {
        player_->stop();
        player_->setEnabled(false);
    }
    Image1->setAutoRepaint(false);
    inhibitScreenSaver(false);
    {
        SuppressTools quiet;
        for (const auto &id :
             {tool::mnuRunSlideShow, tool::mnuCreateSlideShow, tool::mnuRunSlideShowonCurrentFolder})
            host_.tools().setEnabled(id, true);
    }
    record();
    QDialog::done(r);
}

void SlideRunner::record()
{
    rec_.nextPicture = NextPicture;
    rec_.nextMusic = NextMusic;
    rec_.aborted = ShowAborted;
    rec_.inhibited = inhibited_;
    slides::record() = rec_;
}

// The desktop's screensaver stays off while a show runs.
void SlideRunner::inhibitScreenSaver(bool on)
{
    if (on) inhibited_ = screenSaver_.inhibit(AppTitle, QStringLiteral("Slide show"));
    else screenSaver_.release(), inhibited_ = false;
}

void runSlideShow(PageHost &host, SlideRunner::Entry entry, const QString &builderPath)
{
    SlideRunner r(host, entry, builderPath);
    r.exec();
}

void registerRunnerScenarioHooks()
{
    registerScenarioRoutine(QStringLiteral("SetSlideClock"), [](const QStringList &a) {
        const QString mode = a.value(0);
        if (mode != QLatin1String("manual") && mode != QLatin1String("real"))
            return QStringLiteral("SetSlideClock takes manual or real");
        SlideClock::setManual(mode == QLatin1String("manual"));
        return QString();
    });
    registerScenarioRoutine(QStringLiteral("AdvanceSlideClock"), [](const QStringList &a) {
        bool ok = false;
        const int ms = a.value(0).toInt(&ok);
        if (!ok || !SlideClock::manual())
            return QStringLiteral("AdvanceSlideClock needs the manual clock and milliseconds");
        SlideClock::advance(ms);
        return QString();
    });
    registerScenarioRoutine(QStringLiteral("UseTestSlideMusic"), [](const QStringList &) {
        RecordingMusic::log().clear();
        setSlideMusicFactory([] { return std::make_unique<RecordingMusic>(); });
        return QString();
    });
    registerScenarioRoutine(QStringLiteral("EndSlideMusic"), [](const QStringList &) {
        if (!RecordingMusic::current()) return QStringLiteral("no test music player");
        RecordingMusic::current()->end();
        return QString();
    });
    registerScenarioVariables(QStringLiteral("SLSRun1"), [](const QString &name, QString *out) {
        const RunRecord &r = record();
        auto b = [](bool v) { return v ? QStringLiteral("true") : QStringLiteral("false"); };
        if (name == QLatin1String("ShowAborted")) *out = b(r.aborted);
        else if (name == QLatin1String("NextPicture")) *out = QString::number(r.nextPicture);
        else if (name == QLatin1String("NextMusic")) *out = QString::number(r.nextMusic);
        else if (name == QLatin1String("LastPicture")) *out = QString::number(r.lastPicture);
        else if (name == QLatin1String("ShowPath")) *out = r.path;
        else if (name == QLatin1String("ShowShown")) *out = r.shown.join(u'|');
        else if (name == QLatin1String("ShowMusicStarted")) *out = r.music.join(u'|');
        else if (name == QLatin1String("ShowPlayed")) *out = r.played.join(u'|');
        else if (name == QLatin1String("ShowFrame"))
            *out = QStringLiteral("%1 %2 %3").arg(r.frame[0]).arg(r.frame[1]).arg(r.frame[2]);
        else if (name == QLatin1String("TestMusicLog")) *out = RecordingMusic::log().join(u'|');
        else if (name == QLatin1String("SlideClock")) *out = QString::number(SlideClock::now());
        else if (name.startsWith(QLatin1String("SLS"))) {
            const QString f = name.mid(3);
            for (int i = 0; i < ShowSettings::FieldCount; ++i)
                if (f == QLatin1String(ShowSettings::fieldName(i))) {
                    const int64_t v = r.settings.field(i);
                    *out = i >= 14 && i <= 16 ? b(v == 1) : QString::number(v);
                    return true;
                }
            return false;
        } else return false;
        return true;
    });
}

}  // namespace tw::slides
