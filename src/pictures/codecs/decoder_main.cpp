// tarnwick-decoder: the helper process that decodes pictures with ImageMagick and FFmpeg
// for the program. Their readers have crashed, looped and eaten memory on damaged files,
// so they run here, under limits on memory and CPU time, and never in the program itself.
//
// The program starts a few of these ahead of need and talks to each over the socket that
// is its standard input: one request, one reply, for as long as the program lives. The
// codecs come from the codec module beside this executable (libtw_codecs.so). A helper
// that crashes or passes a limit simply dies; the program notices, and starts another.
#include "pictures/codecs/codec_table.h"
#include "pictures/decoder_protocol.h"

#include <magick/MagickCore.h>

#include <dlfcn.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <string>

using namespace tw;
using namespace tw::decoding;

namespace {

// Memory the whole helper may map: ImageMagick's largest picture in its 16-bit pixel cache,
// its copy handed over, and the libraries.
constexpr rlim_t AddressSpaceLimit = rlim_t(3) << 30;
// CPU seconds one request may use (the program stops waiting well before).
constexpr rlim_t CpuSecondsPerRequest = 20;
// Frames or pages one file may hold.
constexpr MagickSizeType MagickListLength = 10000;

const CodecTable *loadCodecs()
{
    char self[4096];
    const ssize_t n = readlink("/proc/self/exe", self, sizeof self - 1);
    if (n <= 0) return nullptr;
    self[n] = 0;
    std::string dir(self);
    dir = dir.substr(0, dir.rfind('/'));
    void *lib = dlopen((dir + "/libtw_codecs.so").c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!lib) {
        std::fprintf(stderr, "tarnwick-decoder: %s\n", dlerror());
        return nullptr;
    }
    using Entry = const CodecTable *(*)();
    auto entry = reinterpret_cast<Entry>(dlsym(lib, CodecTableSymbol));
    const CodecTable *t = entry ? entry() : nullptr;
    return t && t->version == CodecTableVersion ? t : nullptr;
}

bool readFully(int fd, char *p, size_t n)
{
    while (n > 0) {
        const ssize_t r = read(fd, p, n);
        if (r == 0) return false;
        if (r < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        p += r;
        n -= size_t(r);
    }
    return true;
}

bool readMessage(int fd, QByteArray *out)
{
    unsigned char len[4];
    if (!readFully(fd, reinterpret_cast<char *>(len), 4)) return false;
    const uint32_t n =
        uint32_t(len[0]) | uint32_t(len[1]) << 8 | uint32_t(len[2]) << 16 | uint32_t(len[3]) << 24;
    if (n > MaxMessageBytes) return false;
    out->resize(qsizetype(n));
    return readFully(fd, out->data(), n);
}

// Sends the reply, with the memory file of the pixels attached to its first byte.
bool sendMessage(int fd, const QByteArray &payload, int memFd)
{
    const uint32_t n = uint32_t(payload.size());
    QByteArray all(4, 0);
    all[0] = char(n & 0xFF);
    all[1] = char((n >> 8) & 0xFF);
    all[2] = char((n >> 16) & 0xFF);
    all[3] = char((n >> 24) & 0xFF);
    all += payload;
    iovec iov{all.data(), size_t(all.size())};
    msghdr msg{};
    msg.msg_iov = &iov;
    msg.msg_iovlen = 1;
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))];
    if (memFd >= 0) {
        msg.msg_control = control;
        msg.msg_controllen = sizeof control;
        cmsghdr *c = CMSG_FIRSTHDR(&msg);
        c->cmsg_level = SOL_SOCKET;
        c->cmsg_type = SCM_RIGHTS;
        c->cmsg_len = CMSG_LEN(sizeof(int));
        std::memcpy(CMSG_DATA(c), &memFd, sizeof(int));
    }
    ssize_t sent;
    do sent = sendmsg(fd, &msg, MSG_NOSIGNAL);
    while (sent < 0 && errno == EINTR);
    if (sent < 0) return false;
    const char *p = all.constData() + sent;
    size_t left = size_t(all.size()) - size_t(sent);
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

