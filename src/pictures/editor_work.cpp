#include "pictures/editor_work.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QObject>
#include <QPointer>
#include <QThreadPool>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>

namespace tw {

QStringList keysOf(const EditChain &chain)
{
    QStringList keys;
    keys.reserve(int(chain.size()));
    for (const EditStep &s : chain) keys.append(s.key);
    return keys;
}

namespace {

// The editors' own threads: a lane's step may itself spread its rows over the global pool,
// which must not wait behind the lanes.
QThreadPool *editorThreads()
{
    static QThreadPool *pool = [] {
        auto *p = new QThreadPool;
        p->setMaxThreadCount(4);  // the two lanes of each of the two editors
        p->setExpiryTimeout(30000);
        // At the end of the program a step still running finishes before the libraries go.
        qAddPostRoutine([] {
            editorThreads()->clear();
            editorThreads()->waitForDone();
        });
        return p;
    }();
    return pool;
}

bool isPrefix(const QStringList &prefix, const QStringList &of)
{
    if (prefix.size() > of.size()) return false;
    for (int i = 0; i < prefix.size(); ++i)
        if (prefix[i] != of[i]) return false;
    return true;
}

}  // namespace

struct EditLane::State {
    struct Job {
        quint64 generation = 0;
        quint64 source = 0;  // which source the job starts from
        QImage picture;
        double scale = 1.0;
        EditChain chain;
        QStringList keys;
    };
    struct Memory {
        quint64 source;
        QStringList keys;
        QImage picture;
    };

    std::mutex m;
    std::condition_variable cv;
    QObject *receiver = nullptr;
    std::function<void(quint64, const QImage &)> done;
    std::atomic<quint64> generation{0};
    quint64 counter = 0;
    quint64 asked = 0;  // the generation whose result is awaited (0: none)
    quint64 sourceSerial = 0;
    QImage source;
    double scale = 1.0;
    std::optional<Job> pending;
    bool running = false;
    std::deque<Memory> memory;
    qint64 budget = 0;
    quint64 doneGeneration = 0;
    QImage doneResult;

    // Under the lock. The newest picture always stays; older ones go while over budget.
    void remember(quint64 src, const QStringList &keys, const QImage &picture)
    {
        if (src != sourceSerial) return;
        for (auto it = memory.begin(); it != memory.end(); ++it)
            if (it->keys == keys) {
                memory.erase(it);
                break;
            }
        memory.push_back({src, keys, picture});
        qint64 total = 0;
        for (const Memory &mem : memory) total += mem.picture.sizeInBytes();
        while (memory.size() > 1 && total > budget) {
            total -= memory.front().picture.sizeInBytes();
            memory.pop_front();
        }
    }

    static void work(const std::shared_ptr<State> &s)
    {
        for (;;) {
            Job job;
            QImage picture;
            int from = 0;
            {
                std::unique_lock lock(s->m);
                if (!s->pending) {
                    s->running = false;
                    s->cv.notify_all();
                    return;
                }
                job = std::move(*s->pending);
                s->pending.reset();
                picture = job.picture;
                for (const Memory &mem : s->memory)
                    if (mem.source == job.source && mem.keys.size() >= from && isPrefix(mem.keys, job.keys)) {
                        from = int(mem.keys.size());
                        picture = mem.picture;
                    }
            }
            bool stale = false;
            for (int i = from; i < int(job.chain.size()); ++i) {
                if (s->generation.load() != job.generation) {
                    stale = true;
                    break;
                }
                picture = job.chain[size_t(i)].run(picture, job.scale);
                // What a step made is good for any later chain that begins the same way,
                // even when this one has gone stale meanwhile.
                std::unique_lock lock(s->m);
                s->remember(job.source, job.keys.mid(0, i + 1), picture);
            }
            std::unique_lock lock(s->m);
            if (!stale && s->generation.load() == job.generation) {
                s->doneGeneration = job.generation;
                s->doneResult = picture;
                if (s->receiver) {
                    const quint64 g = job.generation;
                    QMetaObject::invokeMethod(
                        s->receiver,
                        [s, g, picture] {
                            if (s->generation.load() == g && s->done) s->done(g, picture);
                        },
                        Qt::QueuedConnection);
                }
            }
            s->cv.notify_all();
        }
    }
};

EditLane::EditLane(QObject *receiver, std::function<void(quint64, const QImage &)> done, qint64 memoryBudget)
    : s_(std::make_shared<State>())
{
    s_->receiver = receiver;
    s_->done = std::move(done);
    s_->budget = memoryBudget;
}

EditLane::~EditLane()
{
    std::unique_lock lock(s_->m);
    s_->receiver = nullptr;
    s_->done = nullptr;
    s_->generation = ++s_->counter;
    s_->asked = 0;
    s_->pending.reset();
    s_->memory.clear();
}

void EditLane::setSource(const QImage &source, double scale)
{
    std::unique_lock lock(s_->m);
    s_->generation = ++s_->counter;
    s_->asked = 0;
    s_->pending.reset();
    s_->memory.clear();
    s_->source = source;
    s_->scale = scale;
    ++s_->sourceSerial;
    s_->doneResult = QImage();
}

quint64 EditLane::request(const EditChain &chain)
{
    std::unique_lock lock(s_->m);
    State::Job job;
    job.generation = ++s_->counter;
    job.source = s_->sourceSerial;
    job.picture = s_->source;
    job.scale = s_->scale;
    job.chain = chain;
    job.keys = keysOf(chain);
    s_->generation = job.generation;
    s_->asked = job.generation;
    s_->pending = std::move(job);
    if (!s_->running) {
        s_->running = true;
        std::shared_ptr<State> s = s_;
        editorThreads()->start([s] { State::work(s); });
    }
    return s_->asked;
}

void EditLane::cancel()
{
    std::unique_lock lock(s_->m);
    s_->generation = ++s_->counter;
    s_->asked = 0;
    s_->pending.reset();
}

void EditLane::seed(const QStringList &keys, const QImage &picture)
{
    std::unique_lock lock(s_->m);
    s_->remember(s_->sourceSerial, keys, picture);
}

QImage EditLane::wait()
{
    std::unique_lock lock(s_->m);
    if (s_->asked == 0) return s_->source;
    const quint64 g = s_->asked;
    s_->cv.wait(lock, [&] { return s_->doneGeneration == g || s_->asked != g; });
    return s_->doneGeneration == g ? s_->doneResult : s_->source;
}

bool EditLane::busy() const
{
    std::unique_lock lock(s_->m);
    return s_->running || s_->pending.has_value();
}

}  // namespace tw
