#include "web/document_text.h"

#include "web/plain_text_view.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPagedPaintDevice>
#include <QTextEdit>
#include <memory>

namespace tw {

DocumentText::DocumentText(QWidget *parent) : QStackedWidget(parent)
{
    plain_ = new PlainTextView(this);
    plain_->setObjectName(QStringLiteral("Text1Plain"));
    addWidget(plain_);
    rich_ = new QTextEdit(this);
    rich_->setObjectName(QStringLiteral("Text1Rich"));
    rich_->setReadOnly(true);
    addWidget(rich_);
    showFace(plain_);
}

void DocumentText::showFace(QWidget *face)
{
    setCurrentWidget(face);
    setFocusProxy(face);
}

bool DocumentText::showsRichText() const { return currentWidget() == rich_; }

void DocumentText::setContent(PlainText &&text)
{
    plain_->setContent(std::move(text));
    // The rich face lets its document go: only one text is held.
    rich_->clear();
    showFace(plain_);
}

void DocumentText::setPlainText(const QString &text) { setContent(PlainText::fromString(text)); }

void DocumentText::setHtml(const QString &html)
{
    rich_->setHtml(html);
    plain_->clear();
    showFace(rich_);
}

void DocumentText::setReadOnly(bool on)
{
    readOnly_ = on;
    // The plain view never takes typing; the rich box follows the lock.
    rich_->setReadOnly(on);
}

QString DocumentText::toPlainText() const
{
    return showsRichText() ? rich_->toPlainText() : plain_->toPlainText();
}

void DocumentText::selectAll()
{
    if (showsRichText()) rich_->selectAll();
    else plain_->selectAll();
}

void DocumentText::copy()
{
    if (showsRichText()) rich_->copy();
    else plain_->copy();
}

void DocumentText::print(QPagedPaintDevice *printer) const
{
    if (showsRichText()) rich_->print(printer);
    else plain_->print(printer);
}

void DocumentText::keyPressEvent(QKeyEvent *event)
{
    // Keys sent to the box go to the face on show. A key the face passed over comes back
    // here on its way up to the window: it goes on.
    if (forwarding_) {
        event->ignore();
        return;
    }
    forwarding_ = true;
    std::unique_ptr<QEvent> copy(event->clone());
    QApplication::sendEvent(currentWidget(), copy.get());
    forwarding_ = false;
    event->accept();
}

}  // namespace tw
