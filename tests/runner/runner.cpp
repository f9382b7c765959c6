// The scenario runner: drives the real main window and its dialogs headless, statement
// by statement, the way a user would, and checks what a user would see.
#include "actions.h"
#include "script.h"

#include "app/tarnwick1.h"
#include "core/tool_manager.h"
#include "core/busy.h"
#include "core/globals.h"
#include "core/scenario_access.h"
#include "core/scenario_hooks.h"
#include "core/text_rules.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QColorDialog>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPointer>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QTextEdit>
#include <QTimer>
#include <QToolBar>
#include <QTreeView>
#include <QUrl>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

using namespace tw;
using namespace tw::scenario;

namespace {

enum class Status { Done, Retry, Fail };

struct Outcome {
    Status status = Status::Done;
    QString message;
    static Outcome done() { return {}; }
    static Outcome retry(const QString &m) { return {Status::Retry, m}; }
    static Outcome fail(const QString &m) { return {Status::Fail, m}; }
};

int timeoutMs()
{
    bool ok = false;
    const int v = qEnvironmentVariableIntValue("TW_SCENARIO_TIMEOUT", &ok);
    return ok && v > 0 ? v : 10000;
}

class Runner : public QObject {
public:
    Runner(const QString &file, const QString &fixtures) : file_(file), fixtures_(fixtures) {}

    // Runs the scenario; true when it passed. Failures go to failures_.
    bool run()
    {
        QFile f(file_);
        if (!f.open(QIODevice::ReadOnly)) return fail(0, QStringLiteral("cannot read the file"));
        QString err;
        if (!parseScript(QString::fromUtf8(f.readAll()), &script_, &err)) return fail(0, err);
        makeHome();
        QTimer tick;
        tick.setInterval(2);
        connect(&tick, &QTimer::timeout, this, [this] { onTick(); });
        tick.start();
        loop_.exec();
        tick.stop();
        cleanup();
        return failures_.isEmpty();
    }

    QStringList failures_;

private:
    bool fail(int line, const QString &msg)
    {
        failures_ << QStringLiteral("%1:%2: %3").arg(file_).arg(line).arg(msg);
        return false;
    }

    void makeHome()
    {
        QByteArray tmpl = QDir::tempPath().toLocal8Bit() + "/twscnXXXXXX";
        char *d = mkdtemp(tmpl.data());
        home_ = QString::fromLocal8Bit(d ? d : "/tmp/twscn");
        home_.remove(u'.');
        QDir().mkpath(home_);
        qputenv("HOME", home_.toLocal8Bit());
        qputenv("XDG_DATA_HOME", (home_ + QStringLiteral("/share")).toLocal8Bit());
        qputenv("XDG_CACHE_HOME", (home_ + QStringLiteral("/cache")).toLocal8Bit());
        qputenv("XDG_CONFIG_HOME", (home_ + QStringLiteral("/config")).toLocal8Bit());
        // The shell's "Open" is recorded in $HOME/shell-open.log instead of starting a program.
        const QString log = home_ + QStringLiteral("/shell-open.log");
        Tarnwick1::shellOpener() = [log](const QString &path) {
            QFile f(log);
            if (!f.open(QIODevice::Append)) return false;
            f.write(pathToBytes(path) + "\n");
            return true;
        };
        data_ = home_ + QStringLiteral("/share/tarnwick");
    }

    void cleanup()
    {
        // Whatever is still open goes without its shutdown: the scenario is over.
        for (QWidget *w : QApplication::topLevelWidgets()) {
            if (w->isModal() || qobject_cast<QDialog *>(w)) w->hide();
        }
        if (win_) {
            win_->hide();
            delete win_.data();
        }
        clearScenarioHooks();
        QDir(home_).removeRecursively();
    }

    QString x(const QString &s) const
    {
        // $CORPUS: the shared folder of real-world sample files (TW_CORPUS overrides).
        static const QString corpus = qEnvironmentVariableIsEmpty("TW_CORPUS")
            ? QStringLiteral(TW_DEFAULT_CORPUS)
            : qEnvironmentVariable("TW_CORPUS");
        return expandVars(s, home_, data_, fixtures_).replace(QLatin1String("$CORPUS"), corpus);
    }

    static QMessageBox *activeBox() { return qobject_cast<QMessageBox *>(QApplication::activeModalWidget()); }

    void finish() { loop_.quit(); }

    void onTick()
    {
        if (finished_) return;
        if (running_ > 0 && !QApplication::activeModalWidget()) return;  // a statement runs
        if (busyDepth() > 0 && !QApplication::activeModalWidget()) return;  // a walk runs
        if (aborted_) {
            if (QWidget *m = QApplication::activeModalWidget()) {
                m->close();
                if (auto *d = qobject_cast<QDialog *>(m)) d->reject();
                return;
            }
            if (running_ == 0) {
                finished_ = true;
                finish();
            }
            return;
        }
        if (pc_ >= script_.size()) {
            // A box with no statement left to answer it fails the scenario, also while the
            // last statement still waits on it (a close that asks a question).
            if (running_ > 0 && !activeBox()) return;
            if (QMessageBox *b = activeBox()) {
                fail(script_.empty() ? 0 : script_.back().line,
                     QStringLiteral("a message box was left unanswered: \"%1\" \"%2\"")
                         .arg(b->windowTitle(), b->text()));
                aborted_ = true;
                return;
            }
            finished_ = true;
            finish();
            return;
        }
        const Statement &st = script_[pc_];
        // A box that appears while the next statement is no box line fails the scenario.
        if (QMessageBox *b = activeBox()) {
            if (st.tokens[0] != QLatin1String("box")) {
                fail(st.line,
                     QStringLiteral("unexpected message box \"%1\" \"%2\"").arg(b->windowTitle(), b->text()));
                aborted_ = true;
                return;
            }
        }
        if (!started_.isValid()) started_.start();
        const size_t myPc = pc_;
        // The statement is taken before it runs, so statements that act inside a modal
        // window it opens come next.
        ++pc_;
        ++running_;
        // A timer does not fire again while its own handler runs, so a statement that opens
        // a modal window gets a fresh timer to carry the statements that act inside it.
        auto nested = std::make_unique<QTimer>();
        nested->setInterval(2);
        connect(nested.get(), &QTimer::timeout, this, [this] { onTick(); });
        nested->start();
        Outcome o;
        try {
            o = execute(st);
        } catch (const std::exception &e) {
            o = Outcome::fail(QString::fromLocal8Bit(e.what()));
        }
        nested.reset();
        --running_;
        if (o.status == Status::Retry) {
            if (started_.elapsed() < timeoutMs()) {
                if (pc_ == myPc + 1) pc_ = myPc;  // try the same statement again
                return;
            }
            o.status = Status::Fail;
        }
        started_.invalidate();
        if (o.status == Status::Fail) {
            fail(st.line, o.message);
            aborted_ = true;
            return;
        }
    }

    // ---------------------------------------------------------------- lookup

    QWidget *window(const QString &name) const
    {
        if (name == QLatin1String("Tarnwick1")) return win_;
        for (QWidget *w : QApplication::topLevelWidgets())
            if (w->objectName() == name) return w;
        if (win_)
            for (QWidget *w : win_->findChildren<QWidget *>(name))
                if (w->isWindow()) return w;
        return nullptr;
    }

