// Folder trees built by the tests, in a temporary folder of their own.
#pragma once

#include "browse/search_engine.h"

#include <QDir>
#include <QFile>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <deque>
#include <functional>

#include <ostream>

// Readable QStrings in test failures.
inline void PrintTo(const QString &s, std::ostream *os) { *os << '"' << s.toStdString() << '"'; }

namespace twtest {

class TempTree {
public:
    TempTree() { dir_.setAutoRemove(true); }
    QString root() const { return dir_.path(); }
    QString path(const QString &rel) const
    {
        return rel.isEmpty() ? root() : root() + QLatin1Char('/') + rel;
    }
    void mkdir(const QString &rel) const { QDir().mkpath(path(rel)); }
    void put(const QString &rel, const QByteArray &content = "x") const
    {
        const QString p = path(rel);
        QDir().mkpath(QFileInfo(p).path());
        QFile f(p);
        f.open(QIODevice::WriteOnly);
        f.write(content);
    }
    void link(const QString &target, const QString &rel) const { QFile::link(target, path(rel)); }

private:
    QTemporaryDir dir_;
};

// A window stand-in that records what the walk shows and answers its questions.
class FakeHost : public tw::browse::SearchHost {
public:
    QStringList boxes;  // every notice and question, in order
    std::deque<bool> answers;  // answers to Yes/No questions (No when empty)
    QString listPattern, listFolder, title;
    QStringList foldersShown;
    QStringList log;  // boxes, questions and folders shown, in one order
    int yields = 0;
    std::function<void()> onYield;
    std::function<void()> onDialog;
    bool busy = false;

    void inform(const QString &text, const QString &title) override
    {
        boxes << (title.isEmpty() ? QStringLiteral("[]") : QStringLiteral("[") + title + QStringLiteral("]"))
                + text;
        log << boxes.last();
    }
    bool askYesNo(const QString &text) override
    {
        boxes << QStringLiteral("?") + text;
        log << boxes.last();
        if (answers.empty()) return false;
        const bool a = answers.front();
        answers.pop_front();
        return a;
    }
    void setListPattern(const QString &p) override { listPattern = p; }
    void setListFolder(const QString &p) override
    {
        if (p.trimmed().isEmpty()) return;
        listFolder = p;
        foldersShown << p;
        log << QStringLiteral("folder ") + p;
    }
    QString treeFolderPath() override { return listFolder; }
    void setTitle(const QString &t) override { title = t; }
    void yieldEvents() override
    {
        ++yields;
        if (onYield) onYield();
    }
    void setPointerBusy(bool on) override { busy = on; }
    void showFindDialog() override
    {
        if (onDialog) onDialog();
    }
};

}  // namespace twtest
