#include "pictures/frame_decoders.h"

#include <QFile>
#include <QtEndian>
#include <cstring>
#include <functional>
#include <memory>

namespace tw {

bool looksLikeAnimatedCursor(const QByteArray &head)
{
    return head.size() >= 12 && head.startsWith("RIFF") && head.mid(8, 4) == "ACON";
}

FrameDecodeStatus decodeAnimatedCursor(const QByteArray &file, IconDecoder decodeIcon, int64_t maxBytes,
                                       DecodedFrames *out, QString *message)
{
    if (!looksLikeAnimatedCursor(file)) return FrameDecodeStatus::NotThisFormat;
    auto u32 = [&](qsizetype at) -> uint32_t {
        return qFromLittleEndian<uint32_t>(reinterpret_cast<const uchar *>(file.constData() + at));
    };
    const qsizetype riffEnd = std::min<qsizetype>(file.size(), qsizetype(u32(4)) + 8);
    QList<QByteArray> icons;
    QList<uint32_t> rates, sequence;
    uint32_t defaultRate = 10, steps = 0;
    bool haveHeader = false;
    auto fail = [&](const char *why) {
        if (message) *message = QString::fromLatin1(why);
        return FrameDecodeStatus::Corrupt;
    };

    // Walks the chunks of one level; LIST "fram" holds the icons.
    std::function<bool(qsizetype, qsizetype)> walk = [&](qsizetype at, qsizetype end) -> bool {
        while (at + 8 <= end) {
            const QByteArray id = file.mid(at, 4);
            const qsizetype size = qsizetype(u32(at + 4));
            const qsizetype body = at + 8;
            if (size < 0 || body + size > end) return false;
            if (id == "anih") {
                if (size < 36) return false;
                steps = u32(body + 8);
                defaultRate = u32(body + 28);
                haveHeader = true;
            } else if (id == "rate") {
                for (qsizetype i = 0; i + 4 <= size; i += 4) rates.append(u32(body + i));
            } else if (id == "seq ") {
                for (qsizetype i = 0; i + 4 <= size; i += 4) sequence.append(u32(body + i));
            } else if (id == "LIST") {
                if (size < 4) return false;
                if (file.mid(body, 4) == "fram") {
                    qsizetype p = body + 4;
                    const qsizetype listEnd = body + size;
                    while (p + 8 <= listEnd) {
                        const qsizetype isize = qsizetype(u32(p + 4));
                        if (isize < 0 || p + 8 + isize > listEnd) return false;
                        if (file.mid(p, 4) == "icon") icons.append(file.mid(p + 8, isize));
                        p += 8 + isize + (isize & 1);
                    }
                }
            }
            at = body + size + (size & 1);
        }
        return true;
    };
    if (!walk(12, riffEnd)) return fail("damaged chunk in the animated cursor");
    if (!haveHeader) return fail("animated cursor without a header");
    if (icons.isEmpty()) return fail("animated cursor without frames");

    QList<QImage> decoded;
    int64_t used = 0;
    for (const QByteArray &icon : icons) {
        QImage img = decodeIcon(icon);
        if (img.isNull()) return fail("a frame of the animated cursor cannot be decoded");
        used += int64_t(img.width()) * img.height() * 4;
        if (used > maxBytes) return FrameDecodeStatus::TooLarge;
        decoded.append(img.convertToFormat(QImage::Format_ARGB32));
    }
    QList<int> order;
    if (!sequence.isEmpty()) {
        for (uint32_t s : sequence) {
            if (s >= uint32_t(decoded.size())) return fail("sequence names a missing frame");
            order.append(int(s));
        }
    } else {
        for (int i = 0; i < decoded.size(); ++i) order.append(i);
    }
    Q_UNUSED(steps);
    out->frames.clear();
    out->delaysMs.clear();
    for (int i = 0; i < order.size(); ++i) {
        out->frames.append(decoded[order[i]]);
        const uint32_t jiffies = i < rates.size() ? rates[i] : defaultRate;
        out->delaysMs.append(int(std::min<uint32_t>(jiffies, 6000) * 1000 / 60));
    }
    out->format = QStringLiteral("ANI");
    out->bitsPerPixel = 32;
    return FrameDecodeStatus::Ok;
}

}  // namespace tw
