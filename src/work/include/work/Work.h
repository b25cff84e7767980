#pragma once

#include <QtGlobal>

#include <functional>
#include <memory>
#include <stop_token>
#include <type_traits>
#include <utility>

namespace tarnwick {

/// One piece of work that would hold up the event loop: done in a thread, values in, its result
/// back through the event loop.
///
/// The task runs in the thread. It touches nothing but what it holds, looks at its stop token every
/// few milliseconds, and throws nothing. What it leads to is called in the main thread, where this
/// object lives: never from within start(), and never once the work has been given up, so that it
/// may use whatever owns this object. Destroying the work, or starting another one, gives it up.
class Work
{
    struct Run;

public:
    /// How a task speaks to the main thread; called from the task's thread.
    class Report
    {
    public:
        /// How far the task is; may be called often, since few of the calls are passed on.
        /// @param total 0 while it is unknown.
        void operator()(quint64 done, quint64 total) const;
        /// Does something in the main thread, in the order of the calls and before the end of the
        /// work is told.
        void deliver(std::function<void()> what) const;

    private:
        friend class Work;
        explicit Report(std::shared_ptr<Run> run)
            : theRun(std::move(run))
        {
        }
        std::shared_ptr<Run> theRun;
    };
    /// Hears how far the task is, at most ten times a second.
    using Progress = std::function<void(quint64 done, quint64 total)>;

    Work() = default;
    ~Work() { abandon(); }
    Work(const Work&) = delete;
    Work& operator=(const Work&) = delete;

    /// Gives up what is running and starts a task.
    /// @param task called with a std::stop_token and a Report, with the token alone, or without
    ///   anything.
    /// @param done called with what the task has returned.
    template<class Task, class Done> void start(Task task, Done done, Progress progress = {})
    {
        begin(
            [task = std::move(task), done = std::move(done)](
                const std::stop_token& stop, const Report& report) mutable -> Delivery {
                if constexpr (std::is_void_v<decltype(call(task, stop, report))>) {
                    call(task, stop, report);
                    return done;
                } else {
                    using Result = decltype(call(task, stop, report));
                    const auto result = std::make_shared<Result>(call(task, stop, report));
                    return [result, done]() mutable { done(std::move(*result)); };
                }
            },
            std::move(progress));
    }

    /// Started, not given up, and its end not told yet.
    bool isRunning() const { return theRun != nullptr; }
    /// Asks the task to stop; what it comes back with then is still told.
    void requestStop();
    /// Asks the task to stop and tells nothing more of it. Does not wait.
    void abandon();
    /// The same, and waits until the task has returned: for whoever owns what the task uses.
    void abandonAndWait();

private:
    using Delivery = std::function<void()>;
    using AnyTask = std::function<Delivery(const std::stop_token&, const Report&)>;

    template<class Task>
    static auto call(Task& task, const std::stop_token& stop, const Report& report)
    {
        if constexpr (std::is_invocable_v<Task&, const std::stop_token&, const Report&>)
            return task(stop, report);
        else if constexpr (std::is_invocable_v<Task&, const std::stop_token&>)
            return task(stop);
        else
            return task();
    }
    void begin(AnyTask task, Progress progress);

    std::shared_ptr<Run> theRun; ///< null while nothing runs
};

} // namespace tarnwick
