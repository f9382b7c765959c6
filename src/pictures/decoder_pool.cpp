#include "pictures/decoder_pool.h"

#include "core/modules.h"

#include "core/busy.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QEvent>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QKeyEvent>
#include <QPointer>
#include <QSocketNotifier>
#include <QThread>
#include <QTimer>
#include <QWidget>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <mutex>
#include <thread>

extern char **environ;

namespace tw::decoding {

namespace {

// Helpers kept ready for the next request.
constexpr int WarmHelpers = 2;

std::atomic<bool> g_inProcess{false};
std::atomic<int> g_timeoutMs{5000};
std::atomic<int> g_started{0};
std::atomic<int> g_running{0};
std::atomic<int> g_busy{0};
std::atomic<int> g_workerLimit{0};  // 0: the core count

// The flag that ends this thread's waits early (CancelScope).
thread_local const std::atomic<bool> *t_cancel = nullptr;

bool cancelled() { return t_cancel && t_cancel->load(); }

struct Helper {
    pid_t pid = -1;
    int fd = -1;
};

// Standard mutex and condition variable: a thread checker sees through them.
std::mutex g_mutex;
QList<Helper> g_idle;
// Under g_mutex: the worker threads holding a helper, those waiting for one, and the signal
// that one came free.
int g_workerHolding = 0;
int g_workerWaiting = 0;
std::condition_variable g_workerFreed;

int workerLimitNow()
{
    const int set = g_workerLimit;
    return set > 0 ? set : std::max(WarmHelpers, QThread::idealThreadCount());
}

// The thread the program's windows live on. Its requests never wait for a worker's helper.
bool onMainThread()
{
    const auto *app = QCoreApplication::instance();
    return app && QThread::currentThread() == app->thread();
}

// A worker thread's claim on one of the helpers that workers may hold at once.
class WorkerSlot {
public:
    WorkerSlot() = default;
    WorkerSlot(const WorkerSlot &) = delete;
    WorkerSlot &operator=(const WorkerSlot &) = delete;
    // Waits for a free place; false when this thread's work was given up meanwhile.
    bool acquire()
    {
        std::unique_lock<std::mutex> lock(g_mutex);
        ++g_workerWaiting;
        while (g_workerHolding >= workerLimitNow()) {
            if (cancelled()) {
                --g_workerWaiting;
                return false;
            }
            // With a flag to watch, it is looked at every 50 ms.
            if (t_cancel) g_workerFreed.wait_for(lock, std::chrono::milliseconds(50));
            else g_workerFreed.wait(lock);
        }
        --g_workerWaiting;
        ++g_workerHolding;
        held_ = true;
        return true;
    }
    ~WorkerSlot()
    {
        if (!held_) return;
        const std::lock_guard<std::mutex> lock(g_mutex);
        --g_workerHolding;
        g_workerFreed.notify_all();
    }

private:
    bool held_ = false;
};

// A helper at work on a request, for helpersBusy().
struct BusyCount {
    BusyCount() { ++g_busy; }
    ~BusyCount() { --g_busy; }
    BusyCount(const BusyCount &) = delete;
    BusyCount &operator=(const BusyCount &) = delete;
};

QString findHelper()
{
    // Beside the codec module: the build's lib/ folder, or the installation's.
    const QString p = programModuleFile(QStringLiteral("tarnwick-decoder"));
    return !p.isEmpty() && QFileInfo(p).isExecutable() ? p : QString();
}

const QString &helperExecutable()
{
    static const QString path = findHelper();
    return path;
}

bool spawnHere(Helper *out, QString *detail)
{
    const QString exe = helperExecutable();
    if (exe.isEmpty()) {
        if (detail) *detail = QStringLiteral("the picture decoder tarnwick-decoder is missing");
        return false;
    }
    int sv[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sv) != 0) {
        if (detail) *detail = QString::fromLocal8Bit(std::strerror(errno));
        return false;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    // The helper's socket is its standard input (dup2 clears close-on-exec there); its
    // standard output goes nowhere, its errors to the program's.
    posix_spawn_file_actions_adddup2(&actions, sv[1], STDIN_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    const QByteArray path = QFile::encodeName(exe);
    char *argv[] = {const_cast<char *>(path.constData()), nullptr};
    // Each helper leads a process group of its own, so that killing it takes the programs
    // ImageMagick started for it (Ghostscript for PostScript) along.
    posix_spawnattr_t attr;
    posix_spawnattr_init(&attr);
    posix_spawnattr_setflags(&attr, POSIX_SPAWN_SETPGROUP);
    posix_spawnattr_setpgroup(&attr, 0);
    pid_t pid = -1;
    const int rc = posix_spawn(&pid, path.constData(), &actions, &attr, argv, environ);
    posix_spawnattr_destroy(&attr);
    posix_spawn_file_actions_destroy(&actions);
    close(sv[1]);
    if (rc != 0) {
        close(sv[0]);
        if (detail)
            *detail = QStringLiteral("cannot start the picture decoder: ")
                + QString::fromLocal8Bit(std::strerror(rc));
        return false;
    }
    out->pid = pid;
    out->fd = sv[0];
    ++g_started;
    ++g_running;
    return true;
}

// Helpers are started from one thread kept for that alone, for the life of the program: a
// helper asks the kernel to end it when the thread that started it ends (the parent-death
// signal belongs to a thread, not to the process), and the worker threads that ask for
// helpers come and go.
class Spawner {
public:
    static Spawner &instance()
    {
        static Spawner *s = new Spawner;  // never destroyed: its thread runs until the program ends
        return *s;
    }
    bool spawn(Helper *out, QString *detail)
    {
        Job job{out, detail};
        std::unique_lock<std::mutex> lock(mutex_);
        queue_.push_back(&job);
        wake_.notify_all();
        finished_.wait(lock, [&] { return job.done; });
        return job.ok;
    }

private:
    struct Job {
        Helper *out;
        QString *detail;
        bool ok = false;
        bool done = false;
    };
    Spawner()
    {
        std::thread([this] { loop(); }).detach();
    }
    [[noreturn]] void loop()
    {
        std::unique_lock<std::mutex> lock(mutex_);
        for (;;) {
            wake_.wait(lock, [&] { return !queue_.empty(); });
            Job *job = queue_.front();
            queue_.pop_front();
            lock.unlock();
            QString detail;
            Helper h;
            const bool ok = spawnHere(&h, &detail);
            lock.lock();
            *job->out = h;
            if (job->detail && !ok) *job->detail = detail;
            job->ok = ok;
            job->done = true;
            finished_.notify_all();
        }
    }
    std::mutex mutex_;
    std::condition_variable wake_, finished_;
    std::deque<Job *> queue_;
};

bool spawn(Helper *out, QString *detail) { return Spawner::instance().spawn(out, detail); }

void retire(Helper &h, bool kill)
{
    if (h.pid <= 0) return;
    if (kill) ::kill(-h.pid, SIGKILL);
    close(h.fd);
    // Closing its socket ends an idle helper; a killed one is gone at once.
    int status = 0;
    while (waitpid(h.pid, &status, 0) < 0 && errno == EINTR) {}
    h.pid = -1;
    h.fd = -1;
    --g_running;
}

// Keeps the helpers at their number, busy ones counted: a helper that died is replaced
// at once, while the one just used goes back to wait. Called with the mutex held.
void topUp()
{
    while (g_running < WarmHelpers) {
        Helper h;
        if (!spawn(&h, nullptr)) return;
        g_idle.append(h);
    }
}

Helper take(QString *detail)
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    Helper h;
    // A waiting helper that died meanwhile (killed from outside, or it could not start) is
    // reaped and passed over.
    while (!g_idle.isEmpty()) {
        h = g_idle.takeFirst();
        int status = 0;
        if (waitpid(h.pid, &status, WNOHANG) != h.pid) break;
        close(h.fd);
        --g_running;
        h = Helper();
    }
    if (h.pid <= 0) spawn(&h, detail);
    topUp();
    return h;
}

// A helper whose request went well waits for the next one. While other workers are at it
// (a folder of thumbnails), as many stay as they may hold; otherwise the warm ones.
void giveBack(Helper h, bool fromWorker)
{
    QList<Helper> extra;
    {
        const std::lock_guard<std::mutex> lock(g_mutex);
        const bool othersAtIt = g_workerHolding - (fromWorker ? 1 : 0) + g_workerWaiting > 0;
        const int keep = othersAtIt ? std::max(WarmHelpers, workerLimitNow()) : WarmHelpers;
        if (g_idle.size() < keep) {
            g_idle.append(h);
            h = Helper();
        }
        while (g_idle.size() > keep) extra.append(g_idle.takeLast());
    }
    if (h.pid > 0) retire(h, false);
    for (Helper &e : extra) retire(e, false);
}

bool sendAll(int fd, const QByteArray &data)
{
    const char *p = data.constData();
    size_t left = size_t(data.size());
    while (left > 0) {
        const ssize_t w = send(fd, p, left, MSG_NOSIGNAL);
        if (w < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        p += w;
        left -= size_t(w);
    }
    return true;
}

QByteArray framed(const QByteArray &payload)
{
    const uint32_t n = uint32_t(payload.size());
    QByteArray all(4, 0);
    for (int i = 0; i < 4; ++i) all[i] = char((n >> (8 * i)) & 0xFF);
    return all + payload;
}

// Input the window takes no part in while a decode runs: Escape and closing a window end
// the wait instead, and every other key or mouse event is held back (so nothing the user
// does runs in the middle of a picture load).
class InputGuard : public QObject {
public:
    bool abandoned = false;
    QPointer<QWidget> closing;
    QEventLoop *loop = nullptr;

protected:
    bool eventFilter(QObject *o, QEvent *e) override
    {
        switch (e->type()) {
        case QEvent::KeyPress:
            if (static_cast<QKeyEvent *>(e)->key() == Qt::Key_Escape) abandon();
            return true;
        case QEvent::Close:
            if (auto *w = qobject_cast<QWidget *>(o); w && w->isWindow()) {
                closing = w;
                e->ignore();
                abandon();
                return true;
            }
            return false;
        case QEvent::KeyRelease:
        case QEvent::ShortcutOverride:
        case QEvent::Shortcut:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::Wheel:
        case QEvent::ContextMenu:
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
            return true;
        default:
            return false;
        }
    }

private:
    void abandon()
    {
        abandoned = true;
        if (loop) loop->quit();
    }
};

enum class Wait { Readable, TimedOut, Abandoned };

// Waits until the helper's answer starts to arrive. On the user-interface thread the wait
// is a local event loop, so the window paints and timers run meanwhile. Any other thread
// simply blocks on its helper's socket (looking at its cancel flag every 50 ms).
Wait waitReadable(int fd, const QDeadlineTimer &deadline)
{
    auto *app = QCoreApplication::instance();
    const bool uiThread = app && QThread::currentThread() == app->thread() && app->inherits("QApplication");
    if (!uiThread) {
        pollfd p{fd, POLLIN, 0};
        const qint64 slice = t_cancel ? 50 : 1000;
        for (;;) {
            if (cancelled()) return Wait::Abandoned;
            const qint64 left = deadline.remainingTime();
            if (left == 0) return Wait::TimedOut;
            const int r = poll(&p, 1, int(std::min<qint64>(left, slice)));
            if (r > 0) return Wait::Readable;
            if (r < 0 && errno != EINTR) return Wait::Readable;  // the read will tell
        }
    }
    // Already readable (a quick answer): no loop at all.
    pollfd p{fd, POLLIN, 0};
    if (poll(&p, 1, 0) > 0) return Wait::Readable;

    // Busy meanwhile, as a walk that yields is: the load is still under way.
    BusyScope busy;
    QEventLoop loop;
    InputGuard guard;
    guard.loop = &loop;
    bool readable = false, timedOut = false;
    QSocketNotifier notifier(fd, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &loop, [&] {
        readable = true;
        loop.quit();
    });
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
        timedOut = true;
        loop.quit();
    });
    timer.start(int(std::max<qint64>(deadline.remainingTime(), 1)));
    app->installEventFilter(&guard);
    loop.exec();
    app->removeEventFilter(&guard);
    if (guard.closing) {
        // The window closes once the load has given up, outside the load.
        QPointer<QWidget> w = guard.closing;
        QTimer::singleShot(0, w, [w] {
            if (w) w->close();
        });
    }
    if (readable) return Wait::Readable;
    if (timedOut) return Wait::TimedOut;
    return Wait::Abandoned;  // Escape, a window closing, or the program quitting
}

// Reads the whole answer: the length, the message and the memory file that came with it.
bool readReply(int fd, const QDeadlineTimer &deadline, QByteArray *payload, int *memFd)
{
    QByteArray buf;
    qint64 need = -1;
    while (need < 0 || buf.size() < need) {
        pollfd p{fd, POLLIN, 0};
        const qint64 left = deadline.remainingTime();
        if (left == 0) return false;
        const int pr = poll(&p, 1, int(std::min<qint64>(left, 1000)));
        if (pr < 0 && errno == EINTR) continue;
        if (pr <= 0) continue;
        char chunk[65536];
        iovec iov{chunk, sizeof chunk};
        if (need > 0) iov.iov_len = size_t(std::min<qint64>(qint64(sizeof chunk), need - buf.size()));
        msghdr msg{};
        msg.msg_iov = &iov;
        msg.msg_iovlen = 1;
        alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int) * 4)];
        msg.msg_control = control;
        msg.msg_controllen = sizeof control;
        const ssize_t r = recvmsg(fd, &msg, MSG_CMSG_CLOEXEC);
        if (r < 0 && errno == EINTR) continue;
        if (r <= 0) return false;  // the helper died
        for (cmsghdr *c = CMSG_FIRSTHDR(&msg); c; c = CMSG_NXTHDR(&msg, c)) {
            if (c->cmsg_level != SOL_SOCKET || c->cmsg_type != SCM_RIGHTS) continue;
            const size_t count = (c->cmsg_len - CMSG_LEN(0)) / sizeof(int);
            for (size_t i = 0; i < count; ++i) {
                int received;
                std::memcpy(&received, CMSG_DATA(c) + i * sizeof(int), sizeof(int));
                if (*memFd < 0) *memFd = received;
                else close(received);
            }
        }
        buf.append(chunk, r);
        if (need < 0 && buf.size() >= 4) {
            const auto *b = reinterpret_cast<const uchar *>(buf.constData());
            need = 4
                + qint64(uint32_t(b[0]) | uint32_t(b[1]) << 8 | uint32_t(b[2]) << 16 | uint32_t(b[3]) << 24);
            if (need - 4 > MaxMessageBytes) return false;
        }
    }
    *payload = buf.mid(4);
    return true;
}

