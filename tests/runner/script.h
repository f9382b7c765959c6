// The scenario language: statements of one scenario file, split into tokens.
#pragma once

#include <QString>
#include <QStringList>
#include <vector>

namespace tw::scenario {

struct Statement {
    int line = 0;
    QStringList tokens;
    std::vector<bool> quoted;  // per token: written in quotes
};

// Splits one line: tokens are separated by blanks; "a quoted token" may hold blanks,
// "" inside quotes is one quote, and \r \n \t inside quotes are CR, LF, TAB. A # outside
// quotes starts a comment. False with a message on an unclosed quote.
bool tokenize(const QString &line, QStringList *tokens, std::vector<bool> *quoted, QString *error);
bool parseScript(const QString &text, std::vector<Statement> *out, QString *error);
// $HOME, $DATA and $FIX expanded.
QString expandVars(QString s, const QString &home, const QString &data, const QString &fix);

}  // namespace tw::scenario
