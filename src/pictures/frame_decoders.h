// Decoders for the picture formats that neither Qt nor ImageMagick reads on Linux:
// FLIC animations, IFF/ILBM, GEM IMG, Microsoft Paint and QuickDraw PICT through FFmpeg's
// libavformat/libavcodec, and animated cursors (a RIFF container of icon frames).
#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QString>
#include <cstdint>

namespace tw {

struct DecodedFrames {
    QList<QImage> frames;  // Format_ARGB32
    QList<int> delaysMs;
    QString format;  // "FLIC", "IFF", "GEM", "MSP", "PICT", "ANI"
    int bitsPerPixel = 0;
};

// Stopped: the decoder process crashed, passed a limit or took too long; Abandoned: the
// user gave up waiting (Escape), or the program is closing.
enum class FrameDecodeStatus { Ok, NotThisFormat, Corrupt, TooLarge, Stopped, Abandoned };

// FFmpeg path. Only the demuxers of the formats above are accepted, so that a text file
// or a video never comes out as a picture. `maxBytes` caps the decoded frames together.
FrameDecodeStatus decodeWithAv(const QString &path, bool allFrames, int64_t maxBytes, DecodedFrames *out,
                               QString *message);

// True when the data begin as a RIFF "ACON" container.
bool looksLikeAnimatedCursor(const QByteArray &head);
// Animated cursor: every frame must decode, in the order of its sequence chunk.
// `decodeIcon` turns one icon or cursor file into a picture (null when it cannot).
using IconDecoder = QImage (*)(const QByteArray &iconFile);
FrameDecodeStatus decodeAnimatedCursor(const QByteArray &file, IconDecoder decodeIcon, int64_t maxBytes,
                                       DecodedFrames *out, QString *message);

}  // namespace tw
