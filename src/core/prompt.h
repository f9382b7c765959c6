// The program's message boxes. Every question and notice the user sees goes through
// here, so each has the same look, the same title rule and the same buttons.
#pragma once

#include <QString>

class QWidget;

namespace tw {

enum class BoxAnswer { Ok, Cancel, Yes, No };

// A Yes/No question; true on Yes.
bool askYesNo(const QString &text, const QString &title = QString(), QWidget *parent = nullptr);
// A Yes/No/Cancel question.
BoxAnswer askYesNoCancel(const QString &text, const QString &title = QString(), QWidget *parent = nullptr);
// An OK/Cancel question; true on OK.
bool askOkCancel(const QString &text, const QString &title = QString(), QWidget *parent = nullptr);
// A notice with an OK button.
void inform(const QString &text, const QString &title = QString(), QWidget *parent = nullptr);

// The window that message boxes hang off when no parent is given (the main window).
void setPromptParent(QWidget *w);

}  // namespace tw
