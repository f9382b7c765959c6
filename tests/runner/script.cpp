#include "script.h"

namespace tw::scenario {

bool tokenize(const QString &line, QStringList *tokens, std::vector<bool> *quoted, QString *error)
{
    tokens->clear();
    quoted->clear();
    int i = 0;
    const int n = line.size();
    while (i < n) {
        const QChar c = line[i];
        if (c == u' ' || c == u'\t' || c == u'\r') {
            ++i;
            continue;
        }
        if (c == u'#') break;
        if (c == u'"') {
            QString tok;
            ++i;
            bool closed = false;
            while (i < n) {
                const QChar d = line[i];
                if (d == u'"') {
                    if (i + 1 < n && line[i + 1] == u'"') {
                        tok += u'"';
                        i += 2;
                        continue;
                    }
                    ++i;
                    closed = true;
                    break;
                }
                if (d == u'\\' && i + 1 < n) {
                    const QChar e = line[i + 1];
                    if (e == u'r') {
                        tok += u'\r';
                        i += 2;
                        continue;
                    }
                    if (e == u'n') {
                        tok += u'\n';
                        i += 2;
                        continue;
                    }
                    if (e == u't') {
                        tok += u'\t';
                        i += 2;
                        continue;
                    }
                }
                tok += d;
                ++i;
            }
            if (!closed) {
                *error = QStringLiteral("unclosed quote");
                return false;
            }
            tokens->append(tok);
            quoted->push_back(true);
            continue;
        }
        QString tok;
        while (i < n && line[i] != u' ' && line[i] != u'\t' && line[i] != u'\r') tok += line[i++];
        tokens->append(tok);
        quoted->push_back(false);
    }
    return true;
}

bool parseScript(const QString &text, std::vector<Statement> *out, QString *error)
{
    const QStringList lines = text.split(u'\n');
    for (int i = 0; i < lines.size(); ++i) {
        Statement s;
        s.line = i + 1;
        QString err;
        if (!tokenize(lines[i], &s.tokens, &s.quoted, &err)) {
            *error = QStringLiteral("line %1: %2").arg(i + 1).arg(err);
            return false;
        }
        if (!s.tokens.isEmpty()) out->push_back(s);
    }
    return true;
}

QString expandVars(QString s, const QString &home, const QString &data, const QString &fix)
{
    s.replace(QLatin1String("$HOME"), home);
    s.replace(QLatin1String("$DATA"), data);
    s.replace(QLatin1String("$FIX"), fix);
    return s;
}

}  // namespace tw::scenario
