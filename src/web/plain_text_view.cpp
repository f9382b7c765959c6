#include "web/plain_text_view.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QPrinter>
#include <QScrollBar>
#include <QTextBoundaryFinder>
#include <QTextLayout>
#include <QTimer>
#include <algorithm>
#include <climits>
#include <unordered_map>

namespace tw {

// ---------------------------------------------------------------- the text

PlainText PlainText::fromString(QStringView text)
{
    PlainText t;
    t.reserve(text.size());
    t.append(text);
    return t;
}

void PlainText::clear()
{
    text_.resize(0);  // keeps the room reserved for a second reading of the same file
    marks_.assign(1, 0);
    lines_ = 1;
    lineBegin_ = longest_ = longestLen_ = 0;
    pendingCR_ = false;
}

void PlainText::newLine(qsizetype start)
{
    const qsizetype len = start - 1 - lineBegin_;
    if (len > longestLen_) {
        longestLen_ = len;
        longest_ = lines_ - 1;
    }
    ++lines_;
    lineBegin_ = start;
    if ((lines_ - 1) % Step == 0) marks_.push_back(start);
}

void PlainText::append(QStringView piece)
{
    const char16_t *p = piece.utf16(), *end = p + piece.size();
    if (pendingCR_) {
        pendingCR_ = false;
        if (p < end && *p == u'\n') ++p;  // the LF of a CR LF split between two pieces
    }
    const char16_t *run = p;
    auto flush = [&](const char16_t *upto) {
        if (upto > run) text_.append(reinterpret_cast<const QChar *>(run), upto - run);
    };
    for (; p < end; ++p) {
        const char16_t c = *p;
        if (c > u'\r') continue;
        if (c == u'\n') {
            newLine(text_.size() + (p - run) + 1);
        } else if (c == u'\r') {
            flush(p);
            text_.append(QChar(u'\n'));
            newLine(text_.size());
            if (p + 1 < end) {
                if (p[1] == u'\n') ++p;
            } else {
                pendingCR_ = true;
            }
            run = p + 1;
        } else if (c == 0) {
            flush(p);
            text_.append(QChar(QChar::ReplacementCharacter));
            run = p + 1;
        }
    }
    flush(end);
    if (text_.size() - lineBegin_ > longestLen_) {
        longestLen_ = text_.size() - lineBegin_;
        longest_ = lines_ - 1;
    }
}

qsizetype PlainText::lineStart(qsizetype line) const
{
    line = std::clamp<qsizetype>(line, 0, lines_ - 1);
    qsizetype pos = marks_[size_t(line / Step)];
    for (qsizetype i = line % Step; i > 0; --i) pos = text_.indexOf(u'\n', pos) + 1;
    return pos;
}

qsizetype PlainText::lineEnd(qsizetype line) const
{
    const qsizetype nl = text_.indexOf(u'\n', lineStart(line));
    return nl < 0 ? text_.size() : nl;
}

qsizetype PlainText::lineOf(qsizetype pos) const
{
    pos = std::clamp<qsizetype>(pos, 0, text_.size());
    const auto mark = std::upper_bound(marks_.begin(), marks_.end(), pos) - 1;
    qsizetype line = qsizetype(mark - marks_.begin()) * Step;
    qsizetype from = *mark;
    for (;;) {
        const qsizetype nl = text_.indexOf(u'\n', from);
        if (nl < 0 || nl >= pos) return line;
        ++line;
        from = nl + 1;
    }
}

QStringView PlainText::line(qsizetype n) const
{
    const qsizetype start = lineStart(n);
    return QStringView(text_).mid(start, lineEnd(n) - start);
}

// ---------------------------------------------------------------- the view

namespace {
constexpr int Margin = 4;  // around the text, as a text box has
constexpr qreal NoWrapWidth = qreal(INT_MAX / 256);
constexpr size_t CacheLimit = 400;
}  // namespace

struct PlainTextView::Cache {
    std::unordered_map<qsizetype, std::unique_ptr<QTextLayout>> layouts;
    bool rangePending = false;
};

PlainTextView::PlainTextView(QWidget *parent) : QAbstractScrollArea(parent), cache_(std::make_unique<Cache>())
{
    viewport()->setBackgroundRole(QPalette::Base);
    viewport()->setAutoFillBackground(true);
    viewport()->setCursor(Qt::IBeamCursor);
    setFocusPolicy(Qt::StrongFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
}

PlainTextView::~PlainTextView() = default;

void PlainTextView::forgetLayouts() { cache_->layouts.clear(); }

void PlainTextView::setContent(PlainText &&text)
{
    forgetLayouts();
    text_ = std::move(text);
    anchor_ = cursor_ = 0;
    widest_ = 0;
    // The longest line gives the first width of the horizontal range; a wider one painted
    // later (wide characters) widens it.
    layoutOf(text_.longestLine());
    verticalScrollBar()->setValue(0);
    horizontalScrollBar()->setValue(0);
    updateScrollBars();
    viewport()->update();
}

int PlainTextView::lineHeight() const { return std::max(1, fontMetrics().lineSpacing()); }

int PlainTextView::visibleLineCount() const
{
    return std::max(1, (viewport()->height() - 2 * Margin) / lineHeight());
}

void PlainTextView::updateScrollBars()
{
    cache_->rangePending = false;
    const qsizetype lines = text_.lineCount();
    const int page = visibleLineCount();
    QScrollBar *v = verticalScrollBar();
    v->setRange(0, int(std::clamp<qsizetype>(lines - page, 0, INT_MAX)));
    v->setPageStep(page);
    v->setSingleStep(1);
    QScrollBar *h = horizontalScrollBar();
    const int width = int(std::min<qreal>(std::ceil(widest_) + 2 * Margin, INT_MAX / 2));
    h->setRange(0, std::max(0, width - viewport()->width()));
    h->setPageStep(viewport()->width());
    h->setSingleStep(std::max(1, fontMetrics().averageCharWidth() * 2));
}

QTextLayout *PlainTextView::layoutOf(qsizetype line)
{
    auto &layouts = cache_->layouts;
    if (auto it = layouts.find(line); it != layouts.end()) return it->second.get();
    if (layouts.size() >= CacheLimit) layouts.clear();
    auto layout = std::make_unique<QTextLayout>(text_.line(line).toString(), font(), viewport());
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap);
    layout->setTextOption(option);
    layout->setCacheEnabled(true);
    layout->beginLayout();
    QTextLine l = layout->createLine();
    if (l.isValid()) l.setLineWidth(NoWrapWidth);
    layout->endLayout();
    if (l.isValid() && l.naturalTextWidth() > widest_) {
        widest_ = l.naturalTextWidth();
        if (!cache_->rangePending) {
            cache_->rangePending = true;
            QTimer::singleShot(0, this, [this] {
                if (cache_->rangePending) updateScrollBars();
            });
        }
    }
    QTextLayout *out = layout.get();
    layouts.emplace(line, std::move(layout));
    return out;
}

qsizetype PlainTextView::firstVisibleLine() const { return verticalScrollBar()->value(); }

qsizetype PlainTextView::lastVisibleLine() const
{
    const qsizetype last = firstVisibleLine() + (viewport()->height() - Margin - 1) / lineHeight();
    return std::min(last, text_.lineCount() - 1);
}

void PlainTextView::paintEvent(QPaintEvent *)
{
    QPainter p(viewport());
    const QPalette &pal = palette();
    const int lh = lineHeight();
    const qreal x0 = Margin - horizontalScrollBar()->value();
    const qsizetype selStart = selectionStart(), selEnd = selectionEnd();
    int y = Margin;
    for (qsizetype line = firstVisibleLine(); line < text_.lineCount() && y < viewport()->height();
         ++line, y += lh) {
        QTextLayout *layout = layoutOf(line);
        const qsizetype start = text_.lineStart(line);
        const qsizetype len = layout->text().size();
        QList<QTextLayout::FormatRange> selections;
        if (selEnd > selStart && selStart <= start + len && selEnd > start) {
            QTextLayout::FormatRange r;
            r.start = int(std::max<qsizetype>(selStart - start, 0));
            r.length = int(std::min<qsizetype>(selEnd - start, len) - r.start);
            r.format.setBackground(pal.brush(QPalette::Highlight));
            r.format.setForeground(pal.brush(QPalette::HighlightedText));
            if (r.length > 0) selections << r;
            // A selected line end shows as a small highlighted cell behind the line.
            if (selEnd > start + len && line + 1 < text_.lineCount()) {
                const qreal w = layout->lineCount() ? layout->lineAt(0).naturalTextWidth() : 0;
                p.fillRect(QRectF(x0 + w, y, fontMetrics().averageCharWidth(), lh), pal.highlight());
            }
        }
        p.setPen(pal.color(QPalette::Text));
        layout->draw(&p, QPointF(x0, y), selections);
        if (hasFocus() && text_.lineOf(cursor_) == line && layout->lineCount()) {
            const qreal cx = layout->lineAt(0).cursorToX(int(cursor_ - start));
            p.fillRect(QRectF(x0 + cx, y, 1, lh), pal.color(QPalette::Text));
        }
    }
}

void PlainTextView::resizeEvent(QResizeEvent *event)
{
    QAbstractScrollArea::resizeEvent(event);
    updateScrollBars();
}

void PlainTextView::changeEvent(QEvent *event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        forgetLayouts();
        widest_ = 0;
        layoutOf(text_.longestLine());
        updateScrollBars();
        viewport()->update();
    } else if (event->type() == QEvent::PaletteChange) {
        viewport()->update();
    }
}

