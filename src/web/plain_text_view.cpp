#include "web/plain_text_view.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QPagedPaintDevice>
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
    long_.clear();
    lines_ = 1;
    lineBegin_ = longest_ = longestLen_ = 0;
    pendingCR_ = false;
}

void PlainText::noteLength(qsizetype line, qsizetype start, qsizetype length)
{
    const qsizetype rows = std::max<qsizetype>(1, (length + RowLimit - 1) / RowLimit);
    if (!long_.empty() && long_.back().line == line) {
        if (rows > 1) {
            long_.back().rows = rows;
            long_.back().length = length;
        } else {
            long_.pop_back();
        }
        return;
    }
    if (rows > 1) long_.push_back({line, start, length, firstRowOf(line), rows});
}

const PlainText::LongLine *PlainText::longLine(qsizetype line) const
{
    auto it = std::lower_bound(long_.begin(), long_.end(), line,
                               [](const LongLine &l, qsizetype n) { return l.line < n; });
    return it != long_.end() && it->line == line ? &*it : nullptr;
}

qsizetype PlainText::firstRowOf(qsizetype line) const
{
    auto it = std::lower_bound(long_.begin(), long_.end(), line,
                               [](const LongLine &l, qsizetype n) { return l.line < n; });
    if (it == long_.begin()) return line;
    --it;
    return line + (it->firstRow - it->line) + (it->rows - 1);
}

std::pair<qsizetype, qsizetype> PlainText::lineOfRow(qsizetype row) const
{
    auto it = std::upper_bound(long_.begin(), long_.end(), row,
                               [](qsizetype r, const LongLine &l) { return r < l.firstRow; });
    if (it == long_.begin()) return {row, 0};
    --it;
    if (row < it->firstRow + it->rows) return {it->line, row - it->firstRow};
    return {row - (it->firstRow - it->line) - (it->rows - 1), 0};
}

qsizetype PlainText::rowCount() const
{
    if (long_.empty()) return lines_;
    const LongLine &l = long_.back();
    return lines_ + (l.firstRow - l.line) + (l.rows - 1);
}

qsizetype PlainText::rowStart(qsizetype row) const
{
    row = std::clamp<qsizetype>(row, 0, rowCount() - 1);
    const auto [line, piece] = lineOfRow(row);
    return lineStart(line) + piece * RowLimit;
}

qsizetype PlainText::rowEnd(qsizetype row) const
{
    row = std::clamp<qsizetype>(row, 0, rowCount() - 1);
    const auto [line, piece] = lineOfRow(row);
    return std::min(lineStart(line) + (piece + 1) * RowLimit, lineEnd(line));
}

bool PlainText::rowEndsLine(qsizetype row) const
{
    const qsizetype end = rowEnd(row);
    return end == text_.size() || text_.at(end) == u'\n';
}

qsizetype PlainText::rowOf(qsizetype pos) const
{
    const qsizetype line = lineOf(pos);
    const LongLine *l = longLine(line);
    const qsizetype rows = l ? l->rows : 1;
    return firstRowOf(line) + std::min((pos - lineStart(line)) / RowLimit, rows - 1);
}

QStringView PlainText::row(qsizetype n) const
{
    const qsizetype start = rowStart(n);
    return QStringView(text_).mid(start, rowEnd(n) - start);
}

void PlainText::newLine(qsizetype start)
{
    const qsizetype len = start - 1 - lineBegin_;
    if (len > longestLen_) {
        longestLen_ = len;
        longest_ = lines_ - 1;
    }
    if (len > RowLimit || (!long_.empty() && long_.back().line == lines_ - 1))
        noteLength(lines_ - 1, lineBegin_, len);
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
    bool nul = false;  // the run holds NUL characters, replaced once it is in place
    auto flush = [&](const char16_t *upto) {
        if (upto <= run) return;
        const qsizetype n = upto - run;
        text_.append(reinterpret_cast<const QChar *>(run), n);
        if (nul) {
            QChar *d = text_.data() + text_.size() - n;
            std::replace(d, d + n, QChar(0), QChar(QChar::ReplacementCharacter));
            nul = false;
        }
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
            nul = true;
        }
    }
    flush(end);
    if (text_.size() - lineBegin_ > longestLen_) {
        longestLen_ = text_.size() - lineBegin_;
        longest_ = lines_ - 1;
    }
    if (text_.size() - lineBegin_ > RowLimit) noteLength(lines_ - 1, lineBegin_, text_.size() - lineBegin_);
}

