// What the program and its decoder helper (tarnwick-decoder) say to each other over their
// socket. The program asks for one decode at a time; the helper answers with a status, the
// file's facts and the frames' sizes, and hands the pixels over in a memory file whose
// descriptor travels with the answer, so that no pixel is copied through the socket.
//
// Every message is a 32-bit little-endian length followed by that many bytes of QDataStream.
// Both sides check what they read: the program trusts nothing a helper says, since the
// helper has just read a file that may be hostile.
#pragma once

#include "pictures/codecs/magick_codec.h"

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QString>
#include <cstdint>

namespace tw::decoding {

enum class Op : int32_t {
    Read = 1,  // magick::read: a page or all pages of a file
    ReadBlob = 2,  // magick::readBlob: a file held in memory (an icon frame)
    Ping = 3,  // magick::ping: header facts only
    Av = 4,  // decodeWithAv: FLIC, IFF, GEM IMG, MSP, PICT through FFmpeg
};

struct Request {
    Op op = Op::Read;
    QString path;
    int32_t page = 1;
    bool allPages = false;
    QString coderHint;
    QByteArray blob;
    int64_t maxBytes = 0;  // the cap on all decoded frames together
};

struct FrameLayout {
    int32_t width = 0, height = 0, bytesPerLine = 0, delayMs = 0;
    int64_t offset = 0;  // where its pixels begin in the memory file
};

struct Reply {
    int32_t status = 0;  // magick::Status, or FrameDecodeStatus for Op::Av
    QString message;
    magick::Facts facts;
    QString format;  // the frame decoders' format name (Op::Av)
    int32_t bitsPerPixel = 0;
    QList<FrameLayout> frames;  // each at its offset in the memory file
    int64_t pixelBytes = 0;
};

// The largest message either side accepts (a request holds at most one in-memory file).
constexpr int64_t MaxMessageBytes = int64_t(256) << 20;
// The largest picture, in bytes of frames together, that is handed over.
constexpr int64_t MaxPixelBytes = int64_t(8) << 30;

QByteArray encodeRequest(const Request &r);
bool decodeRequest(const QByteArray &data, Request *out);
QByteArray encodeReply(const Reply &r);
// Checks the layout too: every frame of a sane size and wholly inside pixelBytes.
bool decodeReply(const QByteArray &data, Reply *out);

// The frames of a reply as read-only pictures over the pixels at `base` (pixelBytes long,
// copied only when a picture is changed), which stay alive until the last picture is gone:
// `release(releaseInfo)` runs then.
QList<QImage> framesOver(const uchar *base, const Reply &r, void (*release)(void *), void *releaseInfo);

}  // namespace tw::decoding