struct Mapping {
    void *base = nullptr;
    size_t size = 0;
};

void unmap(void *p)
{
    auto *m = static_cast<Mapping *>(p);
    munmap(m->base, m->size);
    delete m;
}

// The pixels of a reply, mapped from the memory file without a copy.
bool mapFrames(int memFd, Outcome *out)
{
    const Reply &r = out->reply;
    if (r.frames.isEmpty()) return true;
    if (memFd < 0) return false;
    struct stat st {};
    if (fstat(memFd, &st) != 0 || st.st_size < r.pixelBytes) return false;
    // Read-only and mapped in whole at once: the pictures over it are copied only if changed.
    void *base = mmap(nullptr, size_t(r.pixelBytes), PROT_READ, MAP_SHARED | MAP_POPULATE, memFd, 0);
    if (base == MAP_FAILED) return false;
    auto *m = new Mapping{base, size_t(r.pixelBytes)};
    out->frames = framesOver(static_cast<const uchar *>(base), r, unmap, m);
    return true;
}

QString describeDeath(int status)
{
    if (WIFSIGNALED(status)) {
        const int sig = WTERMSIG(status);
        if (sig == SIGXCPU) return QStringLiteral("the picture decoder used up its CPU time");
        // sigdescr_np, unlike strsignal, is safe on any thread.
        const char *name = sigdescr_np(sig);
        return QStringLiteral("the picture decoder crashed (")
            + (name ? QString::fromLocal8Bit(name) : QString::number(sig)) + QLatin1Char(')');
    }
    return QStringLiteral("the picture decoder stopped");
}

}  // namespace