    QWidget *control(const QString &path, QString *err) const
    {
        const int dot = path.indexOf(u'.');
        const QString wn = dot < 0 ? path : path.left(dot);
        QWidget *w = window(wn);
        if (!w) {
            *err = QStringLiteral("no window ") + wn;
            return nullptr;
        }
        if (dot < 0) return w;
        const QString cn = path.mid(dot + 1);
        if (w->objectName() == cn) return w;
        QWidget *c = w->findChild<QWidget *>(cn);
        if (!c && w == win_) {
            // A control of a tab not entered yet: its page makes its controls on first need.
            win_->buildAllPages();
            c = w->findChild<QWidget *>(cn);
        }
        if (!c) *err = QStringLiteral("no control ") + path;
        return c;
    }

    ToolManager *tools() const { return win_ ? win_->ToolBarComp1 : nullptr; }

    // ---------------------------------------------------------------- reading controls

    static QStringList rowsOf(QWidget *w)
    {
        if (auto *sa = dynamic_cast<ScenarioAccess *>(w)) return sa->scenarioRows();
        QStringList r;
        if (auto *lw = qobject_cast<QListWidget *>(w)) {
            for (int i = 0; i < lw->count(); ++i) r << lw->item(i)->text();
        } else if (auto *cb = qobject_cast<QComboBox *>(w)) {
            for (int i = 0; i < cb->count(); ++i) r << cb->itemText(i);
        } else if (auto *v = qobject_cast<QAbstractItemView *>(w)) {
            if (auto *m = v->model())
                for (int i = 0; i < m->rowCount(v->rootIndex()); ++i)
                    r << m->index(i, 0, v->rootIndex()).data().toString();
        } else if (auto *tb = qobject_cast<QTabWidget *>(w)) {
            for (int i = 0; i < tb->count(); ++i) r << tb->tabText(i);
        }
        return r;
    }

    static QString textOf(QWidget *w)
    {
        if (auto *e = qobject_cast<QLineEdit *>(w)) return e->text();
        if (auto *l = qobject_cast<QLabel *>(w)) return l->text();
        if (auto *t = qobject_cast<QTextEdit *>(w)) return t->toPlainText();
        if (auto *t = qobject_cast<QPlainTextEdit *>(w)) return t->toPlainText();
        if (auto *c = qobject_cast<QComboBox *>(w)) return c->currentText();
        if (auto *b = qobject_cast<QAbstractButton *>(w)) return b->text();
        if (auto *g = qobject_cast<QGroupBox *>(w)) return g->title();
        if (auto *sa = dynamic_cast<ScenarioAccess *>(w)) return sa->scenarioSelected();
        if (w->isWindow()) return w->windowTitle();
        return w->property("text").toString();
    }

    // The tab widget whose page w is, and the page's index; null when w is no tab page.
    static QTabWidget *tabOfPage(QWidget *w, int *index)
    {
        QWidget *stack = w->parentWidget();
        auto *tabs = stack ? qobject_cast<QTabWidget *>(stack->parentWidget()) : nullptr;
        if (tabs) *index = tabs->indexOf(w);
        return tabs && *index >= 0 ? tabs : nullptr;
    }

    static QString captionOf(QWidget *w)
    {
        int page = -1;
        if (QTabWidget *tabs = tabOfPage(w, &page)) return tabs->tabText(page);
        if (w->isWindow()) return w->windowTitle();
        if (auto *b = qobject_cast<QAbstractButton *>(w)) return b->text();
        if (auto *g = qobject_cast<QGroupBox *>(w)) return g->title();
        if (auto *l = qobject_cast<QLabel *>(w)) return l->text();
        return textOf(w);
    }

    // ---------------------------------------------------------------- acting on controls

    static QPoint rowPoint(QAbstractItemView *v, int row)
    {
        const QModelIndex idx = v->model()->index(row, 0, v->rootIndex());
        v->scrollTo(idx);
        return v->visualRect(idx).center();
    }

    // The item of an item view that Arg names: with ByRow, or when Arg is a number, the row
    // of that number; else the item a composite control finds by its text or path, a tree's
    // node at any depth by its text or text path, or a list's row by its text.
    Outcome itemIndex(QAbstractItemView *v, const QString &arg, bool byRow, QModelIndex *out)
    {
        *out = QModelIndex();
        QString err;
        bool isNum = false;
        const int n = arg.toInt(&isNum);
        auto *sa = dynamic_cast<ScenarioAccess *>(v);
        if (!byRow && sa) {
            *out = sa->scenarioIndex(arg, &err);
            return out->isValid() ? Outcome::done() : Outcome::fail(err);
        }
        if (byRow || isNum) {
            if (!v->model() || n < 0 || n >= v->model()->rowCount(v->rootIndex()))
                return Outcome::fail(QStringLiteral("no row %1").arg(arg));
            *out = v->model()->index(n, 0, v->rootIndex());
            return Outcome::done();
        }
        if (auto *tree = qobject_cast<QTreeView *>(v)) {
            // A model may fill itself a moment later: wait for the node.
            *out = findTreeNode(tree, arg, &err);
            return out->isValid() ? Outcome::done() : Outcome::retry(err);
        }
        const int row = rowsOf(v).indexOf(arg);
        if (row < 0) return Outcome::fail(QStringLiteral("no row \"%1\"").arg(arg));
        *out = v->model()->index(row, 0, v->rootIndex());
        return Outcome::done();
    }

    Outcome clickIndex(QAbstractItemView *v, const QModelIndex &idx, const QString &how)
    {
        QWidget *vp = v->viewport();
        v->scrollTo(idx);
        const QPoint p = v->visualRect(idx).center();
        // A list the program keeps out of sight has no place to click: its row is chosen
        // as a click would choose it.
        const bool reachable = v->isVisible() && v->indexAt(p) == idx;
        if (!reachable) {
            v->setCurrentIndex(idx);
            emit v->clicked(idx);
            if (how == QLatin1String("dblclick")) emit v->doubleClicked(idx);
            return Outcome::done();
        }
        if (how == QLatin1String("dblclick")) {
            QTest::mouseClick(vp, Qt::LeftButton, {}, p);
            QTest::mouseDClick(vp, Qt::LeftButton, {}, p);
        } else {
            QTest::mouseClick(vp, how == QLatin1String("rclick") ? Qt::RightButton : Qt::LeftButton, {}, p);
        }
        return Outcome::done();
    }

    Outcome clickRow(QWidget *w, int row, const QString &how)
    {
        if (auto *v = qobject_cast<QAbstractItemView *>(w)) {
            if (!v->model() || row < 0 || row >= v->model()->rowCount(v->rootIndex()))
                return Outcome::fail(QStringLiteral("no row %1").arg(row));
            return clickIndex(v, v->model()->index(row, 0, v->rootIndex()), how);
        }
        QString e;
        if (auto *cb = qobject_cast<QComboBox *>(w)) {
            if (!cb->isEnabled()) return Outcome::done();  // a grey drop-down does not open
            return pickComboRow(cb, row, &e) ? Outcome::done() : Outcome::fail(e);
        }
        if (auto *sa = dynamic_cast<ScenarioAccess *>(w)) {
            const bool ok = how == QLatin1String("dblclick")
                ? sa->scenarioDoubleClick(QString::number(row), &e)
                : sa->scenarioSelect(QString::number(row), &e);
            return ok ? Outcome::done() : Outcome::fail(e);
        }
        return Outcome::fail(QStringLiteral("the control has no rows"));
    }

