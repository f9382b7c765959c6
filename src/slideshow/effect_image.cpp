#include "slideshow/effect_image.h"

#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <algorithm>
#include <list>

namespace tw::slides {

namespace {

struct Pending {
    qint64 due;
    QPointer<QObject> ctx;
    std::function<void()> fn;
};
bool manualClock = false;
qint64 manualNow = 0;
std::list<Pending> &pending()
{
    static std::list<Pending> p;
    return p;
}

}  // namespace

bool SlideClock::manual() { return manualClock; }
void SlideClock::setManual(bool on)
{
    manualClock = on;
    pending().clear();
}
qint64 SlideClock::now() { return manualNow; }

void SlideClock::after(QObject *ctx, int ms, std::function<void()> fn)
{
    if (!manualClock) {
        QTimer::singleShot(std::max(0, ms), ctx, std::move(fn));
        return;
    }
    pending().push_back({manualNow + std::max(0, ms), ctx, std::move(fn)});
}

void SlideClock::advance(int ms)
{
    const qint64 target = manualNow + std::max(0, ms);
    // Waits fall due in the order of their time; a wait started by a callback counts from
    // the time the callback ran.
    for (;;) {
        auto &p = pending();
        auto next = std::min_element(p.begin(), p.end(),
                                     [](const Pending &a, const Pending &b) { return a.due < b.due; });
        if (next == p.end() || next->due > target) break;
        manualNow = std::max(manualNow, next->due);
        Pending item = std::move(*next);
        p.erase(next);
        if (item.ctx) item.fn();
    }
    manualNow = target;
}

QColor bgr(uint32_t c) { return QColor(int(c & 0xFF), int((c >> 8) & 0xFF), int((c >> 16) & 0xFF)); }

EffectImage::EffectImage(QWidget *parent) : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
}

EffectImage::~EffectImage() = default;

void EffectImage::setPicture(const QImage &img)
{
    picture_ = img;
    if (autoRepaint_ && !running_) {
        QRect pr;
        surface_ = composedPicture(&pr);
        update();
    }
}

void EffectImage::clear()
{
    ++generation_;
    running_ = false;
    pass_.reset();
    picture_ = QImage();
    surface_ = QImage();
    log_.clear();
    update();
}

void EffectImage::setFrame(int inner, int outer, int frame, uint32_t innerColor, uint32_t outerColor,
                           uint32_t frameColor)
{
    frame_[0] = std::max(0, inner);
    frame_[1] = std::max(0, outer);
    frame_[2] = std::max(0, frame);
    frameColor_[0] = innerColor;
    frameColor_[1] = outerColor;
    frameColor_[2] = frameColor;
    update();
}

void EffectImage::setBackColor(const QColor &c)
{
    back_ = c;
    update();
}

QRect EffectImage::contentRect() const
{
    const int m = frame_[0] + frame_[1] + frame_[2];
    return rect().adjusted(m, m, -m, -m);
}

// The picture fitted into the content area, centred, on the back colour.
QImage EffectImage::composedPicture(QRect *pictureRect) const
{
    const QSize size = contentRect().size().expandedTo(QSize(1, 1));
    QImage out(size, QImage::Format_RGB32);
    out.fill(back_);
    *pictureRect = QRect();
    if (picture_.isNull()) return out;
    QSize fit = picture_.size().scaled(size, Qt::KeepAspectRatio);
    fit = fit.expandedTo(QSize(1, 1));
    const QRect target((size.width() - fit.width()) / 2, (size.height() - fit.height()) / 2, fit.width(),
                       fit.height());
    QPainter p(&out);
    p.setRenderHint(QPainter::SmoothPixmapTransform);
    p.drawImage(target, picture_);
    *pictureRect = target;
    return out;
}

void EffectImage::setAutoRepaint(bool on)
{
    const bool was = autoRepaint_;
    autoRepaint_ = on;
    if (on && !was) play();
}

