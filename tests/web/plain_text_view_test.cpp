// The document tab's plain text: the reader (encodings, line ends, odd files) and the compact
// view (scrolling, selection by mouse and keys, copy, the context menu, printing, memory).
#include "web/plain_text_reader.h"
#include "../common/process_status.h"
#include "web/plain_text_view.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QFile>
#include <QMenu>
#include <QPrinter>
#include <QProcess>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTextDocument>
#include <QTimer>
#include <sys/resource.h>

using namespace tw;

namespace {

void writeAll(const QString &path, const QByteArray &bytes)
{
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write(bytes);
}

std::optional<PlainText> readFile(const QString &path)
{
    PlainTextJob job(path);
    job.run();
    return job.takeText();
}

int pdfPages(const QString &pdf)
{
    QProcess p;
    p.start(QStringLiteral("pdfinfo"), {pdf});
    p.waitForFinished(30000);
    const auto m = QRegularExpression(QStringLiteral("Pages:\\s+(\\d+)"))
                       .match(QString::fromUtf8(p.readAllStandardOutput()));
    return m.hasMatch() ? m.captured(1).toInt() : -1;
}

QString pdfText(const QString &pdf)
{
    QProcess p;
    p.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
    p.waitForFinished(30000);
    return QString::fromUtf8(p.readAllStandardOutput());
}

}  // namespace

class PlainTextViewTest : public QObject {
    Q_OBJECT
    QTemporaryDir dir;
    QString file(const char *name) const { return dir.path() + u'/' + QLatin1String(name); }

    // Select all and copy: the clipboard's text.
    static QString copyAll(PlainTextView &v)
    {
        QApplication::clipboard()->setText(QStringLiteral("before"));
        v.setFocus();
        QTest::keyClick(&v, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&v, Qt::Key_C, Qt::ControlModifier);
        return QApplication::clipboard()->text();
    }

private slots:
    void lineIndexFindsEveryLine()
    {
        QString s;
        for (int i = 0; i < 1000; ++i)
            s += QString::number(i) + (i % 3 == 0 ? "\r\n" : i % 3 == 1 ? "\n" : "\r");
        const PlainText t = PlainText::fromString(s);
        QCOMPARE(t.lineCount(), 1001);
        for (int i = 0; i < 1000; ++i) {
            QCOMPARE(t.line(i).toString(), QString::number(i));
            QCOMPARE(t.lineOf(t.lineStart(i)), qsizetype(i));
            QCOMPARE(t.lineOf(t.lineEnd(i)), qsizetype(i));
        }
        QCOMPARE(t.line(1000).toString(), QString());
        QCOMPARE(t.lineOf(t.size()), qsizetype(1000));
    }

    void crLfSplitBetweenPiecesIsOneLineEnd()
    {
        PlainText t;
        t.append(u"one\r");
        t.append(u"\ntwo\r");
        t.append(u"three\r");
        QCOMPARE(t.text(), QStringLiteral("one\ntwo\nthree\n"));
        QCOMPARE(t.lineCount(), 4);
    }

