#include "frame/BackgroundWork.h"

#include <QThread>

namespace tarnwick {

BackgroundWork::BackgroundWork(Work work, QObject* parent)
    : QObject(parent)
    , theThread(QThread::create([this, work = std::move(work)] {
        work([this](quint64 done, quint64 total) { return goOn(done, total); });
    }))
{
    connect(theThread.get(), &QThread::finished, this, &BackgroundWork::finished);
}

BackgroundWork::~BackgroundWork()
{
    cancel();
    theThread->wait();
}

void BackgroundWork::start()
{
    theThread->start();
}

bool BackgroundWork::goOn(quint64 done, quint64 total)
{
    if (total > 0) {
        const int permille
            = static_cast<int>(1000.0 * static_cast<double>(done) / static_cast<double>(total));
        // A signal for every slice would flood the event loop on a fast disk.
        if (permille > thePermille) {
            thePermille = permille;
            emit progressed(permille);
        }
    }
    return !theCancel;
}

} // namespace tarnwick
