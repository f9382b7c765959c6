// The plain text of the document tab: the decoded text held once, with a sparse index of its
// line starts, and a read-only view that lays out only the lines it paints. A text document
// (QTextDocument, behind QTextEdit and QPlainTextEdit) keeps a block object for every line
// besides the text, which for a long file costs several times the file's size; this view
// keeps the text in one string (2 bytes a character) plus one index entry per 16 lines.
#pragma once

#include <QAbstractScrollArea>
#include <QString>
#include <QStringView>
#include <memory>
#include <utility>
#include <vector>

class QPagedPaintDevice;
class QTextLayout;

namespace tw {

// A text whose line ends are all LF, with the start of every Step-th line indexed. For the
// screen a line is cut into rows of at most RowLimit characters, so that no single row costs
// more than a bounded layout (a file of one 200 MB line stays viewable).
class PlainText {
public:
    static constexpr qsizetype Step = 16;
    static constexpr qsizetype RowLimit = 4096;

    PlainText() { marks_.push_back(0); }
    // Text with CR LF, LF and CR line ends, NUL shown as the replacement character.
    static PlainText fromString(QStringView text);

    const QString &text() const { return text_; }
    qsizetype size() const { return text_.size(); }
    qsizetype lineCount() const { return lines_; }
    qsizetype lineStart(qsizetype line) const;
    // The position of the line's end (its LF, or the end of the text).
    qsizetype lineEnd(qsizetype line) const;
    // The line that holds Pos (a position between 0 and size()).
    qsizetype lineOf(qsizetype pos) const;
    QStringView line(qsizetype n) const;
    // The line with the most characters.
    qsizetype longestLine() const { return longest_; }

    // Rows: the lines, each long one cut into pieces of RowLimit characters.
    qsizetype rowCount() const;
    qsizetype rowStart(qsizetype row) const;
    qsizetype rowEnd(qsizetype row) const;
    qsizetype rowOf(qsizetype pos) const;
    QStringView row(qsizetype n) const;
    // Whether the row ends with its line (at an LF or the end of the text).
    bool rowEndsLine(qsizetype row) const;

    // Building, piece by piece: the pieces are decoded text in their raw line ends.
    void reserve(qsizetype chars) { text_.reserve(chars); }
    void append(QStringView piece);
    void clear();

private:
    // A line longer than RowLimit. Walks through the text step over it, so that no look-up
    // reads more than RowLimit characters of a long line.
    struct LongLine {
        qsizetype line, start, length, firstRow, rows;
    };
    void newLine(qsizetype start);
    void noteLength(qsizetype line, qsizetype start, qsizetype length);
    // The long line entry of Line, or null.
    const LongLine *longLine(qsizetype line) const;
    // The row of the line's start, and the line and piece of a row.
    qsizetype firstRowOf(qsizetype line) const;
    std::pair<qsizetype, qsizetype> lineOfRow(qsizetype row) const;
    QString text_;
    std::vector<qsizetype> marks_;  // start of lines 0, Step, 2 Step, ...
    std::vector<LongLine> long_;  // the lines longer than RowLimit, in order
    qsizetype lines_ = 1;
    qsizetype lineBegin_ = 0;  // start of the last line while building
    qsizetype longest_ = 0, longestLen_ = 0;
    bool pendingCR_ = false;  // the last piece ended with CR: an LF next belongs to it
};

class PlainTextView : public QAbstractScrollArea {
    Q_OBJECT
    Q_PROPERTY(QString text READ toPlainText)
public:
    explicit PlainTextView(QWidget *parent = nullptr);
    ~PlainTextView() override;

    void setContent(PlainText &&text);
    void setPlainText(QStringView text) { setContent(PlainText::fromString(text)); }
    void clear() { setContent(PlainText()); }
    const PlainText &content() const { return text_; }
    QString toPlainText() const { return text_.text(); }

    // The selection runs between the anchor and the cursor (positions in the text).
    void setSelection(qsizetype anchor, qsizetype cursor);
    qsizetype selectionStart() const { return std::min(anchor_, cursor_); }
    qsizetype selectionEnd() const { return std::max(anchor_, cursor_); }
    qsizetype cursorPosition() const { return cursor_; }
    QString selectedText() const;
    void selectAll();
    void copy() const;

    // The rows on show, from the first to the last (partly) painted one (a row is a line, or a
    // piece of a line longer than PlainText::RowLimit).
    qsizetype firstVisibleRow() const;
    qsizetype lastVisibleRow() const;
    // The position under a point of the viewport.
    qsizetype positionAt(const QPoint &point);

    // Prints all the text, lines wrapped to the page, 2 cm margins, page numbers.
    void print(QPagedPaintDevice *printer) const;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    QTextLayout *layoutOf(qsizetype row);
    int lineHeight() const;
    int visibleRowCount() const;
    void updateScrollBars();
    // The row of the cursor: at the joint of two rows of one long line, the first when the
    // cursor went there with End.
    qsizetype cursorRow() const;
    void ensureVisible(qsizetype pos, qsizetype row);
    void moveCursor(qsizetype pos, bool keepAnchor, bool atRowEnd = false);
    void forgetLayouts();

    PlainText text_;
    qsizetype anchor_ = 0, cursor_ = 0;
    bool cursorAtRowEnd_ = false;
    qreal widest_ = 0;  // the widest line known so far, in pixels
    bool dragging_ = false;
    struct Cache;
    std::unique_ptr<Cache> cache_;
};

}  // namespace tw