    void copyGivesTheWholeTextBackExactly_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("expected");
        QTest::newRow("utf-8 lf") << QByteArray("caf\xc3\xa9 \xe2\x82\xac\nzwei \xf0\x9f\x98\x80\nend")
                                  << QStringLiteral("café €\nzwei 😀\nend");
        QTest::newRow("utf-8 with mark") << QByteArray("\xef\xbb\xbfmarked\n") << QStringLiteral("marked\n");
        QTest::newRow("windows-1252 cr lf")
            << QByteArray("caf\xe9 \x80\r\n\x93quoted\x94\r\n") << QStringLiteral("café €\n“quoted”\n");
        QTest::newRow("cr") << QByteArray("one\rtwo\r\rfour") << QStringLiteral("one\ntwo\n\nfour");
        QTest::newRow("mixed") << QByteArray("a\r\nb\nc\rd") << QStringLiteral("a\nb\nc\nd");
        QTest::newRow("cut utf-8 is 8-bit") << QByteArray("caf\xc3") << QStringLiteral("cafÃ");
        QTest::newRow("tabs") << QByteArray("a\tb\t\tc\n") << QStringLiteral("a\tb\t\tc\n");
    }
    void copyGivesTheWholeTextBackExactly()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, expected);
        writeAll(file("t.txt"), bytes);
        auto text = readFile(file("t.txt"));
        QVERIFY(text);
        PlainTextView v;
        v.resize(300, 200);
        v.show();
        v.setContent(std::move(*text));
        QCOMPARE(v.toPlainText(), expected);
        QCOMPARE(copyAll(v), expected);
    }

    void pieceBoundariesKeepTheText()
    {
        // More than one 4 MB piece, a CR LF and a UTF-8 sequence across each boundary.
        QByteArray bytes;
        const QByteArray unit = "\xc3\xa9t\xc3\xa9 \xe2\x82\xac line\r\n";
        while (bytes.size() < (9 << 20)) bytes += unit;
        writeAll(file("pieces.txt"), bytes);
        auto text = readFile(file("pieces.txt"));
        QVERIFY(text);
        QString expected = QString::fromUtf8(bytes);
        expected.replace(QLatin1String("\r\n"), QLatin1String("\n"));
        QCOMPARE(text->size(), expected.size());
        QVERIFY(text->text() == expected);
        QCOMPARE(text->lineCount(), qsizetype(expected.count(u'\n') + 1));
    }

    void zeroByteFileIsAnEmptyText()
    {
        writeAll(file("empty.txt"), QByteArray());
        auto text = readFile(file("empty.txt"));
        QVERIFY(text);
        PlainTextView v;
        v.resize(300, 200);
        v.show();
        v.setContent(std::move(*text));
        QVERIFY(QTest::qWaitForWindowExposed(&v));
        v.viewport()->repaint();
        QCOMPARE(v.content().lineCount(), 1);
        QCOMPARE(v.lastVisibleRow(), 0);
        // Nothing to copy: the clipboard keeps what it had.
        QCOMPARE(copyAll(v), QStringLiteral("before"));
        QTest::keyClick(&v, Qt::Key_End, Qt::ControlModifier);
        QTest::keyClick(&v, Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(v.cursorPosition(), 0);
    }

    void binaryTxtShowsAsText()
    {
        QByteArray bytes;
        for (int i = 0; i < 4096; ++i) bytes += char(i * 37 % 256);
        writeAll(file("bin.txt"), bytes);
        auto text = readFile(file("bin.txt"));
        QVERIFY(text);
        // Not UTF-8: one character a byte, NUL as the replacement character, CR LF / CR as LF.
        QVERIFY(!text->text().contains(QChar(0)));
        QVERIFY(text->text().contains(QChar(QChar::ReplacementCharacter)));
        PlainTextView v;
        v.resize(300, 200);
        v.show();
        v.setContent(std::move(*text));
        v.viewport()->repaint();
        QTest::keyClick(&v, Qt::Key_End, Qt::ControlModifier);
        v.viewport()->repaint();
        QCOMPARE(copyAll(v), v.toPlainText());
    }

    void notARegularFileIsNotRead()
    {
        // A folder (or a pipe, a device) named .TXT: no read that could wait for ever.
        QDir(dir.path()).mkdir(QStringLiteral("folder.txt"));
        QVERIFY(!readFile(file("folder.txt")));
        QVERIFY(!readFile(file("missing.txt")));
    }

    void aFileLargerThanTheMemoryFailsTheRead()
    {
#if defined(__SANITIZE_ADDRESS__)
        QSKIP("the address sanitizer reserves its own address space");
#endif
        // 200 MB need 400 MB of text; the address space is cut to 150 MB above what is used.
        {
            QFile f(file("toolarge.txt"));
            QVERIFY(f.open(QIODevice::WriteOnly));
            QVERIFY(f.resize(200ll << 20));
        }
        rlimit old{};
        QVERIFY(getrlimit(RLIMIT_AS, &old) == 0);
        rlimit cut = old;
        cut.rlim_cur = rlim_t(twtest::statusKiB("VmSize:")) * 1024 + (150 << 20);
        QVERIFY(setrlimit(RLIMIT_AS, &cut) == 0);
        auto text = readFile(file("toolarge.txt"));
        QVERIFY(setrlimit(RLIMIT_AS, &old) == 0);
        QFile::remove(file("toolarge.txt"));
        QVERIFY(!text);
    }

    void scrollToEndShowsTheLastLine()
    {
        QString s;
        for (int i = 0; i < 20000; ++i) s += QStringLiteral("line %1\n").arg(i);
        s += QStringLiteral("the last line");
        PlainTextView v;
        v.resize(400, 300);
        v.show();
        QVERIFY(QTest::qWaitForWindowExposed(&v));
        v.setPlainText(s);
        QCOMPARE(v.firstVisibleRow(), 0);
        QTest::keyClick(&v, Qt::Key_End, Qt::ControlModifier);
        QCOMPARE(v.lastVisibleRow(), 20000);
        QCOMPARE(v.cursorPosition(), s.size());
        // The scroll bar at its end shows it too; the point under the last row is in it.
        v.verticalScrollBar()->setValue(0);
        v.verticalScrollBar()->setValue(v.verticalScrollBar()->maximum());
        QCOMPARE(v.lastVisibleRow(), 20000);
        const int lh = v.fontMetrics().lineSpacing();
        const qsizetype pos =
            v.positionAt(QPoint(10, 4 + (v.lastVisibleRow() - v.firstVisibleRow()) * lh + 2));
        QCOMPARE(v.content().lineOf(pos), qsizetype(20000));
        // The wheel scrolls down a few lines.
        v.verticalScrollBar()->setValue(0);
        QWheelEvent wheel(QPointF(50, 50), v.mapToGlobal(QPointF(50, 50)), QPoint(), QPoint(0, -120),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(v.viewport(), &wheel);
        QVERIFY(v.firstVisibleRow() > 0);
        // Page Down moves a page.
        v.verticalScrollBar()->setValue(0);
        QTest::keyClick(&v, Qt::Key_Home, Qt::ControlModifier);
        QTest::keyClick(&v, Qt::Key_PageDown);
        QTest::keyClick(&v, Qt::Key_PageDown);
        QVERIFY(v.firstVisibleRow() > 0);
    }

    void keyboardAndMouseSelect()
    {
        PlainTextView v;
        v.resize(400, 300);
        v.show();
        QVERIFY(QTest::qWaitForWindowExposed(&v));
        v.setPlainText(u"first line\nsecond line\nthird");
        v.setFocus();
        QTest::keyClick(&v, Qt::Key_Home, Qt::ControlModifier);
        QTest::keyClick(&v, Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(v.selectedText(), QStringLiteral("first line\n"));
        QTest::keyClick(&v, Qt::Key_End, Qt::ShiftModifier);
        QCOMPARE(v.selectedText(), QStringLiteral("first line\nsecond line"));
        QTest::keyClick(&v, Qt::Key_Left, Qt::ShiftModifier);
        QCOMPARE(v.selectedText(), QStringLiteral("first line\nsecond lin"));
        QTest::keyClick(&v, Qt::Key_Right);
        QCOMPARE(v.selectedText(), QString());
        // Typing changes nothing.
        QTest::keyClick(&v, Qt::Key_X);
        QTest::keyClick(&v, Qt::Key_Delete);
        QCOMPARE(v.toPlainText(), QStringLiteral("first line\nsecond line\nthird"));
        // A drag with the mouse from the start of the first line into the second line.
        const int lh = v.fontMetrics().lineSpacing();
        QTest::mousePress(v.viewport(), Qt::LeftButton, {}, QPoint(1, 4 + lh / 2));
        QMouseEvent move(
            QEvent::MouseMove,
            QPointF(v.fontMetrics().horizontalAdvance(QStringLiteral("seco")) + 4, 4 + lh + lh / 2),
            v.viewport()->mapToGlobal(QPointF(0, 0)), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(v.viewport(), &move);
        QTest::mouseRelease(
            v.viewport(), Qt::LeftButton, {},
            QPoint(v.fontMetrics().horizontalAdvance(QStringLiteral("seco")) + 4, 4 + lh + lh / 2));
        QCOMPARE(v.selectedText(), QStringLiteral("first line\nseco"));
        v.copy();
        QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("first line\nseco"));
        // A double click takes the word.
        QTest::mouseDClick(
            v.viewport(), Qt::LeftButton, {},
            QPoint(v.fontMetrics().horizontalAdvance(QStringLiteral("thi")) + 4, 4 + 2 * lh + lh / 2));
        QCOMPARE(v.selectedText(), QStringLiteral("third"));
    }

    void contextMenuHasCopyAndSelectAll()
    {
        PlainTextView v;
        v.resize(300, 200);
        v.show();
        QVERIFY(QTest::qWaitForWindowExposed(&v));
        v.setPlainText(u"menu text");
        QStringList seen;
        bool copyEnabled = true;
        QTimer::singleShot(0, &v, [&] {
            auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            if (!menu) return;
            for (QAction *a : menu->actions()) {
                if (a->isSeparator()) continue;
                seen << a->objectName();
                if (a->objectName() == QLatin1String("edit-copy")) copyEnabled = a->isEnabled();
            }
            for (QAction *a : menu->actions())
                if (a->objectName() == QLatin1String("select-all")) a->trigger();
            menu->close();
        });
        QContextMenuEvent e(QContextMenuEvent::Mouse, QPoint(10, 10),
                            v.viewport()->mapToGlobal(QPoint(10, 10)));
        QApplication::sendEvent(v.viewport(), &e);
        QCOMPARE(seen, (QStringList{QStringLiteral("edit-copy"), QStringLiteral("select-all")}));
        QVERIFY(!copyEnabled);  // nothing was selected
        QCOMPARE(v.selectedText(), QStringLiteral("menu text"));
    }

    void longLinesAreCutIntoRows()
    {
        constexpr qsizetype R = PlainText::RowLimit;
        PlainText t;
        // A short line, a line of 2.5 rows built across pieces, one of exactly one row, one of
        // exactly two, and a last line of 1.5 rows without its end.
        t.append(u"short\n");
        const QString a(R * 2 + R / 2, u'a');
        t.append(QStringView(a).left(R));
        t.append(QStringView(a).mid(R));
        t.append(u"\n");
        t.append(QString(R, u'b') + u'\n' + QString(2 * R, u'c') + u'\n' + QString(R + R / 2, u'd'));
        QCOMPARE(t.lineCount(), 5);
        QCOMPARE(t.rowCount(), 1 + 3 + 1 + 2 + 2);
        QCOMPARE(t.row(0).toString(), QStringLiteral("short"));
        QCOMPARE(t.row(1).size(), R);
        QCOMPARE(t.row(3).size(), R / 2);
        QVERIFY(!t.rowEndsLine(1) && t.rowEndsLine(3));
        QCOMPARE(t.row(4).toString(), QString(R, u'b'));
        QCOMPARE(t.row(5).toString(), QString(R, u'c'));
        QCOMPARE(t.row(6).toString(), QString(R, u'c'));
        QCOMPARE(t.row(7).toString(), QString(R, u'd'));
        QCOMPARE(t.row(8).toString(), QString(R / 2, u'd'));
        // Every position maps back to the row that holds it; a row's end belongs to it only at
        // the end of its line.
        for (qsizetype r = 0; r < t.rowCount(); ++r) {
            QCOMPARE(t.rowOf(t.rowStart(r)), r);
            if (t.rowEndsLine(r)) QCOMPARE(t.rowOf(t.rowEnd(r)), r);
        }
        QCOMPARE(t.rowOf(t.size()), t.rowCount() - 1);
        // Lines and rows of a text of short and long lines mixed agree with a plain count.
        QString mixed;
        QList<qsizetype> starts;
        for (int i = 0; i < 100; ++i) {
            starts << mixed.size();
            mixed += i % 7 == 3 ? QString(R * (1 + i % 3) + i, QChar(u'A' + i % 26)) : QString::number(i);
            mixed += u'\n';
        }
        starts << mixed.size();
        const PlainText m = PlainText::fromString(mixed);
        QCOMPARE(m.lineCount(), 101);
        qsizetype rowCount = 0;
        for (int i = 0; i <= 100; ++i) {
            QCOMPARE(m.lineStart(i), starts[i]);
            QCOMPARE(m.lineOf(starts[i]), qsizetype(i));
            QCOMPARE(m.rowOf(starts[i]), rowCount);
            const qsizetype len = (i < 100 ? starts[i + 1] - 1 : mixed.size()) - starts[i];
            QCOMPARE(m.lineEnd(i), starts[i] + len);
            QCOMPARE(m.lineOf(starts[i] + len), qsizetype(i));
            rowCount += std::max<qsizetype>(1, (len + R - 1) / R);
        }
        QCOMPARE(m.rowCount(), rowCount);
        // A file of only short lines has a row for each line.
        const PlainText s = PlainText::fromString(u"a\nb\n");
        QCOMPARE(s.rowCount(), s.lineCount());
    }

    void aLineOfOneMegabyte()
    {
        QByteArray line;
        while (line.size() < (1 << 20)) line += "word ";
        writeAll(file("long.txt"), "before\n" + line + "\nafter\n");
        auto text = readFile(file("long.txt"));
        QVERIFY(text);
        PlainTextView v;
        v.resize(400, 300);
        v.show();
        QVERIFY(QTest::qWaitForWindowExposed(&v));
        QElapsedTimer t;
        t.start();
        v.setContent(std::move(*text));
        v.viewport()->repaint();
        QVERIFY2(t.elapsed() < 5000, qPrintable(QString::number(t.elapsed())));
        QCoreApplication::processEvents();
        // The line shows in rows of RowLimit characters, scrolled sideways.
        const qsizetype rows = (line.size() + PlainText::RowLimit - 1) / PlainText::RowLimit;
        QCOMPARE(v.content().rowCount(), 1 + rows + 2);
        QVERIFY(v.horizontalScrollBar()->maximum() > 1000);
        QTest::keyClick(&v, Qt::Key_Down);
        QTest::keyClick(&v, Qt::Key_End);
        v.viewport()->repaint();
        QCOMPARE(v.cursorPosition(), qsizetype(7 + PlainText::RowLimit));
        QVERIFY(v.horizontalScrollBar()->value() > 1000);
        // Ctrl+End: the last row is shown.
        QTest::keyClick(&v, Qt::Key_End, Qt::ControlModifier);
        QCOMPARE(v.lastVisibleRow(), v.content().rowCount() - 1);
        QCOMPARE(copyAll(v), QString::fromLatin1("before\n" + line + "\nafter\n"));
    }

    void aFileOfOne200MegabyteLineStaysUsable()
    {
        // 200 MB of NUL bytes (a sparse file): one line, every character the replacement
        // character. It loads, paints, scrolls to its end and selects, in bounded time.
        const qint64 size = 200ll << 20;
        {
            QFile f(file("huge.txt"));
            QVERIFY(f.open(QIODevice::WriteOnly));
            QVERIFY(f.resize(size));
        }
        QElapsedTimer t;
        t.start();
        auto text = readFile(file("huge.txt"));
        QFile::remove(file("huge.txt"));
        QVERIFY(text);
        QCOMPARE(text->size(), size);
        QCOMPARE(text->lineCount(), 1);
        PlainTextView v;
        v.resize(400, 300);
        v.show();
        QVERIFY(QTest::qWaitForWindowExposed(&v));
        v.setContent(std::move(*text));
        v.viewport()->repaint();
        QTest::keyClick(&v, Qt::Key_End, Qt::ControlModifier);
        v.viewport()->repaint();
        QCOMPARE(v.lastVisibleRow(), v.content().rowCount() - 1);
        QTest::keyClick(&v, Qt::Key_Up, Qt::ShiftModifier);
        QCOMPARE(v.selectedText().size(), PlainText::RowLimit);
        QVERIFY2(t.elapsed() < 8000, qPrintable(QString::number(t.elapsed())));
    }

    void printsAllTextOnPagesLikeATextDocument()
    {
        QString s;
        for (int i = 0; i < 300; ++i) s += QStringLiteral("Printed line %1 of the text\n").arg(i);
        s += QString(400, u'w') + u'\n';  // a line longer than the page wraps
        PlainTextView v;
        v.setFont(QFont(QStringLiteral("MS Sans Serif"), 8));
        v.setPlainText(s);
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(file("view.pdf"));
        v.print(&printer);
        // The same text through a text document, as a text box prints it.
        QTextDocument doc;
        doc.setDefaultFont(v.font());
        doc.setPlainText(s);
        QPrinter ref(QPrinter::HighResolution);
        ref.setOutputFormat(QPrinter::PdfFormat);
        ref.setOutputFileName(file("doc.pdf"));
        doc.print(&ref);
        const int pages = pdfPages(file("view.pdf"));
        QVERIFY(pages >= 2);
        QCOMPARE(pages, pdfPages(file("doc.pdf")));
        const QString text = pdfText(file("view.pdf"));
        QVERIFY(text.contains(QLatin1String("Printed line 0 of the text")));
        QVERIFY(text.contains(QLatin1String("Printed line 299 of the text")));
        QVERIFY(text.count(u'w') >= 400);
        // Each page carries its number, as a text document's print does.
        for (int page = 1; page <= pages; ++page) {
            QProcess p;
            p.start(QStringLiteral("pdftotext"),
                    {QStringLiteral("-f"), QString::number(page), QStringLiteral("-l"), QString::number(page),
                     file("view.pdf"), QStringLiteral("-")});
            p.waitForFinished(30000);
            const QStringList lines = QString::fromUtf8(p.readAllStandardOutput()).split(u'\n');
            QVERIFY2(std::any_of(lines.begin(), lines.end(),
                                 [page](const QString &l) { return l.trimmed() == QString::number(page); }),
                     qPrintable(QString::number(page)));
        }
    }

    void memoryStaysUnderThreeTimesTheFile()
    {
#if defined(__SANITIZE_ADDRESS__)
        QSKIP("the address sanitizer's shadow memory makes resident sizes meaningless");
#endif
        // 20 MB of short lines, CR LF: the reader and the view together.
        const qint64 size = 20 << 20;
        {
            QFile f(file("big.txt"));
            QVERIFY(f.open(QIODevice::WriteOnly));
            QByteArray block;
            for (int i = 0; block.size() < (1 << 20); ++i)
                block += "Line " + QByteArray::number(i) + " of the long text file, a few words.\r\n";
            for (qint64 n = 0; n < size; n += block.size()) f.write(block);
        }
        const qint64 fileSize = QFileInfo(file("big.txt")).size();
        PlainTextView v;
        v.resize(800, 600);
        v.show();
        QVERIFY(QTest::qWaitForWindowExposed(&v));
        v.viewport()->repaint();
        const long base = twtest::statusKiB("VmRSS:");
        {
            QFile clear(QStringLiteral("/proc/self/clear_refs"));
            if (clear.open(QIODevice::WriteOnly)) clear.write("5");
        }
        auto text = readFile(file("big.txt"));
        QVERIFY(text);
        v.setContent(std::move(*text));
        v.viewport()->repaint();
        const long peak = twtest::statusKiB("VmHWM:");
        QVERIFY(base > 0 && peak > 0);
        const double ratio = (peak - base) * 1024.0 / double(fileSize);
        qInfo("peak growth %.2f times the file", ratio);
        QVERIFY2(ratio < 3.0, qPrintable(QString::number(ratio)));
        QFile::remove(file("big.txt"));
    }
};

QTEST_MAIN(PlainTextViewTest)
#include "plain_text_view_test.moc"
