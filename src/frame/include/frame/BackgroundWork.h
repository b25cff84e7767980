#pragma once

#include <QObject>

#include <atomic>
#include <functional>
#include <memory>

class QThread;

namespace tarnwick {

/// Work that would hold up the event loop, done by a thread of its own, with progress and cancel.
///
/// Lives in the main thread; its signals arrive there. Destroying it cancels the work and waits for
/// the step that it is in.
class BackgroundWork : public QObject
{
    Q_OBJECT

public:
    /// Told by the work how far it is. @returns whether to go on: false once cancelled.
    using Progress = std::function<bool(quint64 done, quint64 total)>;
    using Work = std::function<void(const Progress& progress)>;

    /// @param work touches nothing that the main thread uses before finished().
    explicit BackgroundWork(Work work, QObject* parent = nullptr);
    ~BackgroundWork() override;

    void start();
    void cancel() { theCancel = true; }
    bool isCancelled() const { return theCancel; }

signals:
    /// @param permille of the work, growing; not emitted while the total is 0.
    void progressed(int permille);
    /// The work has returned, cancelled or not. Emitted once.
    void finished();

private:
    bool goOn(quint64 done, quint64 total);

    std::unique_ptr<QThread> theThread;
    std::atomic<bool> theCancel = false;
    int thePermille = -1; // the thread's own
};

} // namespace tarnwick