void setInProcess(bool v) { g_inProcess = v; }
bool inProcess() { return g_inProcess; }
void setTimeoutMs(int ms) { g_timeoutMs = std::max(ms, 100); }
int timeoutMs() { return g_timeoutMs; }
int helpersStarted() { return g_started; }
int helpersRunning() { return g_running; }
int helpersBusy() { return g_busy; }
int workerHelperLimit() { return workerLimitNow(); }

void setWorkerHelperLimit(int helpers)
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    g_workerLimit = std::max(helpers, 0);
    g_workerFreed.notify_all();
}

CancelScope::CancelScope(const std::atomic<bool> *flag) : previous_(t_cancel) { t_cancel = flag; }
CancelScope::~CancelScope() { t_cancel = previous_; }
QString helperPath() { return helperExecutable(); }

void warmUp()
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    topUp();
}

Outcome run(const Request &request)
{
    Outcome out;
    // A worker thread first waits for its turn, while as many workers as may hold a helper
    // hold one.
    const bool fromWorker = !onMainThread();
    WorkerSlot slot;
    if (fromWorker && !slot.acquire()) {
        out.kind = Outcome::Abandoned;
        out.detail = QStringLiteral("the picture load was abandoned");
        return out;
    }
    Helper h = take(&out.detail);
    if (h.pid <= 0) {
        out.kind = Outcome::Unavailable;
        return out;
    }
    const BusyCount busy;
    const QDeadlineTimer deadline(g_timeoutMs.load());
    if (!sendAll(h.fd, framed(encodeRequest(request)))) {
        // A warm helper that died on its own (it could not load the codecs): one more try.
        int status = 0;
        kill(-h.pid, SIGKILL);
        close(h.fd);
        waitpid(h.pid, &status, 0);
        --g_running;
        h = take(&out.detail);
        if (h.pid <= 0 || !sendAll(h.fd, framed(encodeRequest(request)))) {
            if (h.pid > 0) retire(h, true);
            out.kind = Outcome::Unavailable;
            if (out.detail.isEmpty()) out.detail = QStringLiteral("the picture decoder does not start");
            return out;
        }
    }
    switch (waitReadable(h.fd, deadline)) {
    case Wait::TimedOut:
        retire(h, true);
        out.kind = Outcome::TimedOut;
        out.detail = QStringLiteral("the picture decoder took longer than %1 s").arg(g_timeoutMs / 1000.0);
        warmUp();
        return out;
    case Wait::Abandoned:
        retire(h, true);
        out.kind = Outcome::Abandoned;
        out.detail = QStringLiteral("the picture load was abandoned");
        warmUp();
        return out;
    case Wait::Readable:
        break;
    }
    QByteArray payload;
    int memFd = -1;
    const bool got = readReply(h.fd, deadline, &payload, &memFd);
    if (!got || !decodeReply(payload, &out.reply) || !mapFrames(memFd, &out)) {
        if (memFd >= 0) close(memFd);
        // Dead, or talking nonsense: either way it goes. A helper that closed its socket
        // is reaped as it finishes dying; one still alive is killed.
        int status = 0;
        bool dead = false;
        for (int i = 0; i < 100 && !dead; ++i) {
            dead = waitpid(h.pid, &status, WNOHANG) == h.pid;
            if (!dead) usleep(2000);
        }
        if (!dead) {
            kill(-h.pid, SIGKILL);
            while (waitpid(h.pid, &status, 0) < 0 && errno == EINTR) {}
        }
        kill(-h.pid, SIGKILL);  // what it started, if anything is left
        close(h.fd);
        --g_running;
        out.kind = deadline.hasExpired() && !dead ? Outcome::TimedOut : Outcome::Crashed;
        out.detail =
            dead ? describeDeath(status) : QStringLiteral("the picture decoder gave no usable answer");
        out.frames.clear();
        warmUp();
        return out;
    }
    if (memFd >= 0) close(memFd);
    giveBack(h, fromWorker);
    out.kind = Outcome::Done;
    return out;
}

