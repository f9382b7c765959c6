// SLSRun1: the window that runs a slide show full screen, borderless and modal. It reads the
// show by itself (or collects the pictures of a folder), paints each picture with the show's
// effects, waits the set seconds, keeps the music going, and closes at the end or on E,
// Escape or End. Keys are acted on only at the paint notifications, as they always were:
// the wait between slides keeps the window painting but lets no key through.
#pragma once

#include "slideshow/effect_image.h"
#include "slideshow/screensaver.h"
#include "slideshow/show_file.h"
#include "slideshow/slide_music.h"

#include <QDialog>
#include <QFuture>
#include <QHash>
#include <QImage>
#include <functional>
#include <memory>

namespace tw {
class PageHost;
}

namespace tw::slides {

// How the runner turns a path into a picture; it runs on a worker thread. True on success.
using SlideDecoder = std::function<bool(const QString &path, QImage *out)>;
void setSlideDecoder(SlideDecoder d);
const SlideDecoder &slideDecoder();

// What the last show did, for the scenarios after the window has closed.
struct RunRecord {
    QStringList shown;  // the pictures painted, in order
    QStringList music;  // the songs started, in order
    QStringList played;  // the effects of each painting: "T..", "P../pass" joined by blanks
    int nextPicture = 0, nextMusic = 0, lastPicture = -1;
    bool aborted = false;
    ShowSettings settings;
    QString path;
    int frame[3] = {0, 0, 0};
    bool inhibited = false;
};
const RunRecord &lastRun();

class SlideRunner : public QDialog {
    Q_OBJECT
public:
    enum Entry { AskForFile, FromBuilder, OnFolder };
    SlideRunner(PageHost &host, Entry entry, const QString &builderPath);
    ~SlideRunner() override;

    // The show: ShowPictures, ShowMusic and the runner's state.
    EffectImage *Image1 = nullptr;

protected:
    void keyPressEvent(QKeyEvent *e) override;
    bool eventFilter(QObject *o, QEvent *e) override;
    void showEvent(QShowEvent *e) override;
    void done(int r) override;

private:
    void loadWindow(Entry entry, const QString &builderPath);
    void collectFolder();
    void tick();
    void nextSlot();
    void afterPicture();
    void showPicture(const QImage &img);
    void onNotify(int pass, int kind);
    void showKey(int key);
    void runKeys();
    QFuture<QImage> decodeLater(const QString &path);
    bool testLoad(const QString &path, QImage *out);
    void record();
    void inhibitScreenSaver(bool on);

    PageHost &host_;
    ShowSettings S;
    RunnerShow show_;
    int LastPicture = -1;
    int NextPicture = 0, NextMusic = 0;
    int slot_ = 0;
    QString ShowPath;
    bool ShowAborted = false;
    bool FirstActivate = true;
    bool KeyHandled = false;
    bool closing_ = false;
    QList<int> keys_;
    std::unique_ptr<SlideMusic> player_;
    QHash<QString, QFuture<QImage>> decoding_;
    RunRecord rec_;
    ScreenSaverInhibitor screenSaver_;
    bool inhibited_ = false;
};

// Runs a show modally over the main window; the three slide-show tools are grey meanwhile.
void runSlideShow(PageHost &host, SlideRunner::Entry entry, const QString &builderPath);

// Scenario routines of the runner: the manual clock and a recording music player.
void registerRunnerScenarioHooks();
// The picture subsystem's decoder as the runner's, unless another was installed.
void installDefaultSlideDecoder();

}  // namespace tw::slides