    Outcome click(QWidget *w, const QString &how)
    {
        if (!w->isEnabled()) return Outcome::done();  // a click on a grey control does nothing
        const QPoint c = w->rect().center();
        if (how == QLatin1String("dblclick")) {
            QTest::mouseDClick(w, Qt::LeftButton, {}, c);
        } else if (how == QLatin1String("rclick")) {
            QTest::mouseClick(w, Qt::RightButton, {}, c);
        } else if (auto *b = qobject_cast<QAbstractButton *>(w)) {
            b->click();
        } else {
            QTest::mouseClick(w, Qt::LeftButton, {}, c);
        }
        return Outcome::done();
    }

    static bool keyFromName(const QString &name, Qt::Key *key, bool *keypad)
    {
        bool isNum = false;
        const int code = name.toInt(&isNum);
        if (isNum) {
            // The key codes of the old runtime.
            static const QHash<int, Qt::Key> codes = {
                {8, Qt::Key_Backspace}, {9, Qt::Key_Tab},     {13, Qt::Key_Return},   {27, Qt::Key_Escape},
                {32, Qt::Key_Space},    {33, Qt::Key_PageUp}, {34, Qt::Key_PageDown}, {35, Qt::Key_End},
                {36, Qt::Key_Home},     {37, Qt::Key_Left},   {38, Qt::Key_Up},       {39, Qt::Key_Right},
                {40, Qt::Key_Down},     {45, Qt::Key_Insert}, {46, Qt::Key_Delete},   {106, Qt::Key_Asterisk},
                {107, Qt::Key_Plus},    {109, Qt::Key_Minus}, {110, Qt::Key_Period},  {111, Qt::Key_Slash},
                {187, Qt::Key_Equal},   {189, Qt::Key_Minus}};
            if (codes.contains(code)) {
                *key = codes.value(code);
                if (code >= 106 && code <= 111) *keypad = true;
                return true;
            }
            if (code >= 48 && code <= 57) {
                *key = Qt::Key(Qt::Key_0 + code - 48);
                return true;
            }
            if (code >= 65 && code <= 90) {
                *key = Qt::Key(Qt::Key_A + code - 65);
                return true;
            }
            if (code >= 96 && code <= 105) {
                *key = Qt::Key(Qt::Key_0 + code - 96);
                *keypad = true;
                return true;
            }
            if (code >= 112 && code <= 135) {
                *key = Qt::Key(Qt::Key_F1 + code - 112);
                return true;
            }
            return false;
        }
        static const QHash<QString, Qt::Key> names = {{"escape", Qt::Key_Escape},
                                                      {"esc", Qt::Key_Escape},
                                                      {"enter", Qt::Key_Return},
                                                      {"return", Qt::Key_Return},
                                                      {"tab", Qt::Key_Tab},
                                                      {"space", Qt::Key_Space},
                                                      {"backspace", Qt::Key_Backspace},
                                                      {"delete", Qt::Key_Delete},
                                                      {"del", Qt::Key_Delete},
                                                      {"insert", Qt::Key_Insert},
                                                      {"ins", Qt::Key_Insert},
                                                      {"home", Qt::Key_Home},
                                                      {"end", Qt::Key_End},
                                                      {"pageup", Qt::Key_PageUp},
                                                      {"pagedown", Qt::Key_PageDown},
                                                      {"left", Qt::Key_Left},
                                                      {"right", Qt::Key_Right},
                                                      {"up", Qt::Key_Up},
                                                      {"down", Qt::Key_Down},
                                                      {"add", Qt::Key_Plus},
                                                      {"plus", Qt::Key_Plus},
                                                      {"subtract", Qt::Key_Minus},
                                                      {"minus", Qt::Key_Minus},
                                                      {"multiply", Qt::Key_Asterisk},
                                                      {"divide", Qt::Key_Slash},
                                                      {"pgup", Qt::Key_PageUp},
                                                      {"pgdn", Qt::Key_PageDown}};
        const QString n = name.toLower();
        if (names.contains(n)) {
            *key = names.value(n);
            // Add, Subtract, Multiply and Divide are the keys of the numeric pad.
            *keypad = n == QLatin1String("add") || n == QLatin1String("subtract")
                || n == QLatin1String("multiply") || n == QLatin1String("divide");
            return true;
        }
        if (n.size() >= 2 && n[0] == u'f') {
            bool ok = false;
            const int f = n.mid(1).toInt(&ok);
            if (ok && f >= 1 && f <= 24) {
                *key = Qt::Key(Qt::Key_F1 + f - 1);
                return true;
            }
        }
        if (name.size() == 1) {
            const QChar c = name[0].toUpper();
            if (c.isLetter() && c.unicode() < 128) {
                *key = Qt::Key(Qt::Key_A + c.unicode() - 'A');
                return true;
            }
            if (c.isDigit()) {
                *key = Qt::Key(Qt::Key_0 + c.unicode() - '0');
                return true;
            }
        }
        return false;
    }

    // ---------------------------------------------------------------- statements

