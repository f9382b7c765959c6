// Text1 of the document tab: one text box with two faces. Plain text goes to a view that
// keeps the text compactly (PlainTextView), so that a long file costs little more than its
// text; rich text (RTF, a rendered Write file) goes to a rich text box that keeps its fonts,
// sizes, styles and colours. The box answers for whichever face is on show.
#pragma once

#include <QStackedWidget>
#include <QString>

class QPagedPaintDevice;
class QTextEdit;

namespace tw {

class PlainText;
class PlainTextView;

class DocumentText : public QStackedWidget {
    Q_OBJECT
    Q_PROPERTY(QString text READ toPlainText)
public:
    explicit DocumentText(QWidget *parent = nullptr);

    // Plain text, shown in the compact view.
    void setContent(PlainText &&text);
    void setPlainText(const QString &text);
    // Rich text, shown in the rich text box.
    void setHtml(const QString &html);

    bool isReadOnly() const { return readOnly_; }
    void setReadOnly(bool on);
    bool showsRichText() const;
    QString toPlainText() const;
    void selectAll();
    void copy();
    // Prints all the contents.
    void print(QPagedPaintDevice *printer) const;

    PlainTextView *plainView() const { return plain_; }
    QTextEdit *richText() const { return rich_; }

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void showFace(QWidget *face);
    PlainTextView *plain_ = nullptr;
    QTextEdit *rich_ = nullptr;
    bool readOnly_ = true;
    bool forwarding_ = false;
};

}  // namespace tw
