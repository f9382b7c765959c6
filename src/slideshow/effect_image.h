// The picture control of the slide shows (Image4 on the Slide Show tab, Image1 of the
// runner): it holds a picture and paints it with a transition and a paint effect over
// several passes, telling its owner at each pass (the paint notification) so that the owner
// can change the settings between passes. It keeps the settings the way the files and the
// dialogs hand them over: one set of grain, delay, wand, colour and transparency that the
// transition and the picture share, the owner switching them between the two.
#pragma once

#include "slideshow/effects.h"

#include <QImage>
#include <QPointer>
#include <QWidget>
#include <functional>
#include <memory>

namespace tw::slides {

// The clock of the slide shows. It runs on real time; a scenario switches it to a manual
// clock that moves only when told, and then the effects paint each pass in one go, so a test
// of a show takes no longer than its statements.
class SlideClock {
public:
    static bool manual();
    static void setManual(bool on);
    // Calls Fn once Ms milliseconds have passed on the clock (Ctx gone: never).
    static void after(QObject *ctx, int ms, std::function<void()> fn);
    static void advance(int ms);
    static qint64 now();
};

// 0xBBGGRR to a colour.
QColor bgr(uint32_t c);

class EffectImage : public QWidget {
    Q_OBJECT
public:
    // The pass mask has 64 levels: more passes would paint nothing more, so a pass count
    // above this (a damaged file) is played as this many.
    static constexpr int MaxPasses = 64;
    explicit EffectImage(QWidget *parent = nullptr);
    ~EffectImage() override;

    // The picture; a null image clears the control.
    void setPicture(const QImage &img);
    const QImage &picture() const { return picture_; }
    bool hasPicture() const { return !picture_.isNull(); }
    void clear();

    // Painting: off holds it; turning it on paints the picture with its effects (when the
    // effects are enabled), else plainly.
    void setAutoRepaint(bool on);
    bool autoRepaint() const { return autoRepaint_; }
    // Effect switch: turned off while painting, the pass under way finishes at once.
    void setEffectEnabled(bool on) { effectEnabled_ = on; }
    bool effectEnabled() const { return effectEnabled_; }
    bool painting() const { return running_; }

    // The effect slots.
    int TransitionEffect = NoEffect;
    int PaintEffect = 0;
    int PassCount = 1;
    int PassIndex = 1;
    int Grain = 5;
    int Delay = 10;
    int Wand = 0;
    uint32_t EffectColor = 0;
    bool Transparent = false;
    uint32_t TransparentColor = 0;
    int FillKind = 0;  // 0 none, 1 gradient, 2 pattern
    int GradientValue = 1;
    int FillValue = 4000;
    uint32_t PatternColor[4] = {255, 16711680, 255, 16711680};
    int Option = 256;

    // The frame round the picture: widths inner, outer, frame and their colours (0xBBGGRR).
    void setFrame(int inner, int outer, int frame, uint32_t innerColor, uint32_t outerColor,
                  uint32_t frameColor);
    int frameInner() const { return frame_[0]; }
    int frameOuter() const { return frame_[1]; }
    int frameWidth() const { return frame_[2]; }
    void setBackColor(const QColor &c);
    QColor backColor() const { return back_; }

    // The paint notification (pass, kind) and the end of a painting.
    std::function<void(int pass, int kind)> onNotify;
    std::function<void()> onPainted;
    std::function<void()> onClick;
    // Moving the mouse over the control switches its effect cursor: 0 while an effect runs,
    // 1 at rest (the demonstration shows the hand at rest, as something to click).
    void setCursorFollowsEffect(bool on) { cursorFollows_ = on; }
    int effectCursor() const { return running_ ? 0 : 1; }
    // What the last painting played: "T<n>" for the transition, "P<n>/<pass>" per pass.
    QStringList playLog() const { return log_; }
    // What the surface shows now.
    QImage surface() const { return surface_; }

protected:
    void paintEvent(QPaintEvent *) override;
    void resizeEvent(QResizeEvent *) override;
    void mousePressEvent(QMouseEvent *e) override;
    void mouseMoveEvent(QMouseEvent *e) override;

private:
    QRect contentRect() const;
    QImage composedPicture(QRect *pictureRect) const;
    void play();
    void runPass(int effect, const QImage &source, std::function<void()> then);
    void stepPass();
    void notify(int pass, int kind);
    void picturePasses(int pass);
    void finish();

    QImage picture_;
    QImage surface_;
    QColor back_ = Qt::black;
    int frame_[3] = {0, 0, 0};
    uint32_t frameColor_[3] = {0, 0, 0};
    bool autoRepaint_ = true;
    bool effectEnabled_ = true;
    bool running_ = false;
    bool cursorFollows_ = false;
    int generation_ = 0;
    QStringList log_;
    // The pass under way.
    std::unique_ptr<EffectPass> pass_;
    QImage passSource_, passBefore_;
    int step_ = 0;
    std::function<void()> passThen_;
    QImage source_;
    QRect pictureRect_;
    QImage fill_;
    QString fillKey_;
};

}  // namespace tw::slides
