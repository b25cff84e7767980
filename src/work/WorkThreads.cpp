#include "work/WorkThreads.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QThreadPool>

#include <atomic>
#include <limits>

namespace tarnwick {

namespace {

constexpr int longestWait = 2000; // milliseconds, at the program's end

std::atomic<bool> isProgramEnding = false;

/// Never destroyed, as threads that hang may live as long as the process.
QThreadPool& threads()
{
    static QThreadPool& pool = []() -> QThreadPool& {
        auto* const made = new QThreadPool;
        made->setMaxThreadCount(std::numeric_limits<int>::max());
        qAddPostRoutine([] {
            isProgramEnding = true;
            threads().waitForDone(longestWait);
        });
        return *made;
    }();
    return pool;
}

/// Lives in the main thread, and as long as threads do.
QObject& mainThread()
{
    static QObject& object = []() -> QObject& {
        auto* const made = new QObject;
        made->moveToThread(QCoreApplication::instance()->thread());
        return *made;
    }();
    return object;
}

} // namespace

void WorkThreads::run(std::function<void()> task)
{
    threads().start(std::move(task));
}

void WorkThreads::runInMainThread(std::function<void()> what)
{
    if (!isProgramEnding)
        QMetaObject::invokeMethod(&mainThread(), std::move(what), Qt::QueuedConnection);
}

} // namespace tarnwick
