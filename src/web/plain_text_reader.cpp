#include "web/plain_text_reader.h"

#include <QFile>
#include <QStringDecoder>
#include <QTextCursor>
#include <QTextDocument>
#include <QThread>

namespace tw {

PlainTextJob::~PlainTextJob() { delete doc_; }

QTextDocument *PlainTextJob::takeDocument()
{
    QTextDocument *d = doc_;
    doc_ = nullptr;
    return d;
}

bool PlainTextJob::read(bool utf8)
{
    QFile f(path_);
    if (!f.open(QIODevice::ReadOnly)) return false;
    total = f.size();
    done = 0;
    delete doc_;
    doc_ = new QTextDocument;
    doc_->setUndoRedoEnabled(false);
    QTextCursor cursor(doc_);
    QStringDecoder decoder = utf8 ? QStringDecoder(QStringDecoder::Utf8) : QStringDecoder("windows-1252");
    if (!decoder.isValid()) decoder = QStringDecoder(QStringDecoder::Latin1);
    constexpr qint64 chunk = 4 << 20;
    bool first = true, pendingCR = false;
    QString piece;
    while (!f.atEnd()) {
        if (cancel) return false;
        const QByteArray bytes = f.read(chunk);
        if (bytes.isEmpty()) break;
        QString text = decoder.decode(bytes);
        if (utf8 && decoder.hasError()) return false;
        if (first && text.startsWith(QChar(0xFEFF))) text.remove(0, 1);
        first = false;
        piece.clear();
        piece.reserve(text.size());
        for (qsizetype i = 0; i < text.size(); ++i) {
            const QChar c = text.at(i);
            if (pendingCR) {
                pendingCR = false;
                if (c == u'\n') continue;  // the LF of a CR LF split between two pieces
            }
            if (c == u'\r') {
                piece += u'\n';
                pendingCR = true;
            } else if (c.unicode() == 0) {
                piece += QChar(QChar::ReplacementCharacter);
            } else {
                piece += c;
            }
        }
        cursor.insertText(piece);
        done += bytes.size();
    }
    // A file cut inside a UTF-8 sequence is no UTF-8 file.
    if (utf8 && decoder.hasError()) return false;
    return true;
}

void PlainTextJob::run(QThread *target)
{
    bool ok = read(true);
    if (!ok && !cancel && QFile::exists(path_)) ok = read(false);
    if (!ok || cancel) {
        delete doc_;
        doc_ = nullptr;
    } else {
        doc_->moveToThread(target);
    }
    finished = true;
    if (onFinished) onFinished();
}

}  // namespace tw
