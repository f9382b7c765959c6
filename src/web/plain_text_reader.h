// Reads a plain text file on a worker thread, piece by piece, so that a long file shows its
// progress and can be stopped. UTF-8 when the whole file is valid UTF-8, else the 8-bit code
// page (Windows-1252); CR LF, LF and CR all end a line. The text is kept once, in the compact
// form the document tab's text view shows.
#pragma once

#include "web/plain_text_view.h"

#include <QString>
#include <atomic>
#include <functional>
#include <optional>

namespace tw {

class PlainTextJob {
public:
    explicit PlainTextJob(QString path) : path_(std::move(path)) {}
    PlainTextJob(const PlainTextJob &) = delete;
    PlainTextJob &operator=(const PlainTextJob &) = delete;

    // Runs on the worker.
    void run();
    // The text read, or nothing when the file could not be read or the job was stopped.
    std::optional<PlainText> takeText();

    std::atomic<bool> cancel{false};
    std::atomic<bool> finished{false};
    std::atomic<qint64> total{0}, done{0};
    std::function<void()> onFinished;  // called on the worker when the job ends

    // A pause after each 4 MB piece: lets tests see a long read on a fast machine.
    static std::atomic<int> pieceDelayMs;

private:
    bool read(bool utf8);
    QString path_;
    std::optional<PlainText> text_;
};

}  // namespace tw