// The memory of one request's frames: a memory file the decoders write their pixels into
// directly (ImageMagick's frames, through the codec's pixel allocator), later handed to the
// program as it is. It is sized to the cap on all frames together; only what is written
// takes memory, and a request that wants more than the cap fails for want of memory.
class PixelArena {
public:
    bool open(int64_t capacity)
    {
        close();
        fd_ = memfd_create("tarnwick-pixels", MFD_CLOEXEC);
        if (fd_ < 0) return false;
        if (ftruncate(fd_, off_t(capacity)) != 0) {
            close();
            return false;
        }
        void *m = mmap(nullptr, size_t(capacity), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_NORESERVE, fd_, 0);
        if (m == MAP_FAILED) {
            close();
            return false;
        }
        base_ = static_cast<uchar *>(m);
        capacity_ = capacity;
        used_ = 0;
        return true;
    }
    void close()
    {
        if (base_) munmap(base_, size_t(capacity_));
        if (fd_ >= 0) ::close(fd_);
        base_ = nullptr;
        fd_ = -1;
        capacity_ = used_ = 0;
    }
    uchar *allocate(qsizetype bytes)
    {
        const int64_t at = (used_ + 63) & ~int64_t(63);
        if (!base_ || bytes <= 0 || at + bytes > capacity_) return nullptr;
        used_ = at + bytes;
        // The pages at once, in one call, rather than one fault at a time as they are written.
        const uintptr_t page = uintptr_t(sysconf(_SC_PAGESIZE));
        const uintptr_t from = uintptr_t(base_ + at) & ~(page - 1);
        madvise(reinterpret_cast<void *>(from), size_t(uintptr_t(base_ + used_) - from), MADV_POPULATE_WRITE);
        return base_ + at;
    }
    // Where a frame's pixels lie in the file: those decoded here as they are, others copied in.
    bool place(const QImage &frame, FrameLayout *layout)
    {
        const uchar *bits = frame.constBits();
        const int64_t size = frame.sizeInBytes();
        if (base_ && bits >= base_ && bits + size <= base_ + used_) {
            layout->offset = bits - base_;
            return true;
        }
        uchar *to = allocate(size);
        if (!to) return false;
        std::memcpy(to, bits, size_t(size));
        layout->offset = to - base_;
        return true;
    }
    // The file cut to what was written, for the reply; -1 when there is none.
    int handOver(int64_t *bytes)
    {
        if (fd_ < 0 || used_ == 0) return -1;
        ftruncate(fd_, off_t(used_));
        *bytes = used_;
        return fd_;
    }

private:
    int fd_ = -1;
    uchar *base_ = nullptr;
    int64_t capacity_ = 0, used_ = 0;
};

PixelArena g_arena;

void keepNothing(void *) {}

uchar *arenaPixels(qsizetype bytes, QImageCleanupFunction *release, void **info)
{
    // The arena goes as a whole after the reply; a frame dropped before that leaves a gap.
    *release = keepNothing;
    *info = nullptr;
    return g_arena.allocate(bytes);
}

// Lays the frames out in the arena (where the decoder did not already put them).
bool placeFrames(const QList<QImage> &frames, const QList<int> &delays, Reply *reply)
{
    for (const QImage &f : frames) {
        const QImage a = f.format() == QImage::Format_ARGB32 ? f : f.convertToFormat(QImage::Format_ARGB32);
        if (a.isNull()) return false;
        FrameLayout layout{a.width(), a.height(), int32_t(a.bytesPerLine()),
                           int32_t(delays.value(reply->frames.size())), 0};
        if (!g_arena.place(a, &layout)) return false;
        reply->frames.append(layout);
    }
    return true;
}