// ---------------------------------------------------------------- the codec calls

namespace {

// A failure of the helper itself, as the codec calls report it.
magick::Status magickStatusOf(const Outcome &o)
{
    switch (o.kind) {
    case Outcome::Abandoned:
        return magick::Status::Abandoned;
    case Outcome::Unavailable:
        return magick::Status::NoCoder;
    default:
        return magick::Status::Stopped;
    }
}

void copyFrames(const Outcome &o, QList<QImage> *frames, QList<int> *delays)
{
    frames->clear();
    delays->clear();
    for (int i = 0; i < o.frames.size(); ++i) {
        frames->append(o.frames[i]);
        delays->append(o.reply.frames[i].delayMs);
    }
}

// Runs a decoding request in a helper and hands its pictures over.
magick::Status decodeInHelper(const Request &r, magick::Decoded *out, QString *message)
{
    const Outcome o = run(r);
    if (o.kind != Outcome::Done) {
        if (message) *message = o.detail;
        return magickStatusOf(o);
    }
    if (message) *message = o.reply.message;
    const auto s = magick::Status(o.reply.status);
    if (s == magick::Status::Ok && o.frames.isEmpty()) return magick::Status::NotAPicture;
    out->facts = o.reply.facts;
    copyFrames(o, &out->frames, &out->delaysMs);
    return s;
}

}  // namespace

