// The program's side of the decoder helpers: a few tarnwick-decoder processes kept warm,
// each taking one request at a time. A helper that crashes, passes its limits or takes
// longer than the time allowed is killed and replaced; the caller gets a failure and the
// program goes on. While a request runs on the user-interface thread the window keeps
// painting and its timers keep running, but no key or mouse input is taken except Escape,
// which abandons the decode, and closing the window, which abandons it and then closes.
//
// Requests may come from several threads at once, each with a helper of its own. A thread
// other than the user-interface thread (a worker making thumbnails) blocks on its helper
// with the same time allowed and the same handling of a crash or a limit, and touches no
// widget; at most workerHelperLimit() of those hold a helper at once, the others wait for
// one to come free. The user-interface thread never waits for a worker's helper.
#pragma once

#include "pictures/decoder_protocol.h"
#include "pictures/frame_decoders.h"

#include <atomic>

namespace tw::decoding {

struct Outcome {
    enum Kind {
        Done,  // the helper answered: reply and frames hold its answer
        Crashed,  // the helper died (a crash, or a limit on memory or CPU time)
        TimedOut,  // the helper took longer than the time allowed and was killed
        Abandoned,  // Escape, or the program closing, ended the wait
        Unavailable,  // no helper could be started (detail says why)
    };
    Kind kind = Unavailable;
    Reply reply;
    QList<QImage> frames;
    QString detail;  // what went wrong, for the failures
};

// Runs one request in a helper.
Outcome run(const Request &request);

// Starts the helpers ahead of need (cheap; returns at once).
void warmUp();

// Benchmarks and fuzzing decode in this process instead, through the codec module.
void setInProcess(bool inProcess);
bool inProcess();

// The time a helper is given for one request, in milliseconds.
void setTimeoutMs(int ms);
int timeoutMs();

// Helpers started since the program started (the warm ones and the replacements).
int helpersStarted();
// Helpers running now, idle or busy.
int helpersRunning();
// Helpers working on a request now.
int helpersBusy();

// The most helpers that threads other than the user-interface thread hold at once (the
// machine's core count, at least 2, unless set; 0 sets it back to that).
void setWorkerHelperLimit(int helpers);
int workerHelperLimit();

// While one is in scope, the requests of this thread end as Abandoned as soon as *flag turns
// true, its helper killed: a worker whose work was given up does not wait for the decode's
// end. Not for the user-interface thread, whose waits end by Escape.
class CancelScope {
public:
    explicit CancelScope(const std::atomic<bool> *flag);
    ~CancelScope();
    CancelScope(const CancelScope &) = delete;
    CancelScope &operator=(const CancelScope &) = delete;

private:
    const std::atomic<bool> *previous_;
};

// The decoding calls of the codec module, made in a helper. A helper that fails gives
// Status::Stopped (FrameDecodeStatus::Stopped), an abandoned wait Status::Abandoned.
magick::Status helperRead(const QString &path, int page, bool allPages, magick::Decoded *out,
                          QString *message, const QString &coderHint);
magick::Status helperReadBlob(const QByteArray &data, const QString &coderHint, magick::Decoded *out,
                              QString *message);
magick::Status helperPing(const QString &path, int page, magick::Facts *out, QString *message);
FrameDecodeStatus helperAv(const QString &path, bool allFrames, int64_t maxBytes, DecodedFrames *out,
                           QString *message);

// Where the helper executable is looked for, and whether it was found.
QString helperPath();

}  // namespace tw::decoding