void PlainTextView::scrollContentsBy(int, int) { viewport()->update(); }

void PlainTextView::focusInEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
}

void PlainTextView::focusOutEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusOutEvent(event);
    viewport()->update();
}

// ---------------------------------------------------------------- selection

void PlainTextView::setSelection(qsizetype anchor, qsizetype cursor)
{
    anchor_ = std::clamp<qsizetype>(anchor, 0, text_.size());
    cursor_ = std::clamp<qsizetype>(cursor, 0, text_.size());
    viewport()->update();
}

QString PlainTextView::selectedText() const
{
    return text_.text().mid(selectionStart(), selectionEnd() - selectionStart());
}

void PlainTextView::selectAll() { setSelection(0, text_.size()); }

void PlainTextView::copy() const
{
    if (selectionEnd() > selectionStart()) QApplication::clipboard()->setText(selectedText());
}

void PlainTextView::moveCursor(qsizetype pos, bool keepAnchor)
{
    setSelection(keepAnchor ? anchor_ : pos, pos);
    ensureVisible(cursor_);
}

void PlainTextView::ensureVisible(qsizetype pos)
{
    const qsizetype line = text_.lineOf(pos);
    QScrollBar *v = verticalScrollBar();
    const int page = visibleLineCount();
    if (line < v->value()) v->setValue(int(std::min<qsizetype>(line, INT_MAX)));
    else if (line >= v->value() + page) v->setValue(int(std::min<qsizetype>(line - page + 1, INT_MAX)));
    QTextLayout *layout = layoutOf(line);
    if (!layout->lineCount()) return;
    const int x = int(layout->lineAt(0).cursorToX(int(pos - text_.lineStart(line))));
    QScrollBar *h = horizontalScrollBar();
    const int room = viewport()->width() - 2 * Margin;
    if (x < h->value()) h->setValue(x);
    else if (x > h->value() + room) h->setValue(x - room);
}

