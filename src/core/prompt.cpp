#include "prompt.h"

#include "globals.h"

#include <QApplication>
#include <QCursor>
#include <QMessageBox>
#include <QPointer>

namespace tw {

namespace {
QPointer<QWidget> g_parent;

QMessageBox::StandardButton run(const QString &text, const QString &title,
                                QMessageBox::StandardButtons buttons, QMessageBox::StandardButton def,
                                QMessageBox::Icon icon, QWidget *parent)
{
    QMessageBox box(icon, title.isEmpty() ? AppTitle : title, text, buttons,
                    parent ? parent : g_parent.data());
    box.setObjectName(QStringLiteral("MsgBox"));
    box.setDefaultButton(def);
    // A box over a busy cursor must still take the normal pointer.
    QGuiApplication::setOverrideCursor(QCursor(Qt::ArrowCursor));
    const int r = box.exec();
    QGuiApplication::restoreOverrideCursor();
    return static_cast<QMessageBox::StandardButton>(r);
}
}  // namespace

void setPromptParent(QWidget *w) { g_parent = w; }

bool askYesNo(const QString &text, const QString &title, QWidget *parent)
{
    return run(text, title, QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes, QMessageBox::NoIcon, parent)
        == QMessageBox::Yes;
}

BoxAnswer askYesNoCancel(const QString &text, const QString &title, QWidget *parent)
{
    switch (run(text, title, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::Yes,
                QMessageBox::NoIcon, parent)) {
    case QMessageBox::Yes:
        return BoxAnswer::Yes;
    case QMessageBox::No:
        return BoxAnswer::No;
    default:
        return BoxAnswer::Cancel;
    }
}

bool askOkCancel(const QString &text, const QString &title, QWidget *parent)
{
    return run(text, title, QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Ok, QMessageBox::NoIcon,
               parent)
        == QMessageBox::Ok;
}

void inform(const QString &text, const QString &title, QWidget *parent)
{
    run(text, title, QMessageBox::Ok, QMessageBox::Ok, QMessageBox::NoIcon, parent);
}

}  // namespace tw
