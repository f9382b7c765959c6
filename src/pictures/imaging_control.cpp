#include "pictures/imaging_control.h"

#include "core/fetch.h"

#include "pictures/imaging_errors.h"
#include "pictures/imaging_formats.h"
#include "pictures/codecs/magick_codec.h"
#include "pictures/picture_decoder.h"
#include "pictures/picture_saving.h"

#include <QApplication>
#include <QBuffer>
#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QImageWriter>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTemporaryFile>
#include <QTimer>
#include <QUrl>
#include <cmath>

namespace tw {

namespace {

QColor fromBgr(uint32_t bgr)
{
    return QColor(int(bgr & 0xFF), int((bgr >> 8) & 0xFF), int((bgr >> 16) & 0xFF));
}

// Scales a large picture down quickly and well: halving steps without filtering cost
// little, and the last step is smooth.
QImage downscale(const QImage &src, const QSize &target)
{
    QImage cur = src;
    while (cur.width() / 2 >= target.width() * 2 && cur.height() / 2 >= target.height() * 2)
        cur = cur.scaled(cur.width() / 2, cur.height() / 2, Qt::IgnoreAspectRatio, Qt::FastTransformation);
    return cur.scaled(target, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

}  // namespace

int windowsKeyCode(const QKeyEvent *e)
{
    const int k = e->key();
    const bool keypad = e->modifiers() & Qt::KeypadModifier;
    // Plus and minus of the numeric pad are 107 and 109; those of the main keyboard 187, 189.
    if (k == Qt::Key_Plus) return keypad ? 107 : 187;
    if (k == Qt::Key_Minus) return keypad ? 109 : 189;
    if (k == Qt::Key_Asterisk && keypad) return 106;
    if (k == Qt::Key_Slash && keypad) return 111;
    if (k >= Qt::Key_0 && k <= Qt::Key_9) return keypad ? 96 + (k - Qt::Key_0) : k;
    if (k >= Qt::Key_A && k <= Qt::Key_Z) return k;
    if (k >= Qt::Key_F1 && k <= Qt::Key_F24) return 112 + (k - Qt::Key_F1);
    switch (k) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return 13;
    case Qt::Key_Escape:
        return 27;
    case Qt::Key_Space:
        return 32;
    case Qt::Key_Left:
        return 37;
    case Qt::Key_Up:
        return 38;
    case Qt::Key_Right:
        return 39;
    case Qt::Key_Down:
        return 40;
    case Qt::Key_Delete:
        return 46;
    case Qt::Key_Insert:
        return 45;
    default:
        return k & 0xFF;
    }
}

ImagingControl::ImagingControl(QWidget *parent) : QAbstractScrollArea(parent)
{
    viewport()->setMouseTracking(true);
    viewport()->setAutoFillBackground(false);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    updateFrameStyle();
    magick::initialise();
}

ImagingControl::~ImagingControl()
{
    transfer_.reset();  // abandoned: its callback never runs
    delete pan_;
}

// ---------------------------------------------------------------- picture handle

void ImagingControl::setPicture(const Picture &p)
{
    pic_ = p;  // QImage shares pixels until written: the copy costs nothing now
    frame_ = 0;
    region_ = QPainterPath();  // a marked region belongs to the picture it was drawn on
    markingNow_ = false;
    pictureReplaced();
}

void ImagingControl::clearPicture()
{
    pic_ = Picture();
    frame_ = 0;
    freeRegion();
    pictureReplaced();
}

void ImagingControl::setImage(const QImage &img, int bits)
{
    Picture p;
    if (!img.isNull()) {
        p.frames.append(img.hasAlphaChannel() ? img.convertToFormat(QImage::Format_ARGB32)
                                              : img.convertToFormat(QImage::Format_RGB32));
        p.delaysMs.append(0);
        p.bitsPerPixel = bits;
    }
    setPicture(p);
}

QImage ImagingControl::image() const
{
    if (pic_.isNull()) return QImage();
    return pic_.frames.value(frame_, pic_.frames.first());
}

void ImagingControl::pictureReplaced()
{
    cacheKey_ = -1;
    cache_ = QImage();
    if (animTimer_) animTimer_->stop();
    applyAutoSize();
    updateScrollBars();
    if (animPlay_) startAnimation();
    scheduleRepaint();
    if (pan_) pan_->update();
}

int64_t ImagingControl::memorySize() const
{
    int64_t n = 0;
    for (const QImage &f : pic_.frames) n += f.sizeInBytes();
    return n;
}

// ---------------------------------------------------------------- files

int ImagingControl::load(const QString &path, int /*bitsPerPixel*/, int page, int pageCount)
{
    Picture p;
    lastDetail_.clear();
    const int status = decodePictureFile(path, std::max(page, 1), pageCount < 0, &p, &lastDetail_);
    if (status != ImagingOk) return status;
    p.sourceFile = path;
    freeRegion();
    setPicture(p);
    return ImagingOk;
}

int ImagingControl::getFileInfo(const QString &path, int page, int /*flags*/)
{
    FileFacts f;
    lastDetail_.clear();
    const int status = readPictureFacts(path, page, &f, &lastDetail_);
    if (status == ImagingOk) facts_ = f;
    return status;
}

int ImagingControl::save(const QString &path, int format, int bits, int quality, int mode)
{
    if (pic_.isNull()) return ImagingInvalidBitmap;
    QList<QImage> frames;
    if (mode == 1 && QFileInfo::exists(path)) {
        Picture existing;
        if (decodePictureFile(path, 1, true, &existing) == ImagingOk) frames = existing.frames;
    }
    frames.append(image());
    lastDetail_.clear();
    return writePictureFile(frames, path, format, bits, quality, pic_.sourceFile, &lastDetail_);
}

// ---------------------------------------------------------------- fetch

void ImagingControl::setReady(int state)
{
    readyState_ = state;
    emit readyStateChanged(state);
}

void ImagingControl::setSourceAddress(const QString &address)
{
    source_ = address;
    transfer_.reset();
    const QUrl url = QUrl::fromUserInput(address.trimmed());
    QString why;
    transfer_ = fetch::get(
        url, [this](const fetch::Result &r) { fetchFinished(r); }, &why);
    // The state reads "loading" at once, but the event that tells it comes from the event
    // loop, as every report of a transfer does: the caller finishes starting the fetch
    // before it hears anything of it.
    readyState_ = ReadyLoading;
    QMetaObject::invokeMethod(
        this, [this] { emit readyStateChanged(ReadyLoading); }, Qt::QueuedConnection);
    if (!transfer_) {
        // No network access at all: the fetch fails as a transfer that could not start.
        QMetaObject::invokeMethod(
            this,
            [this, why] {
                fetch::Result r;
                r.error = why;
                fetchFinished(r);
            },
            Qt::QueuedConnection);
    }
}

void ImagingControl::fetchFinished(const fetch::Result &r)
{
    transfer_.reset();  // it has ended
    if (!r.ok) {
        lastDetail_ = r.error;
        setReady(ReadyUninitialised);
        return;
    }
    const QByteArray &body = r.body;
    // The decoders read files; the body goes through a temporary one named like the
    // address so that formats known by their extension are found.
    const QString suffix = QFileInfo(r.url.path()).suffix();
    QTemporaryFile tmp(QDir::tempPath() + QStringLiteral("/tw-fetch-XXXXXX")
                       + (suffix.isEmpty() ? QString() : QStringLiteral(".") + suffix));
    Picture p;
    int status = ImagingInvalidFormat;
    if (!body.isEmpty() && tmp.open()) {
        tmp.write(body);
        tmp.flush();
        status = decodePictureFile(tmp.fileName(), 1, false, &p, &lastDetail_);
    }
    if (status != ImagingOk) {
        // The transfer finished but what came is no picture.
        setReady(ReadyInteractive);
        return;
    }
    freeRegion();
    setPicture(p);
    setReady(ReadyComplete);
    emit loadFinished();
}

// ---------------------------------------------------------------- sizes

double ImagingControl::bitmapWidth() const { return pic_.isNull() ? 0 : toUnit(pixelWidth()); }
double ImagingControl::bitmapHeight() const { return pic_.isNull() ? 0 : toUnit(pixelHeight()); }
int ImagingControl::pixelWidth() const { return pic_.isNull() ? 0 : pic_.frames.first().width(); }
int ImagingControl::pixelHeight() const { return pic_.isNull() ? 0 : pic_.frames.first().height(); }

void ImagingControl::setScaleUnit(int unit) { unit_ = unit == UnitTwips ? UnitTwips : UnitPixels; }

double ImagingControl::controlLeft() const { return toUnit(x()); }
double ImagingControl::controlTop() const { return toUnit(y()); }
double ImagingControl::controlWidth() const { return toUnit(width()); }
double ImagingControl::controlHeight() const { return toUnit(height()); }

void ImagingControl::setControlWidth(double w)
{
    resize(std::max(0, int(std::lround(fromUnit(w)))), height());
}

void ImagingControl::setControlHeight(double h)
{
    resize(width(), std::max(0, int(std::lround(fromUnit(h)))));
}

void ImagingControl::moveControl(double left, double top)
{
    move(int(std::lround(fromUnit(left))), int(std::lround(fromUnit(top))));
}

// ---------------------------------------------------------------- display

void ImagingControl::setSizeMode(int mode)
{
    sizeMode_ = (mode == SizeStretch || mode == SizeFit) ? mode : SizeNormal;
    updateScrollBars();
    applyAutoSize();
    scheduleRepaint();
}

void ImagingControl::setZoomPercent(int percent)
{
    zoom_ = std::max(1, percent);
    applyAutoSize();
    updateScrollBars();
    scheduleRepaint();
}

void ImagingControl::setAutoSize(bool on)
{
    autoSize_ = on;
    applyAutoSize();
}

void ImagingControl::applyAutoSize()
{
    if (!autoSize_ || pic_.isNull() || sizeMode_ != SizeNormal) return;
    const QSizeF d = displaySize();
    const int fw = frameWidth() * 2;
    const QSize want(int(std::ceil(d.width())) + fw, int(std::ceil(d.height())) + fw);
    if (want != size()) resize(want);
}

void ImagingControl::setAutoRepaint(bool on)
{
    autoRepaint_ = on;
    if (on && repaintOwed_) scheduleRepaint();
}

void ImagingControl::setDragPan(bool on)
{
    dragPan_ = on;
    if (!on) dragging_ = false;
}

void ImagingControl::setAnimationPlay(bool on)
{
    animPlay_ = on;
    if (on) startAnimation();
    else if (animTimer_) animTimer_->stop();
}

void ImagingControl::setAnimationLoop(bool on) { animLoop_ = on; }

void ImagingControl::startAnimation()
{
    if (pic_.frames.size() < 2) return;
    if (!animTimer_) {
        animTimer_ = new QTimer(this);
        animTimer_->setSingleShot(true);
        connect(animTimer_, &QTimer::timeout, this, &ImagingControl::nextFrame);
    }
    animTimer_->start(std::max(pic_.delaysMs.value(frame_, 100), 20));
}

void ImagingControl::nextFrame()
{
    if (!animPlay_ || pic_.frames.size() < 2) return;
    if (frame_ + 1 >= pic_.frames.size()) {
        if (!animLoop_) return;
        frame_ = 0;
    } else {
        ++frame_;
    }
    cacheKey_ = -1;
    // An animation paints its own frames, whatever auto repaint says.
    if (painting_) viewport()->update();
    startAnimation();
}

void ImagingControl::setPainting(bool on)
{
    painting_ = on;
    if (on) {
        repaintOwed_ = true;
        scheduleRepaint();
    }
}

void ImagingControl::scheduleRepaint()
{
    repaintOwed_ = true;
    if (!painting_) return;
    if (!autoRepaint_ && !(animPlay_ && pic_.frames.size() > 1)) return;
    repaintOwed_ = false;
    viewport()->update();
}

void ImagingControl::redraw()
{
    repaintOwed_ = false;
    viewport()->update();
    if (pan_) pan_->update();
}

void ImagingControl::setMousePointer(int p)
{
    pointer_ = p;
    updateCursor();
}

void ImagingControl::updateCursor()
{
    switch (pointer_) {
    case PointerCross:
        viewport()->setCursor(Qt::CrossCursor);
        break;
    case PointerHourglass:
        viewport()->setCursor(Qt::WaitCursor);
        break;
    default:
        if (markingMode_ == 3) viewport()->setCursor(Qt::CrossCursor);
        else viewport()->unsetCursor();
        break;
    }
}

void ImagingControl::setBackColor(uint32_t bgr)
{
    back_ = bgr;
    scheduleRepaint();
}

void ImagingControl::setSecondColor(uint32_t bgr) { second_ = bgr; }

void ImagingControl::setBorderStyle(int style)
{
    border_ = style;
    updateFrameStyle();
}

void ImagingControl::setAppearance3D(int look)
{
    look3D_ = look;
    updateFrameStyle();
}

void ImagingControl::updateFrameStyle()
{
    if (border_ == 0) setFrameStyle(QFrame::NoFrame);
    else if (look3D_ == 1) setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    else setFrameStyle(QFrame::Box | QFrame::Plain);
    applyAutoSize();
}

QSizeF ImagingControl::displaySize() const
{
    if (pic_.isNull()) return QSizeF(0, 0);
    const QSize px = pic_.frames.first().size();
    const QSizeF vp = viewport()->size();
    switch (sizeMode_) {
    case SizeStretch:
        return vp;
    case SizeFit: {
        const double s = std::min(vp.width() / px.width(), vp.height() / px.height());
        return QSizeF(px.width() * s, px.height() * s);
    }
    default:
        return QSizeF(px.width() * zoom_ / 100.0, px.height() * zoom_ / 100.0);
    }
}

QRectF ImagingControl::displayRect() const
{
    const QSizeF d = displaySize();
    if (sizeMode_ == SizeFit) {
        const QSizeF vp = viewport()->size();
        return QRectF(QPointF((vp.width() - d.width()) / 2, (vp.height() - d.height()) / 2), d);
    }
    if (sizeMode_ == SizeStretch) return QRectF(QPointF(0, 0), d);
    return QRectF(QPointF(-horizontalScrollBar()->value(), -verticalScrollBar()->value()), d);
}

double ImagingControl::displayScaleX() const
{
    return pic_.isNull() ? 1.0 : displaySize().width() / pixelWidth();
}

double ImagingControl::displayScaleY() const
{
    return pic_.isNull() ? 1.0 : displaySize().height() / pixelHeight();
}

QPointF ImagingControl::toBitmap(const QPointF &vp) const
{
    const QRectF r = displayRect();
    return QPointF((vp.x() - r.left()) / displayScaleX(), (vp.y() - r.top()) / displayScaleY());
}

QRectF ImagingControl::visibleBitmapRect() const
{
    if (pic_.isNull()) return QRectF();
    const QRectF vis = displayRect().intersected(QRectF(QPointF(0, 0), QSizeF(viewport()->size())));
    const QPointF a = toBitmap(vis.topLeft()), b = toBitmap(vis.bottomRight());
    return QRectF(a, b);
}

QPoint ImagingControl::scrollPosition() const
{
    return QPoint(horizontalScrollBar()->value(), verticalScrollBar()->value());
}

void ImagingControl::setScrollPosition(const QPoint &p)
{
    horizontalScrollBar()->setValue(p.x());
    verticalScrollBar()->setValue(p.y());
}

void ImagingControl::updateScrollBars()
{
    // Showing a scroll bar resizes the viewport, which comes back here: one pass at a time,
    // and a policy is only set when it changes (setting it lays the children out again).
    if (inScrollUpdate_) return;
    inScrollUpdate_ = true;
    auto policy = [this](Qt::ScrollBarPolicy p) {
        if (horizontalScrollBarPolicy() != p) setHorizontalScrollBarPolicy(p);
        if (verticalScrollBarPolicy() != p) setVerticalScrollBarPolicy(p);
    };
    if (pic_.isNull() || sizeMode_ != SizeNormal) {
        horizontalScrollBar()->setRange(0, 0);
        verticalScrollBar()->setRange(0, 0);
        policy(Qt::ScrollBarAlwaysOff);
        inScrollUpdate_ = false;
        return;
    }
    policy(Qt::ScrollBarAsNeeded);
    const QSizeF d = displaySize();
    // The room the picture has: all of the control inside its frame, less a scroll bar only
    // where the picture is wider or taller than that (a bar shown for an earlier, smaller
    // size of the control must not keep itself by the room it takes).
    const QSize picture(int(std::ceil(d.width())), int(std::ceil(d.height())));
    QSize vp = maximumViewportSize();
    const int barH = horizontalScrollBar()->sizeHint().height(),
              barW = verticalScrollBar()->sizeHint().width();
    bool needH = picture.width() > vp.width(), needV = picture.height() > vp.height();
    if (needH) needV = picture.height() > vp.height() - barH;
    if (needV) needH = picture.width() > vp.width() - barW;
    if (needH) vp.rheight() -= barH;
    if (needV) vp.rwidth() -= barW;
    horizontalScrollBar()->setRange(0, std::max(0, int(std::ceil(d.width())) - vp.width()));
    verticalScrollBar()->setRange(0, std::max(0, int(std::ceil(d.height())) - vp.height()));
    horizontalScrollBar()->setPageStep(vp.width());
    verticalScrollBar()->setPageStep(vp.height());
    horizontalScrollBar()->setSingleStep(20);
    verticalScrollBar()->setSingleStep(20);
    inScrollUpdate_ = false;
}

const QImage &ImagingControl::scaledPart(const QRect &source, const QSize &size) const
{
    if (cacheKey_ != frame_ || cacheSource_ != source || cacheSize_ != size || cache_.isNull()) {
        cache_ = QImage();  // the old copy goes before the new one is made
        const QImage &img = image();
        // The part is read where it lies in the picture, without a copy of it.
        const int bytes = img.depth() / 8;
        QImage part;
        if (img.depth() % 8 == 0 && bytes > 0)
            part = QImage(img.constScanLine(source.top()) + qsizetype(source.left()) * bytes, source.width(),
                          source.height(), img.bytesPerLine(), img.format());
        else part = img.copy(source);
        cache_ = downscale(part, size);
        cacheKey_ = frame_;
        cacheSource_ = source;
        cacheSize_ = size;
    }
    return cache_;
}

void ImagingControl::paintEvent(QPaintEvent *e)
{
    QPainter p(viewport());
    const QRect exposed = e->rect();
    const QColor back = fromBgr(back_);
    if (pic_.isNull()) {
        p.fillRect(exposed, back);
        ++paints_;
        emit painted();
        return;
    }
    const QRectF dr = displayRect();
    // Background around the picture only.
    QRegion around(exposed);
    around -= dr.toAlignedRect().intersected(exposed);
    for (const QRect &r : around) p.fillRect(r, back);

    const QImage &img = pic_.frames.value(frame_, pic_.frames.first());
    const double sx = dr.width() / img.width(), sy = dr.height() / img.height();
    if (sx < 1.0 || sy < 1.0) {
        // Smaller than the bitmap: the part of the picture that shows in the control is
        // scaled, once for this size and place, and painted from that copy. A zoom step on a
        // large picture touches only what shows, and memory stays near the picture's own.
        const QRectF shown = dr.intersected(QRectF(viewport()->rect()));
        if (!shown.isEmpty()) {
            const int x0 = std::clamp(int(std::floor((shown.left() - dr.left()) / sx)), 0, img.width() - 1);
            const int y0 = std::clamp(int(std::floor((shown.top() - dr.top()) / sy)), 0, img.height() - 1);
            const int x1 = std::clamp(int(std::ceil((shown.right() - dr.left()) / sx)), x0 + 1, img.width());
            const int y1 = std::clamp(int(std::ceil((shown.bottom() - dr.top()) / sy)), y0 + 1, img.height());
            // Where those pixels fall on the control, on whole pixels.
            const int left = int(std::lround(dr.left() + x0 * sx)),
                      top = int(std::lround(dr.top() + y0 * sy));
            const int right = int(std::lround(dr.left() + x1 * sx)),
                      bottom = int(std::lround(dr.top() + y1 * sy));
            const QRect place(left, top, std::max(1, right - left), std::max(1, bottom - top));
            const QImage &part = scaledPart(QRect(x0, y0, x1 - x0, y1 - y0), place.size());
            const QRect tgt = place.intersected(exposed);
            p.drawImage(tgt.topLeft(), part, tgt.translated(-place.topLeft()));
        }
    } else {
        // Only the exposed part of the bitmap is touched: a 24-megapixel picture repaints
        // as fast as a small one.
        const QRectF tgt = dr.intersected(QRectF(exposed));
        const QRectF src((tgt.left() - dr.left()) / sx, (tgt.top() - dr.top()) / sy, tgt.width() / sx,
                         tgt.height() / sy);
        if (sx == 1.0 && sy == 1.0) p.drawImage(tgt.topLeft(), img, src);
        else p.drawImage(tgt, img, src);
    }
    if (!region_.isEmpty()) {
        QTransform t;
        t.translate(dr.left(), dr.top());
        t.scale(sx, sy);
        const QPainterPath shown = t.map(region_);
        p.setRenderHint(QPainter::Antialiasing);
        p.setPen(QPen(Qt::white, 1, Qt::SolidLine));
        p.drawPath(shown);
        p.setPen(QPen(Qt::black, 1, Qt::DashLine));
        p.drawPath(shown);
    }
    ++paints_;
    emit painted();
}

void ImagingControl::resizeEvent(QResizeEvent *e)
{
    QAbstractScrollArea::resizeEvent(e);
    updateScrollBars();
    if (pan_) pan_->update();
}

void ImagingControl::scrollContentsBy(int, int)
{
    viewport()->update();
    if (pan_) pan_->update();
    emit scrolled();
}

bool ImagingControl::event(QEvent *e)
{
    // Mouse events that reach the control's own frame rather than its viewport (a click
    // on the border, or one sent to the control as a whole) count as the viewport's.
    switch (e->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove: {
        auto *me = static_cast<QMouseEvent *>(e);
        QMouseEvent mapped(me->type(), viewport()->mapFrom(this, me->position()), me->globalPosition(),
                           me->button(), me->buttons(), me->modifiers());
        if (e->type() == QEvent::MouseButtonPress) mousePressEvent(&mapped);
        else if (e->type() == QEvent::MouseButtonRelease) mouseReleaseEvent(&mapped);
        else if (e->type() == QEvent::MouseButtonDblClick) mouseDoubleClickEvent(&mapped);
        else mouseMoveEvent(&mapped);
        return true;
    }
    default:
        return QAbstractScrollArea::event(e);
    }
}

bool ImagingControl::viewportEvent(QEvent *e)
{
    if (e->type() == QEvent::Resize) updateScrollBars();
    return QAbstractScrollArea::viewportEvent(e);
}

// ---------------------------------------------------------------- mouse and keys

void ImagingControl::mousePressEvent(QMouseEvent *e)
{
    setFocus(Qt::MouseFocusReason);
    if (e->button() == Qt::LeftButton) {
        if (markingMode_ == 3 && !pic_.isNull()) {
            markingNow_ = true;
            markStart_ = toBitmap(e->position());
            regionBeforeMark_ = region_;
            region_ = QPainterPath();
            viewport()->update();
        } else if (dragPan_ && !magnifier_) {
            dragging_ = true;
            dragStart_ = e->position().toPoint();
            scrollStart_ = scrollPosition();
        }
    }
    if (magnifier_) magnifyAt(e->position().toPoint());
    e->accept();
}

void ImagingControl::mouseMoveEvent(QMouseEvent *e)
{
    const QPoint pos = e->position().toPoint();
    if (markingNow_) {
        const QPointF now = toBitmap(e->position());
        region_ = QPainterPath();
        region_.addEllipse(QRectF(markStart_, now).normalized());
        viewport()->update();
    } else if (dragging_ && (e->buttons() & Qt::LeftButton)) {
        setScrollPosition(scrollStart_ - (pos - dragStart_));
    }
    if (magnifier_) magnifyAt(pos);
    e->accept();
}

void ImagingControl::mouseReleaseEvent(QMouseEvent *e)
{
    const int shift = int((e->modifiers() & Qt::ShiftModifier) ? 1 : 0)
        | int((e->modifiers() & Qt::ControlModifier) ? 2 : 0)
        | int((e->modifiers() & Qt::AltModifier) ? 4 : 0);
    const int button = e->button() == Qt::LeftButton ? 1 : e->button() == Qt::RightButton ? 2 : 4;
    if (markingNow_) {
        markingNow_ = false;
        // A click without a drag draws nothing and keeps the region marked before.
        const QRectF r = region_.boundingRect();
        if (r.width() < 1 || r.height() < 1) region_ = regionBeforeMark_;
        viewport()->update();
    }
    dragging_ = false;
    const QPointF bp = toBitmap(e->position());
    emit mouseUp(button, shift, toUnit(bp.x()), toUnit(bp.y()));
    if (e->button() == Qt::LeftButton && rect().contains(e->position().toPoint() + viewport()->pos()))
        emit clicked();
    e->accept();
}

void ImagingControl::mouseDoubleClickEvent(QMouseEvent *e)
{
    if (e->button() == Qt::LeftButton) emit doubleClicked();
    e->accept();
}

void ImagingControl::keyPressEvent(QKeyEvent *e)
{
    const int shift = int((e->modifiers() & Qt::ShiftModifier) ? 1 : 0)
        | int((e->modifiers() & Qt::ControlModifier) ? 2 : 0)
        | int((e->modifiers() & Qt::AltModifier) ? 4 : 0);
    emit keyDown(windowsKeyCode(e), shift);
    e->accept();
}

void ImagingControl::leaveEvent(QEvent *e)
{
    if (magnifier_) magnifier_->hide();
    QAbstractScrollArea::leaveEvent(e);
}

// ---------------------------------------------------------------- magnifier

void ImagingControl::startMagnifier(double glassWidth, double glassHeight, int16_t zoomPercent, int32_t,
                                    uint32_t borderColor, bool crosshair, double, bool, int16_t, bool, bool)
{
    stopMagnifier();
    magnifier_ = new MagnifierGlass(this, QSize(int(glassWidth), int(glassHeight)),
                                    std::max<int>(zoomPercent, 1), borderColor, crosshair);
    dragging_ = false;
    const QPoint at = viewport()->mapFromGlobal(QCursor::pos());
    if (viewport()->rect().contains(at)) magnifyAt(at);
}

void ImagingControl::stopMagnifier()
{
    delete magnifier_;
    magnifier_ = nullptr;
}

void ImagingControl::magnifyAt(const QPoint &vp)
{
    if (!magnifier_ || pic_.isNull()) return;
    magnifier_->showAt(vp);
}

MagnifierGlass::MagnifierGlass(ImagingControl *owner, QSize glass, int zoomPercent, uint32_t borderColor,
                               bool crosshair)
    : QWidget(owner->viewport()), owner_(owner), zoom_(zoomPercent), border_(borderColor),
      crosshair_(crosshair)
{
    setObjectName(QStringLiteral("MagnifierGlass"));
    resize(glass);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
}

void MagnifierGlass::showAt(const QPoint &vp)
{
    centre_ = vp;
    move(vp.x() - width() / 2, vp.y() - height() / 2);
    show();
    raise();
    update();
}

void MagnifierGlass::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    const QImage img = owner_->image();
    p.fillRect(rect(),
               QColor(int(owner_->backColor() & 0xFF), int((owner_->backColor() >> 8) & 0xFF),
                      int((owner_->backColor() >> 16) & 0xFF)));
    if (!img.isNull()) {
        // The glass shows the displayed picture under it enlarged by its zoom.
        const QRectF dr = owner_->displayRect();
        const double sx = dr.width() / img.width(), sy = dr.height() / img.height();
        const double z = zoom_ / 100.0;
        const QSizeF seen(width() / z, height() / z);  // viewport pixels under the glass
        const QRectF vpArea(QPointF(centre_.x() - seen.width() / 2, centre_.y() - seen.height() / 2), seen);
        const QRectF src((vpArea.left() - dr.left()) / sx, (vpArea.top() - dr.top()) / sy,
                         vpArea.width() / sx, vpArea.height() / sy);
        p.drawImage(QRectF(rect()), img, src);
    }
    if (crosshair_) {
        p.setPen(QColor(Qt::black));
        p.drawLine(width() / 2, 0, width() / 2, height());
        p.drawLine(0, height() / 2, width(), height() / 2);
    }
    p.setPen(QPen(QColor(int(border_ & 0xFF), int((border_ >> 8) & 0xFF), int((border_ >> 16) & 0xFF)), 2));
    p.drawRect(rect().adjusted(1, 1, -1, -1));
}

// ---------------------------------------------------------------- pan window

int ImagingControl::showPanWindow(bool show)
{
    if (!show) {
        if (pan_) pan_->hide();
        return 0;
    }
    if (pic_.isNull()) return ImagingInvalidBitmap;
    if (!pan_) pan_ = new PanWindow(this);
    pan_->setWindowTitle(panProps_.caption);
    if (!panProps_.icon.isNull()) pan_->setWindowIcon(panProps_.icon);
    pan_->setGeometry(panProps_.left, panProps_.top, std::max(panProps_.width, 20),
                      std::max(panProps_.height, 20));
    pan_->show();
    pan_->raise();
    return 0;
}

PanWindow::PanWindow(ImagingControl *owner)
    : QWidget(owner->window(), Qt::Tool | Qt::WindowTitleHint | Qt::WindowCloseButtonHint), owner_(owner)
{
    setObjectName(QStringLiteral("PanWindow"));
    setAttribute(Qt::WA_DeleteOnClose, false);
}

QRectF PanWindow::pictureRect() const
{
    const QImage img = owner_->image();
    if (img.isNull()) return QRectF();
    const double s = std::min(double(width()) / img.width(), double(height()) / img.height());
    const QSizeF d(img.width() * s, img.height() * s);
    return QRectF(QPointF((width() - d.width()) / 2, (height() - d.height()) / 2), d);
}

QRectF PanWindow::viewRect() const
{
    const QRectF pr = pictureRect();
    const QImage img = owner_->image();
    if (img.isNull()) return QRectF();
    const double s = pr.width() / img.width();
    const QRectF vis = owner_->visibleBitmapRect().intersected(QRectF(0, 0, img.width(), img.height()));
    return QRectF(pr.left() + vis.left() * s, pr.top() + vis.top() * s, vis.width() * s, vis.height() * s);
}

void PanWindow::centreViewAt(const QPointF &pos)
{
    const QRectF pr = pictureRect();
    const QImage img = owner_->image();
    if (img.isNull() || pr.isEmpty()) return;
    const double s = pr.width() / img.width();
    const QRectF vis = owner_->visibleBitmapRect();
    const QPointF bitmapCentre((pos.x() - pr.left()) / s, (pos.y() - pr.top()) / s);
    const QPointF topLeft = bitmapCentre - QPointF(vis.width() / 2, vis.height() / 2);
    owner_->setScrollPosition(
        QPoint(int(topLeft.x() * owner_->displayScaleX()), int(topLeft.y() * owner_->displayScaleY())));
    update();
}

void PanWindow::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    p.fillRect(rect(), palette().window());
    const QImage img = owner_->image();
    if (img.isNull()) return;
    const QRectF pr = pictureRect();
    p.setRenderHint(QPainter::SmoothPixmapTransform);
    p.drawImage(pr,
                img.scaled(pr.size().toSize().expandedTo(QSize(1, 1)), Qt::IgnoreAspectRatio,
                           Qt::FastTransformation));
    const uint32_t c = owner_->panWindowProps().rectColor;
    p.setPen(QPen(QColor(int(c & 0xFF), int((c >> 8) & 0xFF), int((c >> 16) & 0xFF)), 2));
    p.drawRect(viewRect());
}