magick::Status helperRead(const QString &path, int page, bool allPages, magick::Decoded *out,
                          QString *message, const QString &coderHint)
{
    Request r;
    r.op = Op::Read;
    r.path = QFileInfo(path).absoluteFilePath();
    r.page = page;
    r.allPages = allPages;
    r.coderHint = coderHint;
    return decodeInHelper(r, out, message);
}

magick::Status helperReadBlob(const QByteArray &data, const QString &coderHint, magick::Decoded *out,
                              QString *message)
{
    Request r;
    r.op = Op::ReadBlob;
    r.blob = data;
    r.coderHint = coderHint;
    return decodeInHelper(r, out, message);
}

magick::Status helperPing(const QString &path, int page, magick::Facts *out, QString *message)
{
    Request r;
    r.op = Op::Ping;
    r.path = QFileInfo(path).absoluteFilePath();
    r.page = page;
    const Outcome o = run(r);
    if (o.kind != Outcome::Done) {
        if (message) *message = o.detail;
        return magickStatusOf(o);
    }
    if (message) *message = o.reply.message;
    *out = o.reply.facts;
    return magick::Status(o.reply.status);
}

FrameDecodeStatus helperAv(const QString &path, bool allFrames, int64_t maxBytes, DecodedFrames *out,
                           QString *message)
{
    Request r;
    r.op = Op::Av;
    r.path = QFileInfo(path).absoluteFilePath();
    r.allPages = allFrames;
    r.maxBytes = maxBytes;
    const Outcome o = run(r);
    if (o.kind != Outcome::Done) {
        if (message) *message = o.detail;
        if (o.kind == Outcome::Abandoned) return FrameDecodeStatus::Abandoned;
        if (o.kind == Outcome::Unavailable) return FrameDecodeStatus::NotThisFormat;
        return FrameDecodeStatus::Stopped;
    }
    if (message) *message = o.reply.message;
    const auto s = FrameDecodeStatus(o.reply.status);
    if (s == FrameDecodeStatus::Ok && o.frames.isEmpty()) return FrameDecodeStatus::Corrupt;
    out->format = o.reply.format;
    out->bitsPerPixel = o.reply.bitsPerPixel;
    copyFrames(o, &out->frames, &out->delaysMs);
    return s;
}

}  // namespace tw::decoding
