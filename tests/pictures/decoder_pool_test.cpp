// The decoder helpers taking requests from several threads at once: each worker thread gets a
// helper of its own up to the limit and the others wait their turn; a helper that crashes or
// hangs in one thread leaves the requests of the other threads alone; a worker whose work is
// given up stops waiting at once; and the window's thread keeps its own ways meanwhile
// (painting and timers run, input is held back, Escape ends its own wait and no other).
#include "bad_files.h"
#include "pictures/decoder_pool.h"
#include "pictures/imaging_errors.h"
#include "pictures/picture_decoder.h"
#include "test_support.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWidget>

#include <atomic>
#include <csignal>
#include <chrono>
#include <thread>
#include <vector>

using namespace tw;

namespace {

struct Result {
    int status = -1;
    QString detail;
    QImage first;
    qint64 endMs = 0;  // on the test's clock
};

Result decode(const QString &path, const QElapsedTimer *clock = nullptr)
{
    Picture pic;
    Result r;
    r.status = decodePictureFile(path, 1, false, &pic, &r.detail);
    if (!pic.isNull()) r.first = pic.frames.first();
    if (clock) r.endMs = clock->elapsed();
    return r;
}

// Legacy pictures of the corpus that only the codec module reads.
QStringList goodFiles()
{
    return {twtest::corpus(QStringLiteral("pcx/input.pcx")), twtest::corpus(QStringLiteral("xwd/input.xwd")),
            twtest::corpus(QStringLiteral("psd/input.psd")),
            twtest::corpus(QStringLiteral("ras/input_im24.ras")),
            twtest::corpus(QStringLiteral("sgi/input.sgi"))};
}

// The most helpers busy at one moment, sampled by a thread of its own.
class BusySampler {
public:
    BusySampler()
        : thread_([this] {
              while (!stop_) {
                  peak_ = std::max(peak_.load(), decoding::helpersBusy());
                  std::this_thread::sleep_for(std::chrono::microseconds(200));
              }
          })
    {}
    ~BusySampler() { finish(); }
    int finish()
    {
        stop_ = true;
        if (thread_.joinable()) thread_.join();
        return peak_;
    }

private:
    std::atomic<bool> stop_{false};
    std::atomic<int> peak_{0};
    std::thread thread_;
};

// A program started for a file (Ghostscript for PostScript) that is still running.
bool stillRunningFor(const QString &path)
{
    QProcess ps;
    ps.start(QStringLiteral("pgrep"), {QStringLiteral("-f"), path});
    ps.waitForFinished();
    return !ps.readAllStandardOutput().trimmed().isEmpty();
}

void sleepMs(int ms) { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); }

// The time allowed to a helper in the tests of a hanging one.
constexpr int HangMs = 1000;

}  // namespace

class DecoderPoolTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY2(!decoding::helperPath().isEmpty(), "tarnwick-decoder not found beside the codec module");
        if (!twtest::haveCorpus()) QSKIP("no corpus");
    }
    void init()
    {
        decoding::setTimeoutMs(5000);
        decoding::setWorkerHelperLimit(0);
    }
    void cleanup()
    {
        decoding::setTimeoutMs(5000);
        decoding::setWorkerHelperLimit(0);
    }

    void threadsAtOnceGetTheSamePicturesAsOne()
    {
        const QStringList files = goodFiles();
        QList<QImage> reference;
        for (const QString &f : files) {
            const Result r = decode(f);
            QVERIFY2(r.status == 0, qPrintable(f + QLatin1Char(' ') + r.detail));
            reference << r.first;
        }
        constexpr int Threads = 4, Rounds = 3;
        std::vector<std::vector<Result>> results(Threads);
        BusySampler sampler;
        {
            std::vector<std::thread> threads;
            for (int t = 0; t < Threads; ++t)
                threads.emplace_back([&, t] {
                    for (int i = 0; i < Rounds * files.size(); ++i)
                        results[size_t(t)].push_back(decode(files[(i + t) % files.size()]));
                });
            for (auto &th : threads) th.join();
        }
        const int peak = sampler.finish();
        for (int t = 0; t < Threads; ++t) {
            QCOMPARE(int(results[size_t(t)].size()), Rounds * int(files.size()));
            for (int i = 0; i < int(results[size_t(t)].size()); ++i) {
                const Result &r = results[size_t(t)][size_t(i)];
                const int k = (i + t) % int(files.size());
                QVERIFY2(r.status == 0, qPrintable(files[k] + QLatin1Char(' ') + r.detail));
                QVERIFY2(r.first == reference[k], qPrintable(files[k]));
            }
        }
        QVERIFY2(peak <= decoding::workerHelperLimit(), qPrintable(QString::number(peak)));
        qInfo() << "at most" << peak << "helpers busy at once, limit" << decoding::workerHelperLimit();
    }

    void twoHangingDecodesRunSideBySide()
    {
        QVERIFY(decoding::workerHelperLimit() >= 2);
        QTemporaryDir dir;
        const QString a = twtest::endlessEps(dir.path(), QStringLiteral("a.eps"));
        const QString b = twtest::endlessEps(dir.path(), QStringLiteral("b.eps"));
        decoding::setTimeoutMs(HangMs);
        QElapsedTimer clock;
        clock.start();
        Result ra, rb;
        std::thread ta([&] { ra = decode(a, &clock); });
        std::thread tb([&] { rb = decode(b, &clock); });
        ta.join();
        tb.join();
        for (const Result &r : {ra, rb}) {
            QCOMPARE(r.status, int(ImagingReadError));
            QVERIFY2(r.detail.contains(QLatin1String("took longer")), qPrintable(r.detail));
            QVERIFY2(r.endMs >= HangMs - 100, qPrintable(QString::number(r.endMs)));
        }
        // Side by side: both within one time allowed, not one after the other.
        QVERIFY2(clock.elapsed() < 2 * HangMs - 300, qPrintable(QString::number(clock.elapsed())));
        QVERIFY(!stillRunningFor(a));
        QVERIFY(!stillRunningFor(b));
    }

    void aCrashInOneThreadLeavesTheOthersAlone()
    {
        QTemporaryDir dir;
        // The corpus's JBIG file with sizes in its header that kill the decoder.
        const QStringList bad{
            twtest::jbigWithSize(dir.path(), QStringLiteral("crash.jbg"), twtest::CrashingJbigSize),
            twtest::jbigWithSize(dir.path(), QStringLiteral("freeze.jbg"), twtest::FreezingJbigSize)};
        QVERIFY(!bad[0].isEmpty() && !bad[1].isEmpty());
        const QStringList files = goodFiles();
        std::vector<Result> crashed, good1, good2;
        std::thread tc([&] {
            for (int i = 0; i < 2; ++i)
                for (const QString &b : bad) crashed.push_back(decode(b));
        });
        const auto goodRun = [&](std::vector<Result> *out) {
            for (int i = 0; i < 2; ++i)
                for (const QString &f : files) out->push_back(decode(f));
        };
        std::thread t1(goodRun, &good1);
        std::thread t2(goodRun, &good2);
        tc.join();
        t1.join();
        t2.join();
        for (const Result &r : crashed)
            QVERIFY2(r.status == ImagingReadError || r.status == ImagingNoMemory
                         || r.status == ImagingInvalidFormat,
                     qPrintable(QString::number(r.status) + QLatin1Char(' ') + r.detail));
        for (const auto *run : {&good1, &good2}) {
            QCOMPARE(int(run->size()), 2 * int(files.size()));
            for (const Result &r : *run) QVERIFY2(r.status == 0 && !r.first.isNull(), qPrintable(r.detail));
        }
        QVERIFY(decoding::helpersRunning() >= 2);
        qInfo() << "crashing JBIG on its own thread:" << crashed.front().detail;
    }

    void aHangInOneThreadLeavesTheOthersAlone()
    {
        QTemporaryDir dir;
        // Ghostscript loops for ever on it: a helper that hangs until it is killed.
        const QString bad = twtest::endlessEps(dir.path());
        decoding::setTimeoutMs(HangMs);
        const QStringList files = goodFiles();
        QElapsedTimer clock;
        clock.start();
        Result frozen;
        std::atomic<bool> frozenDone{false};
        std::vector<Result> others;
        std::thread tf([&] {
            frozen = decode(bad, &clock);
            frozenDone = true;
        });
        std::thread tg([&] {
            sleepMs(100);
            for (int i = 0; !frozenDone; ++i) {
                others.push_back(decode(files[i % files.size()], &clock));
                sleepMs(10);
            }
        });
        tf.join();
        tg.join();
        QCOMPARE(frozen.status, int(ImagingReadError));
        QVERIFY2(frozen.detail.contains(QLatin1String("took longer")), qPrintable(frozen.detail));
        QVERIFY2(frozen.endMs >= HangMs - 100, qPrintable(QString::number(frozen.endMs)));
        int doneMeanwhile = 0;
        for (const Result &r : others) {
            QVERIFY2(r.status == 0, qPrintable(r.detail));
            if (r.endMs < frozen.endMs) ++doneMeanwhile;
        }
        QVERIFY2(doneMeanwhile >= 3, qPrintable(QString::number(doneMeanwhile)));
        qInfo() << "endless PostScript:" << frozen.detail << frozen.endMs << "ms;" << doneMeanwhile
                << "pictures decoded on another thread meanwhile";
    }

    void helpersOutliveTheThreadsThatStartedThem()
    {
        // Every helper there is goes, as the system might end them.
        QProcess ps;
        ps.start(QStringLiteral("pgrep"),
                 {QStringLiteral("-P"), QString::number(QCoreApplication::applicationPid()),
                  QStringLiteral("^tarnwick-decod")});
        ps.waitForFinished();
        for (const QByteArray &p : ps.readAllStandardOutput().split('\n'))
            if (p.trimmed().toInt() > 0) ::kill(p.trimmed().toInt(), SIGKILL);
        QTest::qWait(100);
        // A worker that lives for one picture: the helpers it needed are started for it.
        const QString pcx = twtest::corpus(QStringLiteral("pcx/input.pcx"));
        const int before = decoding::helpersStarted();
        Result first;
        std::thread([&] { first = decode(pcx); }).join();
        QCOMPARE(first.status, 0);
        QVERIFY(decoding::helpersStarted() > before);
        QTest::qWait(200);
        // The worker is gone; its helpers are not, and serve the next pictures.
        const int started = decoding::helpersStarted();
        for (int i = 0; i < 3; ++i) {
            Result next;
            std::thread([&] { next = decode(pcx); }).join();
            QCOMPARE(next.status, 0);
            QCOMPARE(decode(pcx).status, 0);
        }
        QCOMPARE(decoding::helpersStarted(), started);
    }

    void workersBeyondTheLimitWaitTheirTurn()
    {
        decoding::setWorkerHelperLimit(1);
        QTemporaryDir dir;
        const QString endless = twtest::endlessEps(dir.path());
        const QString pcx = twtest::corpus(QStringLiteral("pcx/input.pcx"));
        decoding::setTimeoutMs(HangMs);
        QElapsedTimer clock;
        clock.start();
        Result hung, waited;
        std::thread ta([&] { hung = decode(endless, &clock); });
        std::thread tb([&] {
            sleepMs(200);
            waited = decode(pcx, &clock);
        });
        // The window's thread does not wait for a worker's helper.
        sleepMs(300);
        const Result own = decode(pcx, &clock);
        ta.join();
        tb.join();
        QCOMPARE(own.status, 0);
        QVERIFY2(own.endMs < HangMs - 200, qPrintable(QString::number(own.endMs)));
        QCOMPARE(hung.status, int(ImagingReadError));
        QCOMPARE(waited.status, 0);
        // Its turn came when the hanging helper was killed.
        QVERIFY2(waited.endMs >= HangMs - 100, qPrintable(QString::number(waited.endMs)));

        // Three threads with a limit of one: never two busy at once, every picture made.
        decoding::setTimeoutMs(5000);
        const QStringList files = goodFiles();
        std::vector<std::vector<Result>> results(3);
        BusySampler sampler;
        {
            std::vector<std::thread> threads;
            for (int t = 0; t < 3; ++t)
                threads.emplace_back([&, t] {
                    for (const QString &f : files) results[size_t(t)].push_back(decode(f));
                });
            for (auto &th : threads) th.join();
        }
        QCOMPARE(sampler.finish(), 1);
        for (const auto &run : results)
            for (const Result &r : run) QVERIFY2(r.status == 0, qPrintable(r.detail));
    }

    void aGivenUpWorkerStopsWaitingAtOnce()
    {
        QTemporaryDir dir;
        const QString endless = twtest::endlessEps(dir.path());
        decoding::setTimeoutMs(8000);
        std::atomic<bool> giveUpA{false}, giveUpB{false};
        QElapsedTimer clock;
        clock.start();
        Result a, b;
        decoding::setWorkerHelperLimit(1);
        std::thread ta([&] {
            const decoding::CancelScope scope(&giveUpA);
            a = decode(endless, &clock);
        });
        // B waits for the one helper that A holds, and is given up while it waits.
        std::thread tb([&] {
            sleepMs(100);
            const decoding::CancelScope scope(&giveUpB);
            b = decode(twtest::corpus(QStringLiteral("pcx/input.pcx")), &clock);
        });
        sleepMs(300);
        giveUpB = true;
        tb.join();
        QCOMPARE(b.status, int(ImagingEscapePressed));
        QVERIFY2(b.endMs < 1000, qPrintable(QString::number(b.endMs)));
        // A, given up in the middle of its decode: the helper and its Ghostscript go at once.
        giveUpA = true;
        const qint64 asked = clock.elapsed();
        ta.join();
        QCOMPARE(a.status, int(ImagingEscapePressed));
        QVERIFY2(a.endMs - asked < 500, qPrintable(QString::number(a.endMs - asked)));
        QTRY_VERIFY(!stillRunningFor(endless));
        // The next request of a worker is served as before.
        Result next;
        std::thread([&] { next = decode(twtest::corpus(QStringLiteral("pcx/input.pcx"))); }).join();
        QCOMPARE(next.status, 0);
    }

    void theWindowThreadKeepsItsWaysWhileWorkersDecode()
    {
        QTemporaryDir dir;
        const QString endless = twtest::endlessEps(dir.path());
        decoding::setTimeoutMs(8000);
        QWidget w;
        w.show();
        int keys = 0, ticks = 0;
        struct Counter : QObject {
            int *n = nullptr;
            bool eventFilter(QObject *, QEvent *e) override
            {
                if (e->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(e)->key() == Qt::Key_A) ++*n;
                return false;
            }
        } counter;
        counter.n = &keys;
        w.installEventFilter(&counter);
        QTimer tick;
        connect(&tick, &QTimer::timeout, this, [&] { ++ticks; });
        tick.start(20);
        QTimer::singleShot(150, &w, [&w] {
            QCoreApplication::postEvent(&w, new QKeyEvent(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, "a"));
        });
        QTimer::singleShot(700, &w, [&w] {
            QCoreApplication::postEvent(&w, new QKeyEvent(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier));
        });
        const QStringList files = goodFiles();
        std::atomic<bool> stop{false};
        std::atomic<int> madeMeanwhile{0};
        std::vector<Result> workers;
        std::thread worker([&] {
            for (int i = 0; !stop; ++i) {
                workers.push_back(decode(files[i % files.size()]));
                ++madeMeanwhile;
            }
        });
        QElapsedTimer t;
        t.start();
        const Result mine = decode(endless);
        const qint64 ms = t.elapsed();
        const int made = madeMeanwhile;
        stop = true;
        worker.join();
        // Escape ended the window thread's wait, and only that one.
        QCOMPARE(mine.status, int(ImagingEscapePressed));
        QVERIFY2(ms >= 600 && ms < 3000, qPrintable(QString::number(ms)));
        QVERIFY2(ticks >= 10, qPrintable(QString::number(ticks)));
        QCOMPARE(keys, 0);
        QVERIFY2(made >= 3, qPrintable(QString::number(made)));
        for (const Result &r : workers) QVERIFY2(r.status == 0, qPrintable(r.detail));
        QTRY_VERIFY(!stillRunningFor(endless));
    }
};

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    DecoderPoolTest t;
    return QTest::qExec(&t, argc, argv);
}

#include "decoder_pool_test.moc"