qsizetype PlainTextView::positionAt(const QPoint &point)
{
    const qsizetype line = std::clamp<qsizetype>(firstVisibleLine() + (point.y() - Margin) / lineHeight()
                                                     - (point.y() < Margin ? 1 : 0),
                                                 0, text_.lineCount() - 1);
    QTextLayout *layout = layoutOf(line);
    const qsizetype start = text_.lineStart(line);
    if (!layout->lineCount()) return start;
    const qreal x = point.x() - Margin + horizontalScrollBar()->value();
    return start + layout->lineAt(0).xToCursor(x);
}

void PlainTextView::keyPressEvent(QKeyEvent *event)
{
    if (event == QKeySequence::Copy) {
        copy();
        return;
    }
    if (event == QKeySequence::SelectAll) {
        selectAll();
        return;
    }
    const bool shift = event->modifiers() & Qt::ShiftModifier;
    const bool ctrl = event->modifiers() & Qt::ControlModifier;
    const qsizetype line = text_.lineOf(cursor_);
    const qsizetype column = cursor_ - text_.lineStart(line);
    auto toLine = [&](qsizetype target) {
        target = std::clamp<qsizetype>(target, 0, text_.lineCount() - 1);
        const qsizetype start = text_.lineStart(target);
        return std::min(start + column, text_.lineEnd(target));
    };
    switch (event->key()) {
    case Qt::Key_Left:
        moveCursor(std::max<qsizetype>(cursor_ - 1, 0), shift);
        break;
    case Qt::Key_Right:
        moveCursor(std::min(cursor_ + 1, text_.size()), shift);
        break;
    case Qt::Key_Up:
        moveCursor(toLine(line - 1), shift);
        break;
    case Qt::Key_Down:
        moveCursor(toLine(line + 1), shift);
        break;
    case Qt::Key_PageUp:
        moveCursor(toLine(line - visibleLineCount()), shift);
        break;
    case Qt::Key_PageDown:
        moveCursor(toLine(line + visibleLineCount()), shift);
        break;
    case Qt::Key_Home:
        moveCursor(ctrl ? 0 : text_.lineStart(line), shift);
        break;
    case Qt::Key_End:
        moveCursor(ctrl ? text_.size() : text_.lineEnd(line), shift);
        break;
    default:
        // Locked: what would change the text goes nowhere.
        event->ignore();
        return;
    }
    event->accept();
}