void PanWindow::mousePressEvent(QMouseEvent *e)
{
    if (e->button() == Qt::LeftButton) centreViewAt(e->position());
}

void PanWindow::mouseMoveEvent(QMouseEvent *e)
{
    if (e->buttons() & Qt::LeftButton) centreViewAt(e->position());
}

// ---------------------------------------------------------------- regions

void ImagingControl::setRegionMarking(int mode)
{
    markingMode_ = mode == 3 ? 3 : 0;
    markingNow_ = false;
    updateCursor();
}

double ImagingControl::regionWidth() const { return toUnit(std::round(region_.boundingRect().width())); }
double ImagingControl::regionHeight() const { return toUnit(std::round(region_.boundingRect().height())); }

void ImagingControl::setEllipseRegion(const QRectF &r)
{
    region_ = QPainterPath();
    if (r.width() >= 1 && r.height() >= 1) region_.addEllipse(r.normalized());
    viewport()->update();
}

void ImagingControl::freeRegion()
{
    region_ = QPainterPath();
    markingNow_ = false;
    viewport()->update();
}

int ImagingControl::fillRegion(uint32_t bgr)
{
    if (pic_.isNull()) return ImagingInvalidBitmap;
    if (region_.isEmpty()) return ImagingInvalidParameter;
    QImage &img = pic_.frames[frame_];  // detaches from any other holder of the pixels
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    p.fillPath(region_, fromBgr(bgr));
    p.end();
    cacheKey_ = -1;
    scheduleRepaint();
    return ImagingOk;
}

