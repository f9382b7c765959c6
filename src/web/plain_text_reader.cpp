#include "web/plain_text_reader.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>
#include <QThread>
#include <new>

namespace tw {

namespace {
// Whether the bytes end inside a UTF-8 sequence: a lead byte in the last three whose sequence
// needs more bytes than follow it.
bool cutSequence(const QByteArray &bytes)
{
    for (qsizetype back = 1; back <= 3 && back <= bytes.size(); ++back) {
        const uchar c = uchar(bytes.at(bytes.size() - back));
        if ((c & 0xC0) == 0x80) continue;  // a continuation byte: look further back
        const int need = c >= 0xF0 ? 4 : c >= 0xE0 ? 3 : c >= 0xC0 ? 2 : 1;
        return need > back;
    }
    return false;
}
}  // namespace

std::atomic<int> PlainTextJob::pieceDelayMs{0};

std::optional<PlainText> PlainTextJob::takeText()
{
    std::optional<PlainText> t = std::move(text_);
    text_.reset();
    return t;
}

bool PlainTextJob::read(bool utf8)
{
    // Only a regular file: a pipe or a device named .TXT could block the read for ever.
    if (!QFileInfo(path_).isFile()) return false;
    QFile f(path_);
    if (!f.open(QIODevice::ReadOnly)) return false;
    total = f.size();
    done = 0;
    if (!text_) text_.emplace();
    text_->clear();
    // Neither decoding gives more characters than the file has bytes.
    text_->reserve(f.size());
    QStringDecoder decoder = utf8 ? QStringDecoder(QStringDecoder::Utf8) : QStringDecoder("windows-1252");
    if (!decoder.isValid()) decoder = QStringDecoder(QStringDecoder::Latin1);
    constexpr qint64 chunk = 4 << 20;
    bool first = true;
    QByteArray bytes;
    QString piece;
    while (!f.atEnd()) {
        if (cancel) return false;
        bytes.resize(chunk);
        const qint64 got = f.read(bytes.data(), chunk);
        if (got <= 0) {
            bytes.clear();
            break;
        }
        bytes.resize(got);
        piece.resize(decoder.requiredSpace(got));
        QChar *end = decoder.appendToBuffer(piece.data(), bytes);
        if (utf8 && decoder.hasError()) return false;
        QStringView text(piece.constData(), end - piece.constData());
        if (first && text.startsWith(QChar(0xFEFF))) text = text.mid(1);
        first = false;
        text_->append(text);
        done += got;
        if (const int ms = pieceDelayMs.load()) QThread::msleep(ms);
    }
    // A file cut inside a UTF-8 sequence is no UTF-8 file.
    if (utf8 && cutSequence(bytes)) return false;
    return true;
}

void PlainTextJob::run()
{
    bool ok = false;
    try {
        ok = read(true);
        if (!ok && !cancel && QFile::exists(path_)) ok = read(false);
    } catch (const std::bad_alloc &) {
        // A file larger than the memory can hold: the read fails, the former text stays.
        ok = false;
    }
    if (!ok || cancel) text_.reset();
    finished = true;
    if (onFinished) onFinished();
}

}  // namespace tw
