// The picture editors' pixel work, off the interface thread. An editor keeps what Current is
// as a chain of steps from Original; a lane runs the latest chain it was given on a worker
// thread and hands the result back to the interface thread. A newer chain makes the older
// one stale: its work stops at the next step and its result, should it still arrive, is
// dropped. Each lane remembers the pictures of the chains it ran (as far as its memory
// budget allows), so a chain that only adds a step to one run before costs that one step.
#pragma once

#include <QImage>
#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

class QObject;

namespace tw {

// One step: what it does to a picture shown at `scale` of the file's size, and a key naming
// it. Two steps with the same key give the same picture from the same picture.
struct EditStep {
    QString key;
    std::function<QImage(const QImage &, double scale)> run;
};
using EditChain = std::vector<EditStep>;

QStringList keysOf(const EditChain &chain);

class EditLane {
public:
    // `done` is called on `receiver`'s thread with the result of the latest request only.
    EditLane(QObject *receiver, std::function<void(quint64 generation, const QImage &result)> done,
             qint64 memoryBudget);
    ~EditLane();
    EditLane(const EditLane &) = delete;
    EditLane &operator=(const EditLane &) = delete;

    // The picture every chain starts from; forgets what was remembered and stops the work.
    void setSource(const QImage &source, double scale);
    // Runs `chain` from the source; returns the request's generation.
    quint64 request(const EditChain &chain);
    // Makes every request stale.
    void cancel();
    // Remembers `picture` as the result of the chain named by `keys`.
    void seed(const QStringList &keys, const QImage &picture);
    // Blocks until the latest request's result is there and returns it (the source when
    // nothing was asked).
    QImage wait();
    // A request is waiting or running.
    bool busy() const;

private:
    struct State;
    std::shared_ptr<State> s_;
};

}  // namespace tw
