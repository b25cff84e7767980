#include "frame/BackgroundJob.h"

#include <QElapsedTimer>
#include <QMetaObject>

namespace tarnwick {

namespace {
constexpr qint64 millisecondsBetweenReports = 100;
}

void BackgroundJob::start(Work work, std::function<void(int done)> progressed)
{
    cancel();
    theReceiver = std::make_unique<QObject>();
    QObject* receiver = theReceiver.get();
    theThread = std::jthread([this, receiver, work = std::move(work),
                                 progressed = std::move(progressed)](const std::stop_token& stop) {
        QElapsedTimer sinceReport;
        sinceReport.start();
        const Report report = [&](int done) {
            if (!progressed || sinceReport.elapsed() < millisecondsBetweenReports)
                return;
            sinceReport.restart();
            QMetaObject::invokeMethod(
                receiver, [progressed, done] { progressed(done); }, Qt::QueuedConnection);
        };
        const Delivery deliver = work(stop, report);
        if (stop.stop_requested())
            return;
        QMetaObject::invokeMethod(
            receiver,
            [this, deliver] {
                // The delivery may start the next work, so this one must be over before.
                theReceiver.release()->deleteLater();
                deliver();
            },
            Qt::QueuedConnection);
    });
}

void BackgroundJob::cancel()
{
    if (theThread.joinable()) {
        theThread.request_stop();
        theThread.join();
    }
    theReceiver.reset();
}

} // namespace tarnwick
