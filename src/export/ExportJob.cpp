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
    theProgress = std::make_unique<ExportProgress>(tr("Exporting “%1”…").arg(name));
    connect(theProgress.get(), &ExportProgress::cancelled, this, &ExportJob::cancel);
}

void ExportJob::startWriting(BackgroundWork::Work work)
{
    theWork = std::make_unique<BackgroundWork>(std::move(work));
    connect(theWork.get(), &BackgroundWork::progressed, theProgress.get(),
        [this](int permille) { theProgress->show(permille, 1000); });
    connect(theWork.get(), &BackgroundWork::finished, this, &ExportJob::finishWriting);
    theWork->start();
}

void ExportJob::stopWriting()
{
    theWork.reset();
}

void ExportJob::cancel()
{
    theProgress.reset();
    if (theWork)
        theWork->cancel();
    else
        end();
}

void ExportJob::end()
{
    theProgress.reset();
    deleteLater();
}

} // namespace tarnwick
