#include "export/ExportJob.h"

#include <QCoreApplication>

namespace tarnwick {

ExportJob::ExportJob(const QString& title)
    : QObject(QCoreApplication::instance())
    , theTitle(title)
{
    // Panels cannot outlive the application.
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this,
        [this] { delete this; });
}

ExportJob::~ExportJob() = default;

QList<ExportJob*> ExportJob::writing()
{
    QList<ExportJob*> jobs = QCoreApplication::instance()->findChildren<ExportJob*>(
        QString(), Qt::FindDirectChildrenOnly);
    jobs.removeIf([](const ExportJob* job) { return !job->isWriting(); });
    return jobs;
}

void ExportJob::showProgress(const QString& name)
{
    theProgress = std::make_unique<Progress>(
        tr("Export"), tr("Exporting “%1”…").arg(name), nullptr, Progress::Blocking::isNothing);
    connect(theProgress.get(), &Progress::cancelled, this, &ExportJob::cancel);
}

void ExportJob::startWriting(const Writing& task)
{
    theWork.start(
        task, [this] { finishWriting(); },
        [this](quint64 done, quint64 total) {
            if (theProgress)
                theProgress->show(done, total);
        });
}

void ExportJob::stopWriting()
{
    theWork.abandonAndWait();
}

void ExportJob::cancel()
{
    theProgress.reset();
    if (theWork.isRunning())
        theWork.requestStop();
    else
        end();
}

void ExportJob::end()
{
    theProgress.reset();
    deleteLater();
}

} // namespace tarnwick
