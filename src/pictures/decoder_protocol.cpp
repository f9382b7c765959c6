#include "pictures/decoder_protocol.h"

#include <QDataStream>
#include <QIODevice>
#include <atomic>
#include <limits>

namespace tw::decoding {

namespace {

constexpr quint32 RequestMagic = 0x54574451;  // "TWDQ"
constexpr quint32 ReplyMagic = 0x54574452;  // "TWDR"
constexpr int32_t MaxSide = 1 << 20;
constexpr int MaxFrames = 1 << 20;

QDataStream &operator<<(QDataStream &s, const magick::Facts &f)
{
    return s << f.coder << qint32(f.width) << qint32(f.height) << qint32(f.bitsPerPixel) << qint64(f.colors)
             << f.xResolution << f.yResolution << qint32(f.pages);
}

QDataStream &operator>>(QDataStream &s, magick::Facts &f)
{
    qint32 w = 0, h = 0, bits = 0, pages = 0;
    qint64 colors = 0;
    s >> f.coder >> w >> h >> bits >> colors >> f.xResolution >> f.yResolution >> pages;
    f.width = w;
    f.height = h;
    f.bitsPerPixel = bits;
    f.colors = colors;
    f.pages = pages;
    return s;
}

struct SharedPixels {
    std::atomic<int> refs{0};
    void (*release)(void *) = nullptr;
    void *info = nullptr;
};

void dropFrame(void *p)
{
    auto *shared = static_cast<SharedPixels *>(p);
    if (shared->refs.fetch_sub(1) == 1) {
        if (shared->release) shared->release(shared->info);
        delete shared;
    }
}

}  // namespace

QByteArray encodeRequest(const Request &r)
{
    QByteArray out;
    QDataStream s(&out, QIODevice::WriteOnly);
    s.setVersion(QDataStream::Qt_6_0);
    s << RequestMagic << qint32(r.op) << r.path << qint32(r.page) << r.allPages << r.coderHint << r.blob
      << qint64(r.maxBytes);
    return out;
}

bool decodeRequest(const QByteArray &data, Request *out)
{
    QDataStream s(data);
    s.setVersion(QDataStream::Qt_6_0);
    quint32 magic = 0;
    qint32 op = 0, page = 0;
    qint64 maxBytes = 0;
    Request r;
    s >> magic >> op >> r.path >> page >> r.allPages >> r.coderHint >> r.blob >> maxBytes;
    if (s.status() != QDataStream::Ok || magic != RequestMagic) return false;
    if (op < int32_t(Op::Read) || op > int32_t(Op::Av)) return false;
    if (maxBytes < 0 || page < 0) return false;
    r.op = Op(op);
    r.page = page;
    r.maxBytes = maxBytes;
    *out = r;
    return true;
}

QByteArray encodeReply(const Reply &r)
{
    QByteArray out;
    QDataStream s(&out, QIODevice::WriteOnly);
    s.setVersion(QDataStream::Qt_6_0);
    s << ReplyMagic << qint32(r.status) << r.message << r.facts << r.format << qint32(r.bitsPerPixel)
      << qint32(r.frames.size());
    for (const FrameLayout &f : r.frames)
        s << qint32(f.width) << qint32(f.height) << qint32(f.bytesPerLine) << qint32(f.delayMs)
          << qint64(f.offset);
    s << qint64(r.pixelBytes);
    return out;
}

bool decodeReply(const QByteArray &data, Reply *out)
{
    QDataStream s(data);
    s.setVersion(QDataStream::Qt_6_0);
    quint32 magic = 0;
    qint32 status = 0, bits = 0, count = 0;
    Reply r;
    s >> magic >> status >> r.message >> r.facts >> r.format >> bits >> count;
    if (s.status() != QDataStream::Ok || magic != ReplyMagic || count < 0 || count > MaxFrames) return false;
    r.status = status;
    r.bitsPerPixel = bits;
    for (qint32 i = 0; i < count; ++i) {
        qint32 w = 0, h = 0, bpl = 0, delay = 0;
        qint64 offset = 0;
        s >> w >> h >> bpl >> delay >> offset;
        if (s.status() != QDataStream::Ok) return false;
        // Every frame is 32 bits a pixel, its lines at least as long as its width.
        if (w <= 0 || h <= 0 || w > MaxSide || h > MaxSide || bpl < int64_t(w) * 4 || bpl % 4) return false;
        if (offset < 0 || offset % 4 || offset > MaxPixelBytes) return false;
        r.frames.append(FrameLayout{w, h, bpl, std::max(delay, 0), offset});
    }
    qint64 pixelBytes = 0;
    s >> pixelBytes;
    if (s.status() != QDataStream::Ok || !s.atEnd()) return false;
    if (pixelBytes < 0 || pixelBytes > MaxPixelBytes) return false;
    // Each frame lies wholly inside the pixels, its last line to its full length.
    for (const FrameLayout &f : r.frames) {
        const int64_t end = f.offset + int64_t(f.bytesPerLine) * f.height;
        if (end > pixelBytes) return false;
    }
    r.pixelBytes = pixelBytes;
    *out = r;
    return true;
}

QList<QImage> framesOver(const uchar *base, const Reply &r, void (*release)(void *), void *releaseInfo)
{
    QList<QImage> frames;
    if (r.frames.isEmpty()) {
        if (release) release(releaseInfo);
        return frames;
    }
    auto *shared = new SharedPixels;
    shared->release = release;
    shared->info = releaseInfo;
    shared->refs = int(r.frames.size());
    for (const FrameLayout &f : r.frames)
        frames.append(QImage(base + f.offset, f.width, f.height, f.bytesPerLine, QImage::Format_ARGB32,
                             dropFrame, shared));
    return frames;
}

}  // namespace tw::decoding
