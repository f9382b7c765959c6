// The thumbnail grid inside the main window, where a press of Stop has to arrive at a chosen
// moment of a load: while the first file is made, with the grid up, with the selection list
// open; a file deleted during a load; a big folder that keeps the window responsive.
#include "common/main_window_fixture.h"
#include "common/process_status.h"
#include "app/tarnwick1.h"
#include "browse/browse_module.h"
#include "browse/shell_tree.h"
#include "browse/thumbnail_grid.h"
#include "browse/thumbnails.h"
#include "core/catalogue.h"
#include "core/colors.h"
#include "core/globals.h"
#include "core/tool_ids.h"
#include "core/tool_manager.h"
#include "pictures/decoder_pool.h"
#include "bad_files.h"

#include <QApplication>
#include <QBuffer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QMessageBox>
#include <QScrollBar>
#include <QSplitter>
#include <QTest>
#include <QThreadPool>
#include <QTimer>
#include <clocale>
#include <unistd.h>

using namespace tw;

class ThumbnailsWindowTest : public QObject {
    Q_OBJECT
    Tarnwick1 *w = nullptr;
    QTimer boxWatch;
    QStringList boxes;  // the text of every message box that came up
    BrowseModule *browse() const { return static_cast<BrowseModule *>(w->page(1)); }
    browse::Thumbnails *thumbs() const { return browse()->thumbnails(); }