void PlainTextView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        QAbstractScrollArea::mousePressEvent(event);
        return;
    }
    setFocus(Qt::MouseFocusReason);
    moveCursor(positionAt(event->position().toPoint()), event->modifiers() & Qt::ShiftModifier);
    dragging_ = true;
}

void PlainTextView::mouseMoveEvent(QMouseEvent *event)
{
    if (!dragging_ || !(event->buttons() & Qt::LeftButton)) return;
    moveCursor(positionAt(event->position().toPoint()), true);
}

void PlainTextView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) return;
    dragging_ = false;
    // The selection also goes to the X11 primary selection, as in every text box.
    QClipboard *cb = QApplication::clipboard();
    if (cb->supportsSelection() && selectionEnd() > selectionStart())
        cb->setText(selectedText(), QClipboard::Selection);
}

void PlainTextView::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) return;
    // The word under the pointer.
    const qsizetype pos = positionAt(event->position().toPoint());
    const qsizetype line = text_.lineOf(pos);
    const qsizetype start = text_.lineStart(line);
    const QString lineText = text_.line(line).toString();
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, lineText);
    finder.setPosition(int(pos - start));
    const qsizetype from =
        finder.isAtBoundary() && finder.boundaryReasons() & QTextBoundaryFinder::StartOfItem
        ? finder.position()
        : std::max<qsizetype>(finder.toPreviousBoundary(), 0);
    finder.setPosition(int(pos - start));
    const qsizetype to = finder.toNextBoundary();
    setSelection(start + from, start + (to < 0 ? lineText.size() : to));
    dragging_ = false;
}

void PlainTextView::contextMenuEvent(QContextMenuEvent *event)
{
    // The menu of a locked text box: copy and select all.
    QMenu menu(this);
    QAction *copyAct = menu.addAction(QCoreApplication::translate("QWidgetTextControl", "&Copy") + u'\t'
                                      + QKeySequence(QKeySequence::Copy).toString(QKeySequence::NativeText));
    copyAct->setObjectName(QStringLiteral("edit-copy"));
    copyAct->setEnabled(selectionEnd() > selectionStart());
    connect(copyAct, &QAction::triggered, this, [this] { copy(); });
    menu.addSeparator();
    QAction *allAct =
        menu.addAction(QCoreApplication::translate("QWidgetTextControl", "Select All") + u'\t'
                       + QKeySequence(QKeySequence::SelectAll).toString(QKeySequence::NativeText));
    allAct->setObjectName(QStringLiteral("select-all"));
    allAct->setEnabled(text_.size() > 0);
    connect(allAct, &QAction::triggered, this, [this] { selectAll(); });
    menu.exec(event->globalPos());
}

// ---------------------------------------------------------------- printing

void PlainTextView::print(QPrinter *printer) const
{
    QPainter p(printer);
    if (!p.isActive()) return;
    const QFont font(this->font(), printer);
    p.setFont(font);
    p.setPen(Qt::black);
    const int dpiy = printer->logicalDpiY();
    const qreal margin = 2 / 2.54 * dpiy;  // 2 cm all round, the page number in the bottom one
    const QSizeF body = printer->pageLayout().paintRectPixels(printer->resolution()).size();
    const QRectF area(margin, margin, body.width() - 2 * margin, body.height() - 2 * margin);
    const QFontMetricsF fm(font, printer);
    int page = 1;
    auto pageNumber = [&] {
        const QString n = QString::number(page);
        p.drawText(QPointF(area.right(), area.bottom() + fm.ascent() + 5 * dpiy / 72.0), n);
    };
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    qreal y = area.top();
    for (qsizetype n = 0; n < text_.lineCount(); ++n) {
        QTextLayout layout(text_.line(n).toString(), font, printer);
        layout.setTextOption(option);
        layout.beginLayout();
        for (;;) {
            QTextLine l = layout.createLine();
            if (!l.isValid()) break;
            l.setLineWidth(area.width());
        }
        layout.endLayout();
        for (int i = 0; i < layout.lineCount(); ++i) {
            const QTextLine l = layout.lineAt(i);
            if (y + l.height() > area.bottom() && y > area.top()) {
                pageNumber();
                printer->newPage();
                ++page;
                y = area.top();
            }
            l.draw(&p, QPointF(area.left(), y - l.y()));
            y += l.height();
        }
    }
    pageNumber();
}

}  // namespace tw