void EffectImage::play()
{
    const int gen = ++generation_;
    pass_.reset();
    log_.clear();
    source_ = composedPicture(&pictureRect_);
    if (surface_.size() != source_.size()) {
        surface_ = QImage(source_.size(), QImage::Format_RGB32);
        surface_.fill(back_);
    }
    if (!effectEnabled_ || picture_.isNull()) {
        surface_ = source_;
        running_ = false;
        update();
        if (onPainted) onPainted();
        return;
    }
    running_ = true;
    const bool transition = drawnEffect(TransitionEffect) != NoEffect && FillKind != 0;
    if (!transition) {
        picturePasses(0);
        return;
    }
    notify(0, 0);
    if (gen != generation_) return;
    FillSpec f;
    f.kind = FillKind;
    f.gradientValue = GradientValue;
    f.fillValue = FillValue;
    for (int i = 0; i < 4; ++i) f.colors[i] = bgr(PatternColor[i]);
    f.steps = Option;
    // A show keeps one fill for all its slides: it is made again only when it changes.
    const QString fillKey =
        QStringLiteral("%1 %2 %3 %4 %5 %6 %7 %8x%9")
            .arg(f.kind)
            .arg(f.gradientValue)
            .arg(f.fillValue)
            .arg(f.steps)
            .arg(PatternColor[0])
            .arg(PatternColor[1])
            .arg(QString::number(PatternColor[2]) + u' ' + QString::number(PatternColor[3]))
            .arg(source_.width())
            .arg(source_.height());
    if (fillKey != fillKey_ || fill_.isNull()) {
        fill_ = renderFill(f, source_.size());
        fillKey_ = fillKey;
    }
    const QImage fill = fill_;
    log_ << QStringLiteral("T%1").arg(TransitionEffect);
    runPass(TransitionEffect, fill, [this, gen] {
        notify(1, 0);
        if (gen == generation_) picturePasses(0);
    });
}

// The picture's passes: notify (0, 1) first, then each pass from the pass index to the pass
// count (read again after every notification: the owner may change it), notifying after each.
void EffectImage::picturePasses(int pass)
{
    const int gen = generation_;
    if (pass == 0) {
        notify(0, 1);
        if (gen != generation_) return;
        pass = std::max(1, PassIndex) - 1;
    }
    const int next = pass + 1;
    if (next > std::clamp(PassCount, 1, MaxPasses)) {
        finish();
        return;
    }
    const int passes = std::clamp(PassCount, 1, MaxPasses);
    const QImage layer =
        passLayer(source_, next, passes, Transparent, bgr(TransparentColor).rgb(), pictureRect_);
    log_ << QStringLiteral("P%1/%2").arg(PaintEffect).arg(next);
    runPass(PaintEffect, layer, [this, gen, next] {
        notify(next, 1);
        if (gen == generation_) picturePasses(next);
    });
}

void EffectImage::runPass(int effect, const QImage &source, std::function<void()> then)
{
    pass_ = std::make_unique<EffectPass>(effect, Grain, source.size(), uint32_t(generation_));
    passSource_ = source;
    passBefore_ = surface_;
    step_ = 0;
    passThen_ = std::move(then);
    stepPass();
}

void EffectImage::stepPass()
{
    const int gen = generation_;
    if (!pass_) return;
    QPainter p(&surface_);
    const bool instant = SlideClock::manual();
    for (;;) {
        ++step_;
        // The effect switched off: the pass under way ends at once.
        if (!effectEnabled_) step_ = pass_->steps();
        pass_->drawStep(p, step_, passSource_, passBefore_, Wand, bgr(EffectColor));
        if (step_ >= pass_->steps()) break;
        if (!instant) {
            p.end();
            update();
            // A pass never takes more than a minute, whatever delay a file asks for.
            const int delay = std::clamp(Delay, 0, std::max(1, 60000 / std::max(1, pass_->steps())));
            SlideClock::after(this, delay, [this, gen] {
                if (gen == generation_) stepPass();
            });
            return;
        }
    }
    p.end();
    update();
    pass_.reset();
    auto then = std::move(passThen_);
    passThen_ = nullptr;
    if (then) then();
}

void EffectImage::notify(int pass, int kind)
{
    if (onNotify) onNotify(pass, kind);
}

void EffectImage::finish()
{
    running_ = false;
    pass_.reset();
    update();
    if (onPainted) onPainted();
}

void EffectImage::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    QRect r = rect();
    // The frame from the outside in: outer, frame, inner.
    const int order[3] = {1, 2, 0};
    for (int i : order) {
        const int w = frame_[i];
        if (w <= 0) continue;
        QRegion ring = QRegion(r) - QRegion(r.adjusted(w, w, -w, -w));
        p.setClipRegion(ring);
        p.fillRect(r, bgr(frameColor_[i]));
        r.adjust(w, w, -w, -w);
    }
    p.setClipping(false);
    p.fillRect(r, back_);
    if (!surface_.isNull()) p.drawImage(r.topLeft(), surface_);
}

void EffectImage::mousePressEvent(QMouseEvent *e)
{
    if (onClick) onClick();
    QWidget::mousePressEvent(e);
}

void EffectImage::mouseMoveEvent(QMouseEvent *e)
{
    if (cursorFollows_) setCursor(effectCursor() == 0 ? Qt::ArrowCursor : Qt::PointingHandCursor);
    QWidget::mouseMoveEvent(e);
}

void EffectImage::resizeEvent(QResizeEvent *)
{
    if (!running_ && autoRepaint_ && !picture_.isNull()) {
        QRect pr;
        surface_ = composedPicture(&pr);
    }
}

}  // namespace tw::slides