    QString folderOf(const QString &name, int pictures)
    {
        const QString dir = QDir::homePath() + u'/' + name;
        QDir().mkpath(dir);
        QImage img(48, 32, QImage::Format_RGB32);
        img.fill(Qt::darkCyan);
        QByteArray png;
        {
            QFile tmp(dir + QStringLiteral("/.seed.png"));
            img.save(tmp.fileName(), "PNG");
            tmp.open(QIODevice::ReadOnly);
            png = tmp.readAll();
            tmp.remove();
        }
        for (int i = 1; i <= pictures; ++i) {
            QFile f(dir + QStringLiteral("/p%1.png").arg(i));
            f.open(QIODevice::WriteOnly);
            f.write(png);
        }
        return dir;
    }
    void showFolder(const QString &dir)
    {
        QVERIFY(browse()->PTxShTree1->selectPath(dir));
        QTRY_COMPARE(browse()->listFolder(), dir);
        QTRY_VERIFY(!browse()->listItemPaths().isEmpty());
        // The first picture of the folder may have been shown by itself: back to the grid's tab.
        w->selectTab(1);
        QTRY_COMPARE(w->selectedTab(), 1);
    }
    void press(QLatin1String id) { w->OnToolClick(id); }

private slots:
    void init()
    {
        w = twtest::startMainWindow();
        boxes.clear();
        // Any box is noted and closed, so that a box where none belongs fails the test
        // instead of hanging it.
        boxWatch.setInterval(20);
        connect(&boxWatch, &QTimer::timeout, this, [this] {
            if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
                boxes << box->text();
                box->accept();
            }
        });
        boxWatch.start();
    }
    void cleanup()
    {
        boxWatch.stop();
        boxWatch.disconnect();
        G.Select1Visible = false;
        delete w;
        w = nullptr;
    }

    void stopWhileTheFirstFileIsMadeLeavesAnEmptyGridAndNoMessage()
    {
        showFolder(folderOf(QStringLiteral("first"), 5));
        int events = 0;
        thumbs()->beforeEvent = [&](const browse::ThumbEvent &) {
            // The press reaches the program while the first picture is still being made.
            if (events++ == 0) press(tool::ThumbNails);
        };
        press(tool::ThumbNails);
        QCOMPARE(thumbs()->grid()->count(), 0);
        QVERIFY2(boxes.isEmpty(), qPrintable(boxes.join(u'|')));
        QVERIFY(thumbs()->ThumbLoadStopped);
        QVERIFY(thumbs()->ThumbnailMode);
        QVERIFY(!thumbs()->ThumbnailsShown);
        QVERIFY(thumbs()->ThumbFolder.isEmpty());
        QVERIFY(!thumbs()->grid()->isVisible());
        QVERIFY(browse()->Splitter1->isVisible());
        QCOMPARE(events, 1);
        // The search walk sees the stopped load and ends on its first node, with no change.
        QVERIFY(browse()->ThumbLoadStopped());
        const QString folder = browse()->listFolder();
        browse()->FindNext();
        QCOMPARE(browse()->listFolder(), folder);
        QVERIFY(boxes.isEmpty());
    }

    void stopWithTheGridUpKeepsTheCellsButNotTheFolder()
    {
        const QString dir = folderOf(QStringLiteral("six"), 6);
        showFolder(dir);
        int events = 0;
        thumbs()->afterEvent = [&](const browse::ThumbEvent &) {
            if (++events == 2) {
                QVERIFY(w->ToolBarComp1->isVisible(tool::Stop));
                QCOMPARE(w->ToolBarComp1->toolTip(tool::Stop), QStringLiteral("ThumbNails"));
                QCOMPARE(QFileInfo(thumbs()->stopPicture()).fileName(), QStringLiteral("Stop.bmp"));
                QVERIFY(!w->ToolBarComp1->isEnabled(tool::Find));
                press(tool::Stop);
            }
        };
        press(tool::ThumbNails);
        thumbs()->afterEvent = nullptr;
        QCOMPARE(thumbs()->grid()->count(), 2);
        QVERIFY(thumbs()->grid()->isVisible());
        QVERIFY(thumbs()->ThumbLoadStopped);
        QVERIFY(thumbs()->ThumbnailMode);
        QVERIFY(thumbs()->ThumbFolder.isEmpty());
        QVERIFY(boxes.isEmpty());
        QVERIFY(w->ToolBarComp1->isEnabled(tool::Find));
        // The button now leaves the mode; entering again loads the folder anew.
        QCOMPARE(w->ToolBarComp1->toolTip(tool::Stop), QStringLiteral("Explore Files"));
        press(tool::Stop);
        QVERIFY(!thumbs()->ThumbnailMode);
        QVERIFY(browse()->Splitter1->isVisible());
        const int loads = thumbs()->loadsBegun();
        press(tool::ThumbNails);
        QCOMPARE(thumbs()->loadsBegun(), loads + 1);
        QCOMPARE(thumbs()->grid()->count(), 6);
        QCOMPARE(thumbs()->ThumbFolder, dir);
        QVERIFY(boxes.isEmpty());
    }

    void theGridReplacesThePanesAtItsFirstCell()
    {
        // A damaged picture first: it gets no cell, and the panes stay until a picture comes.
        const QString dir = folderOf(QStringLiteral("firstcell"), 4);
        {
            QFile f(dir + QStringLiteral("/p0.png"));
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write("not a PNG");
        }
        showFolder(dir);
        struct Seen {
            int cells;
            bool grid, panes, shown;
        };
        QList<Seen> seen;
        thumbs()->afterEvent = [&](const browse::ThumbEvent &) {
            seen.append({thumbs()->grid()->count(), thumbs()->grid()->isVisible(),
                         browse()->Splitter1->isVisible(), thumbs()->ThumbnailsShown});
        };
        press(tool::ThumbNails);
        thumbs()->afterEvent = nullptr;
        QCOMPARE(seen.size(), 5);
        // The damaged file: no cell, the panes still up.
        QCOMPARE(seen[0].cells, 0);
        QVERIFY(!seen[0].grid);
        QVERIFY(seen[0].panes);
        // The first picture: the grid takes the panes' place while the load goes on.
        QCOMPARE(seen[1].cells, 1);
        QVERIFY(seen[1].grid);
        QVERIFY(!seen[1].panes);
        QVERIFY(!seen[1].shown);
        QCOMPARE(seen[4].cells, 4);
        QVERIFY(!seen[4].shown);
        // Only the load's end gives the button its toggle form.
        QVERIFY(thumbs()->ThumbnailsShown);
        QCOMPARE(thumbs()->ThumbCount, 4);
        QVERIFY(boxes.isEmpty());
    }

    void stopDuringAHangingLegacyDecodeActsAtOnce()
    {
        // The first file keeps its decoder busy for ever (Ghostscript looping); the user
        // presses Stop meanwhile, with the window taking input all the while.
        const QString dir = folderOf(QStringLiteral("hanging"), 3);
        const QString eps = twtest::endlessEps(dir, QStringLiteral("z.eps"));
        QVERIFY(!eps.isEmpty());
        showFolder(dir);
        decoding::setTimeoutMs(8000);
        QElapsedTimer clock;
        qint64 pressedAt = -1;
        QTimer::singleShot(400, this, [&] {
            pressedAt = clock.elapsed();
            press(tool::Stop);
        });
        clock.start();
        press(tool::ThumbNails);
        const qint64 ended = clock.elapsed();
        decoding::setTimeoutMs(5000);
        QVERIFY(pressedAt >= 0);
        QVERIFY2(ended - pressedAt < 300, qPrintable(QString::number(ended - pressedAt)));
        // JPG, PNG, then EPS among the rows: the PNG cells came first and stay.
        QCOMPARE(thumbs()->grid()->count(), 3);
        QVERIFY(thumbs()->ThumbLoadStopped);
        QVERIFY(thumbs()->ThumbFolder.isEmpty());
        QVERIFY(boxes.isEmpty());
        // The hanging decode is given up, not recorded as a file that cannot be made.
        QVERIFY(!thumbs()->producer().cache().failedBefore(eps));
        QTRY_VERIFY(decoding::helpersBusy() == 0);
    }

    void withTheSelectionListUpAClickOnlySelects()
    {
        const QString dir = folderOf(QStringLiteral("sel"), 3);
        showFolder(dir);
        press(tool::ThumbNails);
        QCOMPARE(thumbs()->grid()->count(), 3);
        G.Select1Visible = true;
        G.SelectedFile.clear();
        thumbs()->cellClicked(1);
        QCOMPARE(G.SelectedFile, dir + QStringLiteral("/p2.png"));
        QCOMPARE(thumbs()->grid()->selectionValue, 1);
        QCOMPARE(w->selectedTab(), 1);
        thumbs()->cellDoubleClicked(2);
        QCOMPARE(G.SelectedFile, dir + QStringLiteral("/p3.png"));
        QCOMPARE(w->selectedTab(), 1);
        G.Select1Visible = false;
        thumbs()->cellClicked(0);
        QCOMPARE(w->selectedTab(), 2);
        QCOMPARE(G.CurrentPage, 1);
    }

    void aFileDeletedDuringTheLoadIsSkipped()
    {
        const QString dir = folderOf(QStringLiteral("gone"), 40);
        showFolder(dir);
        int events = 0;
        thumbs()->afterEvent = [&](const browse::ThumbEvent &) {
            if (++events == 1)
                for (int i = 31; i <= 40; ++i) QFile::remove(dir + QStringLiteral("/p%1.png").arg(i));
        };
        press(tool::ThumbNails);
        thumbs()->afterEvent = nullptr;
        QCOMPARE(thumbs()->grid()->count(), 30);
        QCOMPARE(thumbs()->ThumbCount, 30);
        QCOMPARE(events, 40);
        QVERIFY(boxes.isEmpty());
    }

    void aBigFolderKeepsTheWindowResponsiveAndTheCellsSmall()
    {
        // A folder of 10,000 pictures of 320 x 240, each larger than its cell.
        const int pictures = qEnvironmentVariableIntValue("TW_THUMB_FOLDER_SIZE") > 0
            ? qEnvironmentVariableIntValue("TW_THUMB_FOLDER_SIZE")
            : 10000;
        const int stopAt = qMin(1000, pictures / 2);
        const QString dir = QDir::homePath() + QStringLiteral("/big");
        QDir().mkpath(dir);
        {
            QImage img(320, 240, QImage::Format_RGB32);
            for (int y = 0; y < img.height(); ++y)
                for (int x = 0; x < img.width(); ++x) img.setPixel(x, y, qRgb(x % 256, y, (x * y) % 256));
            QByteArray jpeg;
            QBuffer buf(&jpeg);
            buf.open(QIODevice::WriteOnly);
            QVERIFY(img.save(&buf, "JPEG"));
            const QString first = dir + QStringLiteral("/p1.jpg");
            QFile f(first);
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write(jpeg);
            f.close();
            // The others are further names of the first (quick to make: no new file each).
            const QByteArray from = QFile::encodeName(first);
            for (int i = 2; i <= pictures; ++i)
                QCOMPARE(::link(from.constData(),
                                QFile::encodeName(dir + QStringLiteral("/p%1.jpg").arg(i)).constData()),
                         0);
        }
        showFolder(dir);
        const long rssBefore = twtest::statusKiB("VmRSS:");
        // A timer of the window keeps ticking while the grid fills; meanwhile the user scrolls
        // the grid and, with some thousands of cells made, presses Stop.
        QElapsedTimer clock;
        qint64 last = 0, longestGap = 0, pressedAt = -1;
        int ticks = 0, scrolledTo = -1;
        QTimer tick;
        tick.setInterval(10);
        connect(&tick, &QTimer::timeout, this, [&] {
            const qint64 now = clock.elapsed();
            if (now - last > 100)
                qInfo("pause of %lld ms at %lld ms, %d cells", now - last, now, thumbs()->grid()->count());
            longestGap = qMax(longestGap, now - last);
            last = now;
            ++ticks;
            const int cells = thumbs()->grid()->count();
            QScrollBar *bar = thumbs()->grid()->verticalScrollBar();
            if (scrolledTo < 0 && cells >= stopAt / 2 && bar->maximum() > 0) {
                bar->setValue(bar->maximum() / 2);
                scrolledTo = bar->value();
            }
            if (pressedAt < 0 && cells >= stopAt) {
                pressedAt = now;
                press(tool::Stop);
            }
        });
        clock.start();
        tick.start();
        press(tool::ThumbNails);
        const qint64 ended = clock.elapsed();
        tick.stop();
        const int cells = thumbs()->grid()->count();
        QVERIFY2(pressedAt >= 0, "the load ended before Stop could be pressed");
        // Stop acts at the next file: the load ends at once, with the cells made so far.
        QVERIFY2(ended - pressedAt < 100, qPrintable(QString::number(ended - pressedAt)));
        QVERIFY(cells >= stopAt && cells < pictures);
        QVERIFY(thumbs()->ThumbLoadStopped);
        QVERIFY(thumbs()->ThumbnailMode);
        QVERIFY(boxes.isEmpty());
        // The scroll the user made during the load held.
        QVERIFY(scrolledTo > 0);
        QVERIFY2(ticks > 10, qPrintable(QString::number(ticks)));
        QVERIFY2(longestGap < 300, qPrintable(QString::number(longestGap)));
        const QImage cell = thumbs()->grid()->picture(cells - 1);
        QCOMPARE(cell.width(), 105);
        QVERIFY(cell.height() == 78 || cell.height() == 79);
        QCOMPARE(cell.format(), QImage::Format_RGB16);
        // The cells hold the small pictures only: well under what the decoded pictures
        // (300 KB each) would take.
        const long rssAfter = twtest::statusKiB("VmRSS:");
        const double perCell = double(rssAfter - rssBefore) / cells;
        QVERIFY2(perCell < 60, qPrintable(QString::number(perCell) + QStringLiteral(" KB a cell")));
        qInfo("%d of %d cells in %lld ms, Stop to the end of the load %lld ms, longest pause %lld ms, "
              "%.1f KB more memory a cell",
              cells, pictures, ended, ended - pressedAt, longestGap, perCell);
    }

    void aProducerWithoutWorkersGivesTheTwoErrorBoxes()
    {
        showFolder(folderOf(QStringLiteral("noworkers"), 2));
        thumbs()->producer().pool()->setMaxThreadCount(0);
        press(tool::ThumbNails);
        QTRY_COMPARE(boxes.size(), 3);
        QCOMPARE(boxes.value(0),
                 QStringLiteral("Error in generating ThumbNails - Please Exit the Program and Retry"));
        QCOMPARE(
            boxes.value(1),
            QStringLiteral("Error - -2147417848 - The object invoked has disconnected from its clients."));
        QCOMPARE(boxes.value(2), QStringLiteral("      No Thumbnails to Display"));
        QVERIFY(!thumbs()->ThumbnailMode);
        QVERIFY(!thumbs()->ThumbLoadBusy);
    }

    void shutdownDuringALoadEndsItAtTheNextFile()
    {
        showFolder(folderOf(QStringLiteral("closing"), 30));
        int events = 0;
        thumbs()->afterEvent = [&](const browse::ThumbEvent &) {
            if (++events == 3) browse()->shutDown();
        };
        press(tool::ThumbNails);
        thumbs()->afterEvent = nullptr;
        QCOMPARE(events, 3);
        QCOMPARE(thumbs()->grid()->count(), 3);
        QVERIFY(!thumbs()->ThumbLoadBusy);
    }

    void aFolderChangeDuringALoadLoadsTheNewFolderAlone()
    {
        const QString first = folderOf(QStringLiteral("firstfolder"), 20);
        const QString second = folderOf(QStringLiteral("secondfolder"), 4);
        showFolder(first);
        int events = 0;
        thumbs()->afterEvent = [&](const browse::ThumbEvent &) {
            // The user picks another folder in the tree while the first one loads.
            if (++events == 2) QVERIFY(browse()->PTxShTree1->selectPath(second));
        };
        press(tool::ThumbNails);
        thumbs()->afterEvent = nullptr;
        QCOMPARE(thumbs()->grid()->count(), 4);
        for (int i = 0; i < 4; ++i) QVERIFY(thumbs()->grid()->fileName(i).startsWith(second + u'/'));
        QCOMPARE(thumbs()->ThumbFolder, second);
        QVERIFY(thumbs()->ThumbnailsShown);
        QVERIFY(!thumbs()->ThumbLoadBusy);
        QVERIFY(w->ToolBarComp1->isEnabled(tool::Find));
        QVERIFY(boxes.isEmpty());
    }

    void theLastPictureCellIsLoadedOnlyWhenAPatternNamesIt()
    {
        // A file of the last picture row (MSP) that no decoder can read: when its row is
        // loaded, the attempt leaves its mark in the cache's fail folder.
        const QString dir = folderOf(QStringLiteral("msp"), 1);
        const QString msp = dir + QStringLiteral("/old.msp");
        {
            QFile f(msp);
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write("not a Microsoft Paint file");
        }
        showFolder(dir);
        const browse::ThumbnailCache &cache = thumbs()->producer().cache();
        QCOMPARE(G.CurrentFilterRow, 35);
        press(tool::ThumbNails);
        QCOMPARE(thumbs()->grid()->count(), 1);
        QVERIFY(!QFileInfo::exists(cache.failPath(msp)));
        press(tool::Stop);
        QVERIFY(!thumbs()->ThumbnailMode);

        const QString saved = Cat.FilterPatterns[0];
        G.CurrentFilterRow = 0;
        Cat.FilterPatterns[0] = QStringLiteral("*.JPG;*.MSP");
        thumbs()->ThumbFolder.clear();
        press(tool::ThumbNails);
        Cat.FilterPatterns[0] = saved;
        G.CurrentFilterRow = 35;
        // Rows JPG to MSP: the PNG row is inside the run, and the MSP file was tried.
        QCOMPARE(thumbs()->grid()->count(), 1);
        QVERIFY(QFileInfo::exists(cache.failPath(msp)));
        QVERIFY(boxes.isEmpty());
    }

    void theGridTakesTheThumbnailColours()
    {
        showFolder(folderOf(QStringLiteral("colours"), 1));
        press(tool::ThumbNails);
        const QPalette p = thumbs()->grid()->palette();
        QCOMPARE(p.color(QPalette::Base), toQColor(G.Colors.ThumbWindowBack));
        QCOMPARE(p.color(QPalette::Text), toQColor(G.Colors.ThumbWindowText));
        const QModelIndex cell = thumbs()->grid()->model()->index(0, 0);
        QCOMPARE(cell.data(Qt::BackgroundRole).value<QBrush>().color(), toQColor(G.Colors.ThumbBack));
        QCOMPARE(cell.data(Qt::ForegroundRole).value<QBrush>().color(), toQColor(G.Colors.ThumbText));
        QCOMPARE(cell.data(Qt::DisplayRole).toString(), QStringLiteral("p1.png"));
    }
};

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    ThumbnailsWindowTest t;
    return QTest::qExec(&t, argc, argv);
}

#include "thumbnails_window_test.moc"
