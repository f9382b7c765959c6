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
// ImageMagick's own clock, in seconds, checked inside its readers.
constexpr MagickSizeType MagickTimeLimit = 15;
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

// Lays the frames out one after the other in a new memory file; -1 when it cannot.
int packFrames(const QList<QImage> &frames, const QList<int> &delays, Reply *reply)
{
    QList<QImage> argb;
    for (const QImage &f : frames) {
        const QImage a = f.format() == QImage::Format_ARGB32 ? f : f.convertToFormat(QImage::Format_ARGB32);
        if (a.isNull()) return -1;
        argb.append(a);
        reply->frames.append(FrameLayout{a.width(), a.height(), int32_t(a.bytesPerLine()),
                                         int32_t(delays.value(reply->frames.size()))});
    }
    const int64_t total = packedBytes(reply->frames);
    if (total <= 0 || total > MaxPixelBytes) return -1;
    const int fd = memfd_create("tarnwick-pixels", MFD_CLOEXEC);
    if (fd < 0) return -1;
    if (ftruncate(fd, off_t(total)) != 0) {
        close(fd);
        return -1;
    }
    void *map = mmap(nullptr, size_t(total), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_POPULATE, fd, 0);
    if (map == MAP_FAILED) {
        close(fd);
        return -1;
    }
    uchar *p = static_cast<uchar *>(map);
    for (const QImage &a : argb) {
        std::memcpy(p, a.constBits(), size_t(a.sizeInBytes()));
        p += a.sizeInBytes();
    }
    munmap(map, size_t(total));
    reply->pixelBytes = total;
    return fd;
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
    const int fd = packFrames(frames, delays, reply);
    if (fd < 0) {
        reply->frames.clear();
        reply->pixelBytes = 0;
        reply->status =
            req.op == Op::Av ? int32_t(FrameDecodeStatus::TooLarge) : int32_t(magick::Status::TooLarge);
        reply->message = QStringLiteral("no memory to hand the picture over");
    }
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
    setLimit(RLIMIT_AS, AddressSpaceLimit, AddressSpaceLimit);

    const CodecTable *codecs = loadCodecs();
    if (!codecs) return 2;
    codecs->initialise();
    // ImageMagick's limits, inside it: its clock, the pages of one file, and no pixel cache
    // on disk, so that all pages of a file together stay within its memory caps and a helper
    // that is killed leaves no temporary files. (Memory, map, area, width and height keep
    // the system policy's caps, which only go lower.)
    SetMagickResourceLimit(DiskResource, 0);
    SetMagickResourceLimit(TimeResource, MagickTimeLimit);
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
            memFd = answer(codecs, req, &reply);
        }
        const bool sent = sendMessage(fd, encodeReply(reply), memFd);
        if (memFd >= 0) close(memFd);
        if (!sent) return 0;
    }
    return 0;
}
