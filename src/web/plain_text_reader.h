// Reads a plain text file into a text document on a worker thread, piece by piece, so that
// a long file shows its progress and can be stopped. UTF-8 when the whole file is valid
// UTF-8, else the 8-bit code page (Windows-1252); CR LF, LF and CR all end a line.
#pragma once

#include <QString>
#include <atomic>
#include <functional>

class QTextDocument;
class QThread;

namespace tw {

class PlainTextJob {
public:
    explicit PlainTextJob(QString path) : path_(std::move(path)) {}
    ~PlainTextJob();
    PlainTextJob(const PlainTextJob &) = delete;
    PlainTextJob &operator=(const PlainTextJob &) = delete;

    // Runs on the worker; the finished document is handed to Target's thread.
    void run(QThread *target);
    // The document read, or null when the file could not be read or the job was stopped.
    QTextDocument *takeDocument();

    std::atomic<bool> cancel{false};
    std::atomic<bool> finished{false};
    std::atomic<qint64> total{0}, done{0};
    std::function<void()> onFinished;  // called on the worker when the job ends

private:
    bool read(bool utf8);
    QString path_;
    QTextDocument *doc_ = nullptr;
};

}  // namespace tw
