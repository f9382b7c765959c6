// The program's side of the decoder helpers: a few tarnwick-decoder processes kept warm,
// each taking one request at a time. A helper that crashes, passes its limits or takes
// longer than the time allowed is killed and replaced; the caller gets a failure and the
// program goes on. While a request runs on the user-interface thread the window keeps
// painting and its timers keep running, but no key or mouse input is taken except Escape,
// which abandons the decode, and closing the window, which abandons it and then closes.
#pragma once

#include "pictures/decoder_protocol.h"
#include "pictures/frame_decoders.h"

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