qsizetype PlainText::lineStart(qsizetype line) const
{
    line = std::clamp<qsizetype>(line, 0, lines_ - 1);
    if (const LongLine *l = longLine(line)) return l->start;
    qsizetype at = (line / Step) * Step;
    qsizetype pos = marks_[size_t(line / Step)];
    // Over the last long line between the mark and the line; the rest are short.
    auto it = std::lower_bound(long_.begin(), long_.end(), line,
                               [](const LongLine &l, qsizetype n) { return l.line < n; });
    if (it != long_.begin() && (it - 1)->line >= at) {
        --it;
        pos = it->start + it->length + 1;
        at = it->line + 1;
    }
    for (; at < line; ++at) pos = text_.indexOf(u'\n', pos) + 1;
    return pos;
}

qsizetype PlainText::lineEnd(qsizetype line) const
{
    line = std::clamp<qsizetype>(line, 0, lines_ - 1);
    if (const LongLine *l = longLine(line)) return l->start + l->length;
    // A short line: its end lies within RowLimit characters.
    const qsizetype start = lineStart(line);
    const qsizetype nl = QStringView(text_).mid(start, RowLimit + 1).indexOf(u'\n');
    return nl < 0 ? std::min(start + RowLimit, text_.size()) : start + nl;
}

qsizetype PlainText::lineOf(qsizetype pos) const
{
    pos = std::clamp<qsizetype>(pos, 0, text_.size());
    // Inside a long line, or else after the last long line before the position.
    auto it = std::upper_bound(long_.begin(), long_.end(), pos,
                               [](qsizetype p, const LongLine &l) { return p < l.start; });
    const LongLine *before = it == long_.begin() ? nullptr : &*(it - 1);
    if (before && pos <= before->start + before->length) return before->line;
    const auto mark = std::upper_bound(marks_.begin(), marks_.end(), pos) - 1;
    qsizetype line = qsizetype(mark - marks_.begin()) * Step;
    qsizetype from = *mark;
    if (before && before->start >= from) {
        line = before->line + 1;
        from = before->start + before->length + 1;
    }
    for (;;) {
        const qsizetype nl = QStringView(text_).mid(from, pos - from).indexOf(u'\n');
        if (nl < 0) return line;
        ++line;
        from += nl + 1;
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
    layoutOf(text_.rowOf(text_.lineStart(text_.longestLine())));
    verticalScrollBar()->setValue(0);
    horizontalScrollBar()->setValue(0);
    updateScrollBars();
    viewport()->update();
}

int PlainTextView::lineHeight() const { return std::max(1, fontMetrics().lineSpacing()); }

int PlainTextView::visibleRowCount() const
{
    return std::max(1, (viewport()->height() - 2 * Margin) / lineHeight());
}

void PlainTextView::updateScrollBars()
{
    cache_->rangePending = false;
    const qsizetype rows = text_.rowCount();
    const int page = visibleRowCount();
    QScrollBar *v = verticalScrollBar();
    v->setRange(0, int(std::clamp<qsizetype>(rows - page, 0, INT_MAX)));
    v->setPageStep(page);
    v->setSingleStep(1);
    QScrollBar *h = horizontalScrollBar();
    const int width = int(std::min<qreal>(std::ceil(widest_) + 2 * Margin, INT_MAX / 2));
    h->setRange(0, std::max(0, width - viewport()->width()));
    h->setPageStep(viewport()->width());
    h->setSingleStep(std::max(1, fontMetrics().averageCharWidth() * 2));
}

QTextLayout *PlainTextView::layoutOf(qsizetype row)
{
    auto &layouts = cache_->layouts;
    if (auto it = layouts.find(row); it != layouts.end()) return it->second.get();
    if (layouts.size() >= CacheLimit) layouts.clear();
    auto layout = std::make_unique<QTextLayout>(text_.row(row).toString(), font(), viewport());
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
    layouts.emplace(row, std::move(layout));
    return out;
}

qsizetype PlainTextView::firstVisibleRow() const { return verticalScrollBar()->value(); }

qsizetype PlainTextView::lastVisibleRow() const
{
    const qsizetype last = firstVisibleRow() + (viewport()->height() - Margin - 1) / lineHeight();
    return std::min(last, text_.rowCount() - 1);
}

void PlainTextView::paintEvent(QPaintEvent *)
{
    QPainter p(viewport());
    const QPalette &pal = palette();
    const int lh = lineHeight();
    const qreal x0 = Margin - horizontalScrollBar()->value();
    const qsizetype selStart = selectionStart(), selEnd = selectionEnd();
    int y = Margin;
    const qsizetype caretRow = hasFocus() ? cursorRow() : -1;
    for (qsizetype row = firstVisibleRow(); row < text_.rowCount() && y < viewport()->height();
         ++row, y += lh) {
        QTextLayout *layout = layoutOf(row);
        const qsizetype start = text_.rowStart(row);
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
            if (selEnd > start + len && row + 1 < text_.rowCount() && text_.rowEndsLine(row)) {
                const qreal w = layout->lineCount() ? layout->lineAt(0).naturalTextWidth() : 0;
                p.fillRect(QRectF(x0 + w, y, fontMetrics().averageCharWidth(), lh), pal.highlight());
            }
        }
        p.setPen(pal.color(QPalette::Text));
        layout->draw(&p, QPointF(x0, y), selections);
        if (row == caretRow && layout->lineCount()) {
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
        layoutOf(text_.rowOf(text_.lineStart(text_.longestLine())));
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
    cursorAtRowEnd_ = false;
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

qsizetype PlainTextView::cursorRow() const
{
    const qsizetype row = text_.rowOf(cursor_);
    return cursorAtRowEnd_ && row > 0 && text_.rowStart(row) == cursor_ ? row - 1 : row;
}

void PlainTextView::moveCursor(qsizetype pos, bool keepAnchor, bool atRowEnd)
{
    setSelection(keepAnchor ? anchor_ : pos, pos);
    cursorAtRowEnd_ = atRowEnd;
    ensureVisible(cursor_, cursorRow());
}

void PlainTextView::ensureVisible(qsizetype pos, qsizetype row)
{
    QScrollBar *v = verticalScrollBar();
    const int page = visibleRowCount();
    if (row < v->value()) v->setValue(int(std::min<qsizetype>(row, INT_MAX)));
    else if (row >= v->value() + page) v->setValue(int(std::min<qsizetype>(row - page + 1, INT_MAX)));
    QTextLayout *layout = layoutOf(row);
    if (!layout->lineCount()) return;
    const int x = int(layout->lineAt(0).cursorToX(int(pos - text_.rowStart(row))));
    QScrollBar *h = horizontalScrollBar();
    const int room = viewport()->width() - 2 * Margin;
    if (x < h->value()) h->setValue(x);
    else if (x > h->value() + room) h->setValue(x - room);
}

qsizetype PlainTextView::positionAt(const QPoint &point)
{
    const int y = point.y() - Margin;
    const qsizetype row =
        std::clamp<qsizetype>(firstVisibleRow() + (y < 0 ? -1 : y / lineHeight()), 0, text_.rowCount() - 1);
    QTextLayout *layout = layoutOf(row);
    const qsizetype start = text_.rowStart(row);
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
    // Up, down and the page keys go by rows (a long line's pieces), keeping the column.
    const qsizetype row = cursorRow();
    const qsizetype column = cursor_ - text_.rowStart(row);
    auto toRow = [&](qsizetype target) {
        target = std::clamp<qsizetype>(target, 0, text_.rowCount() - 1);
        return std::min(text_.rowStart(target) + column, text_.rowEnd(target));
    };
    switch (event->key()) {
    case Qt::Key_Left:
        moveCursor(std::max<qsizetype>(cursor_ - 1, 0), shift);
        break;
    case Qt::Key_Right:
        moveCursor(std::min(cursor_ + 1, text_.size()), shift);
        break;
    case Qt::Key_Up:
        moveCursor(toRow(row - 1), shift);
        break;
    case Qt::Key_Down:
        moveCursor(toRow(row + 1), shift);
        break;
    case Qt::Key_PageUp:
        moveCursor(toRow(row - visibleRowCount()), shift);
        break;
    case Qt::Key_PageDown:
        moveCursor(toRow(row + visibleRowCount()), shift);
        break;
    case Qt::Key_Home:
        moveCursor(ctrl ? 0 : text_.rowStart(row), shift);
        break;
    case Qt::Key_End:
        moveCursor(ctrl ? text_.size() : text_.rowEnd(row), shift, !ctrl);
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
    const qsizetype row = text_.rowOf(pos);
    const qsizetype start = text_.rowStart(row);
    const QString lineText = text_.row(row).toString();
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

void PlainTextView::print(QPagedPaintDevice *printer) const
{
    QPainter p(printer);
    if (!p.isActive()) return;
    const QFont font(this->font(), printer);
    p.setFont(font);
    p.setPen(Qt::black);
    const int dpiy = printer->logicalDpiY();
    const qreal margin = 2 / 2.54 * dpiy;  // 2 cm all round, the page number in the bottom one
    const QSizeF body = printer->pageLayout().paintRectPixels(dpiy).size();
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
    for (qsizetype n = 0; n < text_.rowCount(); ++n) {
        QTextLayout layout(text_.row(n).toString(), font, printer);
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