// ---------------------------------------------------------------- pixel operations

int ImagingControl::resizeBitmap(int w, int h, int flags)
{
    if (pic_.isNull()) return ImagingInvalidBitmap;
    if (w < 1 || h < 1 || int64_t(w) * h > pictureAreaLimit()) return ImagingInvalidSize;
    Picture p = pic_;
    for (QImage &f : p.frames) {
        QImage out = (flags & 2) ? magick::resample(f, w, h)
                                 : f.scaled(w, h, Qt::IgnoreAspectRatio, Qt::FastTransformation);
        if (out.isNull()) return ImagingNoMemory;
        f = f.hasAlphaChannel() ? out.convertToFormat(QImage::Format_ARGB32)
                                : out.convertToFormat(QImage::Format_RGB32);
    }
    freeRegion();
    const int keep = frame_;
    setPicture(p);
    frame_ = std::min(keep, int(pic_.frames.size()) - 1);
    return ImagingOk;
}

int ImagingControl::copyToClipboard(int)
{
    if (pic_.isNull()) return ImagingInvalidBitmap;
    const QImage img = image();
    auto *mime = new QMimeData;
    QByteArray png, bmp;
    {
        QBuffer b(&png);
        b.open(QIODevice::WriteOnly);
        img.save(&b, "PNG");
    }
    {
        QBuffer b(&bmp);
        b.open(QIODevice::WriteOnly);
        img.convertToFormat(QImage::Format_RGB32).save(&b, "BMP");
    }
    mime->setImageData(img);
    mime->setData(QStringLiteral("image/png"), png);
    mime->setData(QStringLiteral("image/bmp"), bmp);
    QApplication::clipboard()->setMimeData(mime);
    return ImagingOk;
}

int ImagingControl::changeBrightness(int amount)
{
    if (pic_.isNull()) return ImagingInvalidBitmap;
    const int a = std::clamp(amount, -100, 100);
    Picture p = pic_;
    for (QImage &f : p.frames) f = magick::brightnessContrast(f, a, 0);
    const int keep = frame_;
    setPicture(p);
    frame_ = keep;
    return ImagingOk;
}

int ImagingControl::changeContrast(int amount)
{
    if (pic_.isNull()) return ImagingInvalidBitmap;
    const int a = std::clamp(amount, -100, 100);
    Picture p = pic_;
    for (QImage &f : p.frames) f = magick::brightnessContrast(f, 0, a);
    const int keep = frame_;
    setPicture(p);
    frame_ = keep;
    return ImagingOk;
}

}  // namespace tw