    Outcome execute(const Statement &st)
    {
        const QStringList &t = st.tokens;
        const QString &cmd = t[0];
        auto arg = [&](int i) { return i < t.size() ? x(t[i]) : QString(); };
        auto need = [&](int n) {
            if (t.size() < n + 1)
                throw std::runtime_error(
                    QStringLiteral("%1 needs %2 arguments").arg(cmd).arg(n).toStdString());
        };

        if (cmd == QLatin1String("setenv")) {
            // An environment variable for what the program starts from now on (SANE's
            // configuration folder, PATH).
            need(2);
            return qputenv(t[1].toLocal8Bit().constData(), arg(2).toLocal8Bit())
                ? Outcome::done()
                : Outcome::fail(QStringLiteral("cannot set ") + t[1]);
        }
        if (cmd == QLatin1String("mkdir")) {
            need(1);
            return QDir().mkpath(arg(1)) ? Outcome::done()
                                         : Outcome::fail(QStringLiteral("cannot make ") + arg(1));
        }
        if (cmd == QLatin1String("remove")) {
            need(1);
            // Only what lies in the scenario's own home: a slip in a path never reaches
            // anything else.
            const QString path = QDir::cleanPath(QFileInfo(arg(1)).absoluteFilePath());
            if (!path.startsWith(home_ + u'/'))
                return Outcome::fail(QStringLiteral("remove reaches only into $HOME: ") + path);
            const QFileInfo fi(path);
            if (!fi.exists() && !fi.isSymLink())
                return Outcome::fail(QStringLiteral("nothing to remove at ") + path);
            // A link goes, never what it points at.
            const bool ok =
                fi.isDir() && !fi.isSymLink() ? QDir(path).removeRecursively() : QFile::remove(path);
            return ok ? Outcome::done() : Outcome::fail(QStringLiteral("cannot remove ") + path);
        }
        if (cmd == QLatin1String("runnerdialog")) {
            // A file dialog of the runner's own, to check the statements that answer and read
            // file dialogs; what it returns ("" when cancelled) is the variable RunnerDialogResult.
            need(1);
            QFileDialog d(win_.data());
            d.setObjectName(QStringLiteral("RunnerFileDialog"));
            d.setOption(QFileDialog::DontUseNativeDialog, true);
            d.setWindowTitle(arg(1));
            if (t.size() > 2) d.setDirectory(arg(2));
            if (t.size() > 3) d.setNameFilter(arg(3));
            if (t.size() > 4) d.setDefaultSuffix(arg(4));
            runnerDialogResult_ = d.exec() == QDialog::Accepted ? d.selectedFiles().value(0) : QString();
            return Outcome::done();
        }
        if (cmd == QLatin1String("run")) {
            // A program of the test machine, waited for; it must end with status 0.
            need(1);
            QStringList args;
            for (int i = 2; i < t.size(); ++i) args << arg(i);
            QProcess pr;
            pr.start(arg(1), args);
            if (!pr.waitForFinished(30000) || pr.exitStatus() != QProcess::NormalExit || pr.exitCode() != 0)
                return Outcome::fail(arg(1) + QStringLiteral(" failed: ")
                                     + QString::fromLocal8Bit(pr.readAllStandardError()));
            return Outcome::done();
        }
        if (cmd == QLatin1String("ffmpeg")) {
            // Media made for the test: ffmpeg with these arguments, quiet, overwriting.
            need(1);
            QStringList args{QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-y"),
                             QStringLiteral("-nostdin")};
            for (int i = 1; i < t.size(); ++i) args << arg(i);
            const QString out = arg(t.size() - 1);
            QDir().mkpath(QFileInfo(out).absolutePath());
            QProcess pr;
            pr.start(QStringLiteral("ffmpeg"), args);
            if (!pr.waitForFinished(30000) || pr.exitStatus() != QProcess::NormalExit || pr.exitCode() != 0)
                return Outcome::fail(QStringLiteral("ffmpeg failed: ")
                                     + QString::fromLocal8Bit(pr.readAllStandardError()));
            return Outcome::done();
        }
        if (cmd == QLatin1String("put")) {
            need(2);
            QFileInfo fi(arg(1));
            QDir().mkpath(fi.absolutePath());
            QFile f(arg(1));
            if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate))
                return Outcome::fail(QStringLiteral("cannot write ") + arg(1));
            f.write(arg(2).toUtf8());
            return Outcome::done();
        }
        if (cmd == QLatin1String("patch")) {
            // Overwrites bytes of a file in place: patch <path> <offset> "<hex bytes>".
            need(3);
            QFile f(arg(1));
            bool ok = false;
            const qint64 at = arg(2).toLongLong(&ok);
            const QByteArray bytes = QByteArray::fromHex(arg(3).toLatin1());
            if (!ok || bytes.isEmpty() || !f.open(QIODevice::ReadWrite) || at + bytes.size() > f.size()
                || !f.seek(at) || f.write(bytes) != bytes.size())
                return Outcome::fail(QStringLiteral("cannot patch ") + arg(1));
            return Outcome::done();
        }
        if (cmd == QLatin1String("copy")) {
            need(2);
            QString from = arg(1);
            if (QFileInfo(from).isRelative()) from = fixtures_ + u'/' + from;
            QFileInfo fi(arg(2));
            QDir().mkpath(fi.absolutePath());
            QFile::remove(arg(2));
            return QFile::copy(from, arg(2)) ? Outcome::done()
                                             : Outcome::fail(QStringLiteral("cannot copy ") + from);
        }
        if (cmd == QLatin1String("start")) {
            QStringList words;
            for (int i = 1; i < t.size(); ++i) words << arg(i);
            if (win_ && win_->isVisible())
                return Outcome::fail(QStringLiteral("the program is already started"));
            if (win_) {
                // Started again after a stop: a new process would begin from nothing.
                delete win_.data();
                clearScenarioHooks();
            }
            win_ = new Tarnwick1(words.join(u' '));
            win_->show();
            win_->activateWindow();
            QElapsedTimer el;
            el.start();
            while (win_ && win_->Activations == 0 && el.elapsed() < 300)
                QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
            if (win_ && win_->Activations == 0) win_->activated();
            return Outcome::done();
        }
        if (cmd == QLatin1String("stop")) {
            if (!win_) return Outcome::fail(QStringLiteral("the program is not started"));
            win_->close();
            return Outcome::done();
        }
        if (cmd == QLatin1String("tool")) {
            need(1);
            if (!tools()) return Outcome::fail(QStringLiteral("the program is not started"));
            QAction *a = tools()->action(arg(1));
            if (!a) return Outcome::fail(QStringLiteral("no tool ") + arg(1));
            if (a->isEnabled()) a->trigger();
            return Outcome::done();
        }
        if (cmd == QLatin1String("tab")) {
            need(1);
            if (!win_) return Outcome::fail(QStringLiteral("the program is not started"));
            const int idx = Tarnwick1::tabIndex(arg(1));
            if (idx == 0) return Outcome::fail(QStringLiteral("no tab ") + arg(1));
            QTabBar *bar = win_->TabStrip1->tabBar();
            QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(idx - 1).center());
            return Outcome::done();
        }
        if (cmd == QLatin1String("click") || cmd == QLatin1String("dblclick")
            || cmd == QLatin1String("rclick") || cmd == QLatin1String("select")) {
            need(1);
            QString err;
            QWidget *w = control(arg(1), &err);
            if (!w) return Outcome::retry(err);
            QString rowArg;
            bool byRow = false;
            if (cmd == QLatin1String("select")) {
                need(2);
                rowArg = arg(2);
            } else if (t.size() >= 4 && t[2] == QLatin1String("row")) {
                rowArg = arg(3);
                byRow = true;
            } else if (t.size() >= 3) {
                rowArg = arg(2);  // an item named by its text or path
            }
            const QString how = cmd == QLatin1String("select") ? QStringLiteral("click") : cmd;
            if (rowArg.isNull()) return click(w, how);
            auto *view = qobject_cast<QAbstractItemView *>(w);
            auto *sa = dynamic_cast<ScenarioAccess *>(w);
            // A composite control chooses its item itself; a right click on an item of one
            // that is an item view is pressed where the item shows, as on any other view.
            if (sa && !(view && how == QLatin1String("rclick"))) {
                const bool ok = how == QLatin1String("dblclick") ? sa->scenarioDoubleClick(rowArg, &err)
                                                                 : sa->scenarioSelect(rowArg, &err);
                return ok ? Outcome::done() : Outcome::fail(err);
            }
            if (view) {
                QModelIndex idx;
                const Outcome o = itemIndex(view, rowArg, byRow, &idx);
                return idx.isValid() ? clickIndex(view, idx, how) : o;
            }
            bool isNum = false;
            int row = rowArg.toInt(&isNum);
            if (!isNum) {
                row = rowsOf(w).indexOf(rowArg);
                if (row < 0) return Outcome::fail(QStringLiteral("no row \"%1\" in %2").arg(rowArg, arg(1)));
            }
            return clickRow(w, row, how);
        }
        if (cmd == QLatin1String("set")) {
            need(2);
            const bool want = t[2] == QLatin1String("checked");
            if (!want && t[2] != QLatin1String("unchecked"))
                return Outcome::fail(QStringLiteral("set needs checked or unchecked"));
            if (tools() && tools()->has(arg(1))) {
                // A tool that stays pressed: clicked only when it is not as wanted.
                if (tools()->isChecked(arg(1)) == want) return Outcome::done();
                QAction *a = tools()->action(arg(1));
                if (!a || !a->isEnabled())
                    return Outcome::fail(
                        QStringLiteral("%1 is grey: a click cannot make it %2").arg(arg(1), t[2]));
                // No check afterwards: a tool that opens a modal window is pressed only while
                // the window is open, and the window has come and gone when the click returns.
                a->trigger();
                return Outcome::done();
            }
            QString err;
            QWidget *w = control(arg(1), &err);
            if (!w) return Outcome::retry(err);
            auto *b = qobject_cast<QAbstractButton *>(w);
            if (!b || !b->isCheckable()) return Outcome::fail(arg(1) + QStringLiteral(" cannot be checked"));
            if (b->isChecked() == want) return Outcome::done();
            if (!b->isEnabled())
                return Outcome::fail(
                    QStringLiteral("%1 is grey: a click cannot make it %2").arg(arg(1), t[2]));
            b->click();
            // A radio button is not cleared by a click on it, nor is a box the program sets back.
            if (b->isChecked() != want)
                return Outcome::fail(
                    QStringLiteral("a click leaves %1 %2")
                        .arg(arg(1),
                             b->isChecked() ? QStringLiteral("checked") : QStringLiteral("unchecked")));
            return Outcome::done();
        }
        if (cmd == QLatin1String("type")) {
            need(2);
            QString err;
            QWidget *w = control(arg(1), &err);
            if (!w) return Outcome::retry(err);
            if (auto *cb = qobject_cast<QComboBox *>(w)) w = cb->lineEdit() ? cb->lineEdit() : w;
            w->setFocus();
            if (auto *e = qobject_cast<QLineEdit *>(w)) e->selectAll(), QTest::keyClick(e, Qt::Key_Delete);
            else if (auto *te = qobject_cast<QTextEdit *>(w)) te->clear();
            else if (auto *pe = qobject_cast<QPlainTextEdit *>(w)) pe->clear();
            else if (auto *sb = qobject_cast<QAbstractSpinBox *>(w))
                sb->selectAll(), QTest::keyClick(sb, Qt::Key_Delete);
            QTest::keyClicks(w, arg(2));
            return Outcome::done();
        }
        if (cmd == QLatin1String("slide")) {
            // A slider or scroll bar dragged to a value: its position moves with tracking on,
            // so the value changes as under the mouse.
            need(2);
            QString err;
            QWidget *w = control(arg(1), &err);
            if (!w) return Outcome::retry(err);
            auto *sl = qobject_cast<QAbstractSlider *>(w);
            if (!sl) return Outcome::fail(arg(1) + QStringLiteral(" is no slider"));
            if (!sl->isEnabled()) return Outcome::fail(arg(1) + QStringLiteral(" is disabled"));
            sl->setFocus();
            sl->setSliderDown(true);
            sl->setSliderPosition(arg(2).toInt());
            sl->setSliderDown(false);
            return Outcome::done();
        }
        if (cmd == QLatin1String("key")) {
            need(2);
            QString err;
            QWidget *w = control(arg(1), &err);
            if (!w) return Outcome::retry(err);
            Qt::Key key;
            bool keypad = false;
            if (!keyFromName(arg(2), &key, &keypad))
                return Outcome::fail(QStringLiteral("unknown key ") + arg(2));
            Qt::KeyboardModifiers mods;
            // The key codes of the numeric pad come from the pad.
            if (keypad) mods |= Qt::KeypadModifier;
            for (int i = 3; i < t.size(); ++i) {
                if (t[i] == QLatin1String("shift")) mods |= Qt::ShiftModifier;
                else if (t[i] == QLatin1String("ctrl")) mods |= Qt::ControlModifier;
                else if (t[i] == QLatin1String("alt")) mods |= Qt::AltModifier;
            }
            if (w->isWindow()) {
                QWidget *f = w->focusWidget() ? w->focusWidget() : w;
                QTest::keyClick(f, key, mods);
            } else {
                w->setFocus();
                QTest::keyClick(w, key, mods);
            }
            return Outcome::done();
        }
        if (cmd == QLatin1String("call")) {
            need(1);
            QStringList args;
            for (int i = 2; i < t.size(); ++i) args << arg(i);
            QString err;
            if (!callScenarioRoutine(arg(1), args, &err)) return Outcome::fail(err);
            return Outcome::done();
        }
        if (cmd == QLatin1String("drop")) {
            need(2);
            QString err;
            QWidget *w = control(arg(1), &err);
            if (!w) return Outcome::retry(err);
            auto *md = new QMimeData;
            QList<QUrl> urls;
            for (int i = 2; i < t.size(); ++i) urls << QUrl::fromLocalFile(arg(i));
            md->setUrls(urls);
            QWidget *target = w;
            if (auto *v = qobject_cast<QAbstractItemView *>(w)) target = v->viewport();
            const QPoint p = target->rect().center();
            QDragEnterEvent enter(p, Qt::CopyAction, md, Qt::LeftButton, {});
            QApplication::sendEvent(target, &enter);
            QDragMoveEvent move(p, Qt::CopyAction, md, Qt::LeftButton, {});
            QApplication::sendEvent(target, &move);
            QDropEvent drop(QPointF(p), Qt::CopyAction, md, Qt::LeftButton, {});
            QApplication::sendEvent(target, &drop);
            delete md;
            return Outcome::done();
        }
        if (cmd == QLatin1String("drag")) {
            need(3);
            QString err;
            QWidget *src = control(arg(1), &err);
            if (!src) return Outcome::retry(err);
            // The item pressed on and the item let go over: "row <n>", or an item's text or
            // path (a tree's node at any depth); none for the middle of the control.
            // "at <x> <y>": a point of the control itself, in twips from its top left corner.
            QPoint atPoint[2];
            bool atGiven[2] = {false, false};
            int which = 0;
            auto item = [&](QWidget *w, int *i, QModelIndex *idx) -> Outcome {
                if (*i < t.size() && t[*i] == QLatin1String("at") && !st.quoted[*i]) {
                    need(*i + 2);
                    atPoint[which] = QPoint(arg(*i + 1).toInt() / 15, arg(*i + 2).toInt() / 15);
                    atGiven[which] = true;
                    *i += 3;
                    return Outcome::done();
                }
                const bool byRow = *i < t.size() && t[*i] == QLatin1String("row") && !st.quoted[*i];
                if (!byRow && (*i >= t.size() || (t[*i] == QLatin1String("to") && !st.quoted[*i])))
                    return Outcome::done();
                auto *v = qobject_cast<QAbstractItemView *>(w);
                if (!v) return Outcome::fail(QStringLiteral("the control has no rows"));
                if (byRow) need(*i + 1);
                const Outcome o = itemIndex(v, arg(byRow ? *i + 1 : *i), byRow, idx);
                *i += byRow ? 2 : 1;
                return o;
            };
            auto placeOf = [](QWidget *w, const QModelIndex &idx, QWidget **on) {
                auto *v = qobject_cast<QAbstractItemView *>(w);
                if (!v || !idx.isValid()) {
                    *on = w;
                    return w->rect().center();
                }
                *on = v->viewport();
                v->scrollTo(idx);
                return v->visualRect(idx).center();
            };
            int i = 2;
            QModelIndex fromIdx, toIdx;
            Outcome o = item(src, &i, &fromIdx);
            if (o.status != Status::Done) return o;
            if (t.value(i) != QLatin1String("to") || i + 1 >= t.size())
                return Outcome::fail(QStringLiteral("drag needs 'to'"));
            QWidget *dst = control(arg(i + 1), &err);
            if (!dst) return Outcome::fail(err);
            i += 2;
            which = 1;
            o = item(dst, &i, &toIdx);
            if (o.status != Status::Done) return o;
            QWidget *press = nullptr, *over = nullptr;
            QPoint from = placeOf(src, fromIdx, &press);
            if (atGiven[0]) press = src, from = atPoint[0];
            QTest::mousePress(press, Qt::LeftButton, {}, from);
            QTest::qWait(300);  // held longer than a click
            QTest::mouseMove(press, from + QPoint(4, 4));
            QPoint at = placeOf(dst, toIdx, &over);
            if (atGiven[1]) over = dst, at = atPoint[1];
            const QPoint target = press->mapFromGlobal(over->mapToGlobal(at));
            QTest::mouseMove(press, target);
            QTest::mouseRelease(press, Qt::LeftButton, {}, target);
            return Outcome::done();
        }
        if (cmd == QLatin1String("wait")) {
            need(1);
            if (!waitStarted_.isValid()) waitStarted_.start();
            if (waitStarted_.elapsed() < arg(1).toInt()) {
                started_.restart();  // a wait is no time-out
                return Outcome::retry(QString());
            }
            waitStarted_.invalidate();
            return Outcome::done();
        }
        if (cmd == QLatin1String("shot")) {
            need(1);
            QWidget *w = win_;
            if (t.size() >= 3) {
                QString err;
                w = control(arg(2), &err);
                if (!w) return Outcome::fail(err);
            }
            if (!w) return Outcome::fail(QStringLiteral("nothing to take a picture of"));
            QString out = arg(1);
            if (QFileInfo(out).isRelative()) out = QDir::currentPath() + u'/' + out;
            return w->grab().save(out) ? Outcome::done()
                                       : Outcome::fail(QStringLiteral("cannot save ") + out);
        }
        if (cmd == QLatin1String("box")) {
            need(3);
            // "*" for any title; "matches" for a text that holds a date or a size.
            const bool anyTitle = t[1] == QLatin1String("*") && !st.quoted[1];
            const bool byPattern = t[2] == QLatin1String("matches") && !st.quoted[2];
            if (byPattern) need(4);
            const QString want = arg(byPattern ? 3 : 2), button = arg(byPattern ? 4 : 3);
            QMessageBox *b = activeBox();
            if (!b)
                return Outcome::retry(QStringLiteral("no message box appeared (expected \"%1\")").arg(want));
            bool textOk = b->text() == want;
            if (byPattern) {
                const QRegularExpression re(QRegularExpression::anchoredPattern(want));
                if (!re.isValid()) {
                    b->close();
                    return Outcome::fail(QStringLiteral("bad pattern: ") + re.errorString());
                }
                textOk = re.match(b->text()).hasMatch();
            }
            if ((!anyTitle && b->windowTitle() != arg(1)) || !textOk) {
                const QString m = QStringLiteral("message box \"%1\" \"%2\" instead of %3 %4\"%5\"")
                                      .arg(b->windowTitle(), b->text(),
                                           anyTitle ? QStringLiteral("*") : u'"' + arg(1) + u'"',
                                           byPattern ? QStringLiteral("matching ") : QString(), want);
                b->close();
                return Outcome::fail(m);
            }
            static const QHash<QString, QMessageBox::StandardButton> buttons = {
                {"Yes", QMessageBox::Yes},
                {"No", QMessageBox::No},
                {"OK", QMessageBox::Ok},
                {"Ok", QMessageBox::Ok},
                {"Cancel", QMessageBox::Cancel}};
            const auto which = buttons.value(button, QMessageBox::NoButton);
            QAbstractButton *btn = b->button(which);
            if (!btn) {
                b->close();
                return Outcome::fail(QStringLiteral("the box has no button ") + button);
            }
            boxesSeen_ = 0;
            // The window beneath the box becomes active again once it is answered, as a
            // window manager makes it: the activation arrives with the next events.
            QPointer<QWidget> below =
                b->parentWidget() ? b->parentWidget()->window() : static_cast<QWidget *>(win_);
            btn->click();
            if (below && below->isVisible() && !b->isVisible()) below->activateWindow();
            return Outcome::done();
        }
        if (cmd == QLatin1String("filedialog")) {
            need(1);
            auto *d = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            if (!d) return Outcome::retry(QStringLiteral("no file dialog appeared"));
            if (t[1] == QLatin1String("cancel") && !st.quoted[1]) d->reject();
            else {
                // The user types the whole path into the name box (selectFile leaves a box
                // that has the focus alone) and presses the dialog's button.
                if (auto *name = d->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))) {
                    // Typing into the box takes the focus there, which drops a selection the
                    // file view holds (the dialog's suggested name); offscreen the focus does
                    // not move by itself, so the selection goes first.
                    for (const char *view : {"listView", "treeView"})
                        if (auto *v = d->findChild<QAbstractItemView *>(QLatin1String(view)))
                            if (v->selectionModel()) v->selectionModel()->clearSelection();
                    name->setFocus();
                    name->setText(arg(1));
                } else d->selectFile(arg(1));
                QMetaObject::invokeMethod(d, "accept", Qt::DirectConnection);
            }
            return Outcome::done();
        }
        if (cmd == QLatin1String("colordialog")) {
            need(1);
            auto *d = qobject_cast<QColorDialog *>(QApplication::activeModalWidget());
            if (!d) return Outcome::retry(QStringLiteral("no colour dialog appeared"));
            if (t[1] == QLatin1String("cancel")) {
                d->reject();
            } else {
                bool ok = false;
                const uint v = arg(1).toUInt(&ok, 0);
                if (!ok) return Outcome::fail(QStringLiteral("bad colour ") + arg(1));
                d->setCurrentColor(QColor(int(v & 0xFF), int((v >> 8) & 0xFF), int((v >> 16) & 0xFF)));
                d->accept();
            }
            return Outcome::done();
        }
        if (cmd == QLatin1String("expect")) return expect(st);
        return Outcome::fail(QStringLiteral("unknown statement ") + cmd);
    }

    Outcome expect(const Statement &st)
    {
        const QStringList &t = st.tokens;
        auto arg = [&](int i) { return i < t.size() ? x(t[i]) : QString(); };
        if (t.size() < 2) return Outcome::fail(QStringLiteral("expect what?"));
        const QString what = t[1];
        auto same = [&](const QString &seen, const QString &want, const QString &label) {
            if (seen == want) return Outcome::done();
            return Outcome::retry(QStringLiteral("%1: saw \"%2\", expected \"%3\"").arg(label, seen, want));
        };
        if (what == QLatin1String("var")) {
            QString name = arg(2), v;
            const int dot = name.indexOf(u'.');
            if (dot > 0) name = name.mid(dot + 1);
            if (name == QLatin1String("RunnerDialogResult")) return same(runnerDialogResult_, arg(3), name);
            bool found = scenarioVariable(name, &v);
            if (!found && win_) found = win_->windowVariableText(name, &v);
            if (!found) return Outcome::fail(QStringLiteral("no variable ") + arg(2));
            return same(v, arg(3), arg(2));
        }
        if (what == QLatin1String("title")) {
            if (!win_) return Outcome::fail(QStringLiteral("the program is not started"));
            return same(win_->windowTitle(), arg(2), QStringLiteral("title"));
        }
        if (what == QLatin1String("tab")) {
            if (!win_) return Outcome::fail(QStringLiteral("the program is not started"));
            return same(win_->selectedTabKey(), arg(2), QStringLiteral("tab"));
        }
        if (what == QLatin1String("clipboard")) {
            return same(QGuiApplication::clipboard()->text(), arg(2), QStringLiteral("clipboard"));
        }
        if (what == QLatin1String("filedialog")) {
            if (t.size() < 3) return Outcome::fail(QStringLiteral("expect filedialog needs a title"));
            auto *d = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            if (!d)
                return Outcome::retry(
                    QStringLiteral("no file dialog appeared (expected \"%1\")").arg(arg(2)));
            // An unquoted * checks nothing in its place.
            auto given = [&](int i) {
                return i < t.size() && !(t[i] == QLatin1String("*") && !st.quoted[i]);
            };
            QStringList wrong;
            auto check = [&](const QString &label, const QString &seen, const QString &want) {
                if (seen != want)
                    wrong << QStringLiteral("%1 \"%2\", expected \"%3\"").arg(label, seen, want);
            };
            if (given(2)) check(QStringLiteral("title"), d->windowTitle(), arg(2));
            if (given(3))
                check(QStringLiteral("folder"), QDir::cleanPath(d->directory().absolutePath()),
                      QDir::cleanPath(arg(3)));
            if (given(4)) check(QStringLiteral("filter"), d->selectedNameFilter(), arg(4));
            if (given(5)) check(QStringLiteral("default extension"), d->defaultSuffix(), arg(5));
            if (wrong.isEmpty()) return Outcome::done();
            return Outcome::retry(QStringLiteral("file dialog ") + wrong.join(QStringLiteral("; ")));
        }
        if (what == QLatin1String("colordialog")) {
            if (t.size() < 3) return Outcome::fail(QStringLiteral("expect colordialog needs a title"));
            auto *d = qobject_cast<QColorDialog *>(QApplication::activeModalWidget());
            if (!d)
                return Outcome::retry(
                    QStringLiteral("no colour dialog appeared (expected \"%1\")").arg(arg(2)));
            return same(d->windowTitle(), arg(2), QStringLiteral("colour dialog title"));
        }
        if (what == QLatin1String("nobox")) {
            if (QMessageBox *b = activeBox())
                return Outcome::fail(QStringLiteral("a message box shows: \"%1\"").arg(b->text()));
            return Outcome::done();
        }
        if (what == QLatin1String("file")) {
            const QString path = arg(2);
            QFile f(path);
            if (t.size() >= 4 && t[3] == QLatin1String("missing") && !st.quoted[3])
                return f.exists() ? Outcome::retry(path + QStringLiteral(" exists")) : Outcome::done();
            if (!f.open(QIODevice::ReadOnly)) return Outcome::retry(QStringLiteral("cannot read ") + path);
            const QByteArray bytes = f.readAll();
            if (t.size() >= 5 && t[3] == QLatin1String("matches") && !st.quoted[3]) {
                // PCRE reads the ECMAScript forms used here and, unlike a recursive matcher,
                // does not run out of stack on a long file.
                const QRegularExpression re(QRegularExpression::anchoredPattern(arg(4)));
                if (!re.isValid()) return Outcome::fail(QStringLiteral("bad pattern: ") + re.errorString());
                const QString text = QString::fromUtf8(bytes).toUtf8() == bytes ? QString::fromUtf8(bytes)
                                                                                : QString::fromLatin1(bytes);
                if (re.match(text).hasMatch()) return Outcome::done();
                return Outcome::retry(QStringLiteral("%1 holds \"%2\"").arg(path, QString::fromUtf8(bytes)));
            }
            const QByteArray want = arg(3).toUtf8();
            if (bytes == want) return Outcome::done();
            return Outcome::retry(QStringLiteral("%1 holds \"%2\", expected \"%3\"")
                                      .arg(path, QString::fromUtf8(bytes), arg(3)));
        }
        const QString target = arg(2);
        if (what == QLatin1String("open") || what == QLatin1String("closed")) {
            QWidget *w = window(target);
            const bool open = w && w->isVisible();
            if (open == (what == QLatin1String("open"))) return Outcome::done();
            return Outcome::retry(target
                                  + (open ? QStringLiteral(" is open") : QStringLiteral(" is closed")));
        }
        // A tool identifier first (file paths name the tools of the View menu), then a control.
        const bool isTool = tools() && (tools()->has(target) || toolbarPosition(target) > 0);
        if (what == QLatin1String("enabled") || what == QLatin1String("disabled")
            || what == QLatin1String("visible") || what == QLatin1String("hidden")
            || what == QLatin1String("checked") || what == QLatin1String("unchecked")) {
            bool v = false;
            if (isTool) {
                const int pos = toolbarPosition(target);
                if (what == QLatin1String("enabled") || what == QLatin1String("disabled"))
                    v = pos > 0 ? tools()->toolbar(pos)->isEnabled() : tools()->isEnabled(target);
                else if (what == QLatin1String("visible") || what == QLatin1String("hidden"))
                    v = pos > 0 ? tools()->toolbarVisible(pos) : tools()->isVisible(target);
                else v = tools()->isChecked(target);
            } else {
                QString err;
                QWidget *w = control(target, &err);
                if (!w) return Outcome::retry(err);
                if (what == QLatin1String("enabled") || what == QLatin1String("disabled")) v = w->isEnabled();
                else if (what == QLatin1String("visible") || what == QLatin1String("hidden"))
                    v = w->isWindow() ? w->isVisible() : !w->isHidden();
                else if (auto *b = qobject_cast<QAbstractButton *>(w)) v = b->isChecked();
                else return Outcome::fail(target + QStringLiteral(" cannot be checked"));
            }
            const bool want = what == QLatin1String("enabled") || what == QLatin1String("visible")
                || what == QLatin1String("checked");
            if (v == want) return Outcome::done();
            return Outcome::retry(QStringLiteral("%1 is not %2").arg(target, what));
        }
        if (what == QLatin1String("caption") || what == QLatin1String("tooltip")) {
            QString seen;
            if (isTool) {
                seen = what == QLatin1String("caption") ? tools()->caption(target) : tools()->toolTip(target);
            } else {
                QString err;
                QWidget *w = control(target, &err);
                if (!w) return Outcome::retry(err);
                int page = -1;
                QTabWidget *tabs = tabOfPage(w, &page);
                seen = what == QLatin1String("caption") ? captionOf(w)
                    : tabs                              ? tabs->tabToolTip(page)
                                                        : w->toolTip();
            }
            return same(seen, arg(3), target);
        }
        if (what == QLatin1String("value")) {
            QString err;
            QWidget *w = control(target, &err);
            if (!w) return Outcome::retry(err);
            auto *sl = qobject_cast<QAbstractSlider *>(w);
            if (!sl) return Outcome::fail(target + QStringLiteral(" is no slider"));
            return same(QString::number(sl->value()), arg(3), target);
        }
        QString err;
        QWidget *w = control(target, &err);
        if (!w) return Outcome::retry(err);
        if (what == QLatin1String("rows")) {
            QStringList want;
            for (int i = 3; i < t.size(); ++i) want << arg(i);
            const QStringList seen = rowsOf(w);
            if (seen == want) return Outcome::done();
            return Outcome::retry(
                QStringLiteral("%1 rows [%2], expected [%3]")
                    .arg(target, seen.join(QStringLiteral("|")), want.join(QStringLiteral("|"))));
        }
        if (what == QLatin1String("selected")) {
            const QString want = arg(3);
            QString seen;
            int row = -1;
            if (auto *sa = dynamic_cast<ScenarioAccess *>(w)) {
                seen = sa->scenarioSelected();
                if (want == QLatin1String("none") && seen.isEmpty()) return Outcome::done();
                if (seen == want) return Outcome::done();
                const QStringList rows = sa->scenarioRows();
                bool isNum = false;
                const int n = want.toInt(&isNum);
                if (isNum && n >= 0 && n < rows.size() && rows[n] == seen) return Outcome::done();
                return Outcome::retry(
                    QStringLiteral("%1 has \"%2\" selected, expected %3").arg(target, seen, want));
            }
            if (auto *lw = qobject_cast<QListWidget *>(w)) {
                row = lw->currentItem() && lw->currentItem()->isSelected() ? lw->currentRow() : -1;
                if (row < 0 && lw->currentRow() >= 0) row = lw->currentRow();
                seen = row >= 0 ? lw->item(row)->text() : QString();
            } else if (auto *cb = qobject_cast<QComboBox *>(w)) {
                row = cb->currentIndex();
                seen = cb->currentText();
            } else if (auto *v = qobject_cast<QAbstractItemView *>(w)) {
                const QModelIndex i = v->currentIndex();
                row = i.isValid() ? i.row() : -1;
                seen = i.data().toString();
            }
            if (want == QLatin1String("none")) {
                return row < 0
                    ? Outcome::done()
                    : Outcome::retry(QStringLiteral("%1 has row %2 selected").arg(target).arg(row));
            }
            bool isNum = false;
            const int n = want.toInt(&isNum);
            if ((isNum && n == row) || (!isNum && seen == want)) return Outcome::done();
            return Outcome::retry(QStringLiteral("%1 has row %2 (\"%3\") selected, expected %4")
                                      .arg(target)
                                      .arg(row)
                                      .arg(seen, want));
        }
        if (what == QLatin1String("text")) return same(textOf(w), arg(3), target);
        if (what == QLatin1String("geometry")) {
            // In twips, 15 to the pixel, relative to the parent widget; a pixel either way
            // is within what a twip measure rounds to.
            if (t.size() < 7)
                return Outcome::fail(QStringLiteral("expect geometry needs left, top, width and height"));
            const QRect g = w->geometry();
            const int seen[4] = {g.x() * 15, g.y() * 15, g.width() * 15, g.height() * 15};
            bool off = false;
            for (int k = 0; k < 4; ++k) {
                if (t[3 + k] == QLatin1String("*") && !st.quoted[3 + k]) continue;  // not checked
                bool ok = false;
                const int want = arg(3 + k).toInt(&ok);
                if (!ok) return Outcome::fail(QStringLiteral("not a number of twips: ") + arg(3 + k));
                if (std::abs(seen[k] - want) > 15) off = true;
            }
            if (!off) return Outcome::done();
            return Outcome::retry(QStringLiteral("%1 is at %2 %3 %4 %5 twips, expected %6 %7 %8 %9")
                                      .arg(target)
                                      .arg(seen[0])
                                      .arg(seen[1])
                                      .arg(seen[2])
                                      .arg(seen[3])
                                      .arg(arg(3), arg(4), arg(5), arg(6)));
        }
        if (what == QLatin1String("folder")) {
            if (auto *sa = dynamic_cast<ScenarioAccess *>(w))
                return same(sa->scenarioFolder(), arg(3), target);
            return Outcome::fail(target + QStringLiteral(" shows no folder"));
        }
        return Outcome::fail(QStringLiteral("unknown expectation ") + what);
    }

    static int toolbarPosition(const QString &name)
    {
        static const QStringList n = {"",       "MenuBar",  "ToolOpen",     "ToolPicture",
                                      "Player", "ToolText", "ToolInternet", "ToolInternetURL"};
        const int i = n.indexOf(name);
        return i >= 2 ? i : 0;
    }

    QString file_, fixtures_, home_, data_;
    std::vector<Statement> script_;
    size_t pc_ = 0;
    int running_ = 0;
    bool aborted_ = false, finished_ = false;
    int boxesSeen_ = 0;
    QString runnerDialogResult_;
    QElapsedTimer started_, waitStarted_;
    QEventLoop loop_;
    QPointer<Tarnwick1> win_;
};

}  // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("tarnwick"));
    std::setlocale(LC_NUMERIC, "C");
    QString fixtures = QStringLiteral(TW_DEFAULT_FIXTURES);
    QStringList files;
    const QStringList args = QCoreApplication::arguments();
    for (int i = 1; i < args.size(); ++i) {
        if (args[i] == QLatin1String("--fixtures") && i + 1 < args.size()) fixtures = args[++i];
        else files << args[i];
    }
    if (files.isEmpty()) {
        std::fprintf(stderr, "usage: tarnwick-scenario [--fixtures <dir>] <file.scn>...\n");
        return 2;
    }
    fixtures = QFileInfo(fixtures).absoluteFilePath();
    int passed = 0, failed = 0;
    for (const QString &f : files) {
        Runner r(QFileInfo(f).absoluteFilePath(), fixtures);
        if (r.run()) {
            ++passed;
        } else {
            ++failed;
            for (const QString &m : r.failures_) std::printf("FAIL %s\n", qPrintable(m));
        }
    }
    std::printf("%d passed, %d failed\n", passed, failed);
    std::fflush(stdout);
    return failed == 0 ? 0 : 1;
}
