#pragma once

#include <QObject>

#include <functional>
#include <memory>
#include <stop_token>
#include <thread>

namespace tarnwick {

/// One piece of work in a thread of its own: values in, a result back through the event loop.
///
/// Destroying the job or starting it anew gives running work up: it is asked to stop, waited for
/// (work looks at its stop token every few milliseconds), and nothing of it is delivered any more.
/// Main thread only.
class BackgroundJob
{
public:
    /// What is to happen in the main thread when the work is done.
    using Delivery = std::function<void()>;
    /// Tells the main thread how far the work is; safe to call often, from the work's thread.
    using Report = std::function<void(int done)>;
    /// The work. It runs in the other thread and touches nothing but the values that it holds.
    using Work = std::function<Delivery(const std::stop_token& stop, const Report& report)>;

    BackgroundJob() = default;
    ~BackgroundJob() { cancel(); }
    Q_DISABLE_COPY_MOVE(BackgroundJob)

    /// @param progressed called in the main thread, at most ten times a second; may be empty.
    void start(Work work, std::function<void(int done)> progressed = {});
    void cancel();
    bool isRunning() const { return theReceiver != nullptr; }

private:
    std::unique_ptr<QObject> theReceiver; // lives as long as results are wanted
    std::jthread theThread;
};

} // namespace tarnwick
