// FFmpeg's side of the frame decoders: FLIC, IFF/ILBM, GEM IMG, Microsoft Paint and PICT.
// Built into the codec module, which the program loads the first time it needs it.
#include "pictures/frame_decoders.h"

#include <QFile>
#include <QtEndian>
#include <cstring>
#include <functional>
#include <memory>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/imgutils.h>
#include <libavutil/log.h>
#include <libswscale/swscale.h>
}

namespace tw {

namespace {

struct FormatCloser {
    void operator()(AVFormatContext *c) const { avformat_close_input(&c); }
};
struct CodecCloser {
    void operator()(AVCodecContext *c) const { avcodec_free_context(&c); }
};
struct FrameCloser {
    void operator()(AVFrame *f) const { av_frame_free(&f); }
};
struct PacketCloser {
    void operator()(AVPacket *p) const { av_packet_free(&p); }
};
struct SwsCloser {
    void operator()(SwsContext *s) const { sws_freeContext(s); }
};

// Demuxers whose files are pictures. image2 is accepted only for QuickDraw PICT and GEM
// IMG, since it also claims every ordinary format by extension.
QString pictureFormatOf(const AVInputFormat *f, AVCodecID codec)
{
    const QByteArray name(f->name);
    if (name == "flic") return QStringLiteral("FLIC");
    if (name == "iff") return QStringLiteral("IFF");
    if (name == "gem_pipe") return QStringLiteral("GEM");
    if (name == "msp") return QStringLiteral("MSP");
    if (name == "qdraw_pipe") return QStringLiteral("PICT");
    if (name == "image2" || name == "image2pipe") {
        if (codec == AV_CODEC_ID_QDRAW) return QStringLiteral("PICT");
        if (codec == AV_CODEC_ID_GEM) return QStringLiteral("GEM");
    }
    return QString();
}

QImage toArgb(const AVFrame *frame, SwsContext *&sws)
{
    const int w = frame->width, h = frame->height;
    QImage img(w, h, QImage::Format_ARGB32);
    if (img.isNull()) return img;
    sws = sws_getCachedContext(sws, w, h, AVPixelFormat(frame->format), w, h, AV_PIX_FMT_BGRA, SWS_POINT,
                               nullptr, nullptr, nullptr);
    if (!sws) return QImage();
    uint8_t *dst[4] = {img.bits(), nullptr, nullptr, nullptr};
    int dstStride[4] = {int(img.bytesPerLine()), 0, 0, 0};
    sws_scale(sws, frame->data, frame->linesize, 0, h, dst, dstStride);
    return img;
}

int bitsOfPixelFormat(int fmt)
{
    switch (AVPixelFormat(fmt)) {
    case AV_PIX_FMT_MONOBLACK:
    case AV_PIX_FMT_MONOWHITE:
        return 1;
    case AV_PIX_FMT_PAL8:
    case AV_PIX_FMT_GRAY8:
        return 8;
    case AV_PIX_FMT_RGB555LE:
    case AV_PIX_FMT_RGB565LE:
        return 16;
    case AV_PIX_FMT_RGB24:
    case AV_PIX_FMT_BGR24:
        return 24;
    default:
        return 32;
    }
}

}  // namespace

FrameDecodeStatus decodeWithAv(const QString &path, bool allFrames, int64_t maxBytes, DecodedFrames *out,
                               QString *message)
{
    av_log_set_level(AV_LOG_QUIET);
    AVFormatContext *raw = nullptr;
    const QByteArray local = QFile::encodeName(path);
    if (avformat_open_input(&raw, local.constData(), nullptr, nullptr) < 0)
        return FrameDecodeStatus::NotThisFormat;
    std::unique_ptr<AVFormatContext, FormatCloser> fmt(raw);
    int stream = -1;
    for (unsigned i = 0; i < fmt->nb_streams; ++i) {
        if (fmt->streams[i]->codecpar->codec_type == AVMEDIA_TYPE_VIDEO) {
            stream = int(i);
            break;
        }
    }
    if (stream < 0) return FrameDecodeStatus::NotThisFormat;
    AVStream *st = fmt->streams[stream];
    const QString format = pictureFormatOf(fmt->iformat, st->codecpar->codec_id);
    if (format.isEmpty()) return FrameDecodeStatus::NotThisFormat;

    const AVCodec *codec = avcodec_find_decoder(st->codecpar->codec_id);
    if (!codec) return FrameDecodeStatus::NotThisFormat;
    std::unique_ptr<AVCodecContext, CodecCloser> ctx(avcodec_alloc_context3(codec));
    if (!ctx || avcodec_parameters_to_context(ctx.get(), st->codecpar) < 0) return FrameDecodeStatus::Corrupt;
    ctx->thread_count = 1;
    if (avcodec_open2(ctx.get(), codec, nullptr) < 0) return FrameDecodeStatus::Corrupt;

    double frameMs = 0;
    if (st->avg_frame_rate.num > 0 && st->avg_frame_rate.den > 0)
        frameMs = 1000.0 / av_q2d(st->avg_frame_rate);
    else if (st->r_frame_rate.num > 0 && st->r_frame_rate.den > 0)
        frameMs = 1000.0 / av_q2d(st->r_frame_rate);

    std::unique_ptr<AVPacket, PacketCloser> pkt(av_packet_alloc());
    std::unique_ptr<AVFrame, FrameCloser> frame(av_frame_alloc());
    SwsContext *swsRaw = nullptr;
    int64_t used = 0;
    bool damaged = false;
    out->frames.clear();
    out->delaysMs.clear();
    out->format = format;

    auto drain = [&]() -> FrameDecodeStatus {
        for (;;) {
            const int r = avcodec_receive_frame(ctx.get(), frame.get());
            if (r == AVERROR(EAGAIN) || r == AVERROR_EOF) return FrameDecodeStatus::Ok;
            if (r < 0) {
                damaged = true;
                return FrameDecodeStatus::Corrupt;
            }
            const int64_t bytes = int64_t(frame->width) * frame->height * 4;
            if (frame->width <= 0 || frame->height <= 0) return FrameDecodeStatus::Corrupt;
            if (used + bytes > maxBytes) return FrameDecodeStatus::TooLarge;
            QImage img = toArgb(frame.get(), swsRaw);
            if (img.isNull()) return FrameDecodeStatus::TooLarge;
            if (out->frames.isEmpty()) out->bitsPerPixel = bitsOfPixelFormat(frame->format);
            used += bytes;
            out->frames.append(img);
            out->delaysMs.append(int(frameMs + 0.5));
            av_frame_unref(frame.get());
        }
    };

    FrameDecodeStatus status = FrameDecodeStatus::Ok;
    while (status == FrameDecodeStatus::Ok) {
        if (!allFrames && !out->frames.isEmpty()) break;
        const int r = av_read_frame(fmt.get(), pkt.get());
        if (r < 0) {
            if (r != AVERROR_EOF) damaged = true;
            avcodec_send_packet(ctx.get(), nullptr);
            status = drain();
            break;
        }
        if (pkt->stream_index == stream) {
            if (avcodec_send_packet(ctx.get(), pkt.get()) < 0) damaged = true;
            else status = drain();
        }
        av_packet_unref(pkt.get());
    }
    std::unique_ptr<SwsContext, SwsCloser> sws(swsRaw);
    if (status == FrameDecodeStatus::TooLarge) {
        if (message) *message = QStringLiteral("decoded frames exceed the memory allowed");
        return status;
    }
    if (out->frames.isEmpty()) {
        if (message) *message = QStringLiteral("no frame could be decoded");
        return FrameDecodeStatus::Corrupt;
    }
    // An animation that breaks part way keeps the frames before the break; a still picture
    // with damage has nothing to keep.
    if (damaged && out->frames.size() == 1 && format != QLatin1String("FLIC"))
        return FrameDecodeStatus::Corrupt;
    return FrameDecodeStatus::Ok;
}

}  // namespace tw
