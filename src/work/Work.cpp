#include "work/Work.h"

#include "work/WorkThreads.h"

#include <QElapsedTimer>

#include <atomic>
#include <future>

namespace tarnwick {

namespace {

constexpr qint64 millisecondsBetweenReports = 100;

} // namespace

struct Work::Run
{
    std::stop_source stop;
    Progress progress;
    std::atomic<bool> isWanted = true; ///< written by the main thread only
    QElapsedTimer sinceReport; ///< the task's thread only
    std::promise<void> hasReturned;
};

void Work::Report::operator()(quint64 done, quint64 total) const
{
    QElapsedTimer& since = theRun->sinceReport;
    if (!theRun->progress || (since.isValid() && since.elapsed() < millisecondsBetweenReports))
        return;
    since.start();
    deliver([run = theRun.get(), done, total] { run->progress(done, total); });
}

void Work::Report::deliver(std::function<void()> what) const
{
    if (theRun->stop.stop_requested())
        return;
    WorkThreads::runInMainThread([run = theRun, what = std::move(what)] {
        if (run->isWanted)
            what();
    });
}

void Work::begin(AnyTask task, Progress progress)
{
    abandon();
    theRun = std::make_shared<Run>();
    theRun->progress = std::move(progress);
    WorkThreads::run([this, run = theRun, task = std::move(task)]() mutable {
        Delivery deliver = std::exchange(task, nullptr)(run->stop.get_token(), Report(run));
        run->hasReturned.set_value();
        if (!run->isWanted)
            return; // what nobody waits for is freed here
        WorkThreads::runInMainThread([this, run, deliver = std::move(deliver)] {
            if (!run->isWanted)
                return;
            theRun.reset(); // first, as the delivery may start the next work
            deliver();
        });
    });
}

void Work::requestStop()
{
    if (theRun)
        theRun->stop.request_stop();
}

void Work::abandon()
{
    requestStop();
    if (theRun)
        std::exchange(theRun, nullptr)->isWanted = false;
}

void Work::abandonAndWait()
{
    if (const std::shared_ptr<Run> run = theRun) {
        abandon();
        run->hasReturned.get_future().wait();
    }
}

} // namespace tarnwick