// One request: the codec's answer and, when there are frames, the memory file holding them.
int answer(const CodecTable *codecs, const Request &req, Reply *reply)
{
    QList<QImage> frames;
    QList<int> delays;
    switch (req.op) {
    case Op::Read:
    case Op::ReadBlob: {
        magick::Decoded d;
        const magick::Status s = req.op == Op::Read
            ? codecs->read(req.path, req.page, req.allPages, &d, &reply->message, req.coderHint)
            : codecs->readBlob(req.blob, req.coderHint, &d, &reply->message);
        reply->status = int32_t(s);
        reply->facts = d.facts;
        if (s == magick::Status::Ok) {
            // All pages together stay within the cap, not each page alone.
            int64_t total = 0;
            for (const QImage &f : d.frames) total += int64_t(f.width()) * f.height() * 4;
            const int64_t cap = req.maxBytes > 0 ? req.maxBytes : codecs->areaLimit() * 4;
            if (total > cap) {
                reply->status = int32_t(magick::Status::TooLarge);
                reply->message = QStringLiteral("the pages together exceed the memory allowed");
                return -1;
            }
            frames = d.frames;
            delays = d.delaysMs;
        }
        break;
    }
    case Op::Ping: {
        magick::Facts f;
        reply->status = int32_t(codecs->ping(req.path, req.page, &f, &reply->message));
        reply->facts = f;
        return -1;
    }
    case Op::Av: {
        DecodedFrames d;
        const FrameDecodeStatus s =
            codecs->decodeWithAv(req.path, req.allPages, req.maxBytes, &d, &reply->message);
        reply->status = int32_t(s);
        reply->format = d.format;
        reply->bitsPerPixel = d.bitsPerPixel;
        if (s == FrameDecodeStatus::Ok) {
            frames = d.frames;
            delays = d.delaysMs;
        }
        break;
    }
    }
    if (frames.isEmpty()) return -1;
    int64_t bytes = 0;
    const int fd = placeFrames(frames, delays, reply) ? g_arena.handOver(&bytes) : -1;
    if (fd < 0) {
        reply->frames.clear();
        reply->pixelBytes = 0;
        reply->status =
            req.op == Op::Av ? int32_t(FrameDecodeStatus::TooLarge) : int32_t(magick::Status::TooLarge);
        reply->message = QStringLiteral("no memory to hand the picture over");
        return -1;
    }
    reply->pixelBytes = bytes;
    return fd;
}

void setLimit(int resource, rlim_t soft, rlim_t hard)
{
    rlimit l{soft, hard};
    setrlimit(resource, &l);
}

}  // namespace

int main()
{
    // The helper goes with the program, whatever way the program ends.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() == 1) return 0;
    setLimit(RLIMIT_CORE, 0, 0);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    // (A build with AddressSanitizer or ThreadSanitizer reserves terabytes of address space
    // for its shadow memory, so there the limit would stop the helper before it starts.)
    setLimit(RLIMIT_AS, AddressSpaceLimit, AddressSpaceLimit);
#endif

    const CodecTable *codecs = loadCodecs();
    if (!codecs) return 2;
    codecs->initialise();
    codecs->setPixelAllocator(arenaPixels);
    // ImageMagick's limits, inside it: the pages of one file, and no pixel cache on disk, so
    // that all pages of a file together stay within its memory caps and a helper that is
    // killed leaves no temporary files. (Memory, map, area, width and height keep the system
    // policy's caps, which only go lower.) Its time limit counts from the first picture the
    // process ever decoded, not per picture, so it would end a warm helper's work after a
    // while: the program's clock and the CPU limit above stand in for it.
    SetMagickResourceLimit(DiskResource, 0);
    SetMagickResourceLimit(ListLengthResource, MagickListLength);

    const int fd = STDIN_FILENO;
    QByteArray in;
    while (readMessage(fd, &in)) {
        Request req;
        Reply reply;
        int memFd = -1;
        if (!decodeRequest(in, &req)) {
            reply.status = int32_t(magick::Status::NotAPicture);
            reply.message = QStringLiteral("the decoder could not read the request");
        } else {
            // CPU time for this request on top of what earlier ones used.
            rusage used{};
            getrusage(RUSAGE_SELF, &used);
            const rlim_t soFar = rlim_t(used.ru_utime.tv_sec + used.ru_stime.tv_sec + 1);
            setLimit(RLIMIT_CPU, soFar + CpuSecondsPerRequest, RLIM_INFINITY);
            // Room for all frames of the request together, and a little for their alignment.
            const int64_t cap = req.maxBytes > 0 ? req.maxBytes : codecs->areaLimit() * 4;
            if (g_arena.open(cap + (int64_t(1) << 20))) memFd = answer(codecs, req, &reply);
            else reply.status = int32_t(magick::Status::TooLarge);
        }
        const bool sent = sendMessage(fd, encodeReply(reply), memFd);
        g_arena.close();  // the program has its own hold on the file now
        if (!sent) return 0;
    }
    return 0;
}
