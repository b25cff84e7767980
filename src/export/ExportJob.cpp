#include "export/ExportJob.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

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

Notice ExportJob::writtenNotice(const QString& path, const QString& missing)
{
    const QString folder = QDir::toNativeSeparators(QFileInfo(path).absolutePath());
    const QString text = tr("%1 has been written to “%2”.").arg(shownName(path), folder);
    if (missing.isEmpty())
        return {Notice::Kind::isDone, text};
    return {Notice::Kind::isIncomplete, missing + u' ' + text};
}

Notice ExportJob::failedNotice(const QString& path, const QString& reason)
{
    return {Notice::Kind::isFailure,
        tr("%1 has not been written: %2").arg(shownName(path), asSentence(reason))};
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
