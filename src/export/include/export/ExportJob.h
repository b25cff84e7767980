#pragma once

#include "dialogs/Progress.h"
#include "frame/Notice.h"
#include "work/Work.h"

#include <QList>
#include <QObject>
#include <QString>

#include <memory>

namespace tarnwick {

/// One run of an export command, from its panel to its last file.
///
/// It belongs to the application, so that windows and documents may close meanwhile, and destroys
/// itself at the end, or when the program ends, which gives up what is being written.
class ExportJob : public QObject
{
    Q_OBJECT

public:
    /// The jobs that are writing now: a program without windows still has to wait for them.
    static QList<ExportJob*> writing();

protected:
    /// @param title of the job's panels.
    explicit ExportJob(const QString& title);
    ~ExportJob() override;

    const QString& title() const { return theTitle; }

    /// Where a file has been written. @param missing sentences on what is not in it, or empty.
    static Notice writtenNotice(const QString& path, const QString& missing);
    /// @param reason a phrase or sentence.
    static Notice failedNotice(const QString& path, const QString& reason);

    /// From now on a job that takes long shows progress and can be cancelled.
    /// @param name of what is written.
    void showProgress(const QString& name);
    Progress* progress() const { return theProgress.get(); }

    /// Writes on a thread of its own and calls finishWriting() when that is done. Precondition:
    /// showProgress(). @param task may use what the job owns; nobody else does until then.
    using Writing = std::function<void(const std::stop_token& stop, const Work::Report& report)>;
    void startWriting(const Writing& task);
    /// Cancels the writing and waits for it; for destructors of what the writing uses.
    void stopWriting();
    /// Writing is done, has failed or was cancelled. Ends the job, as overrides do at their end.
    virtual void finishWriting() { end(); }
    bool isWriting() const { return theWork.isRunning(); }

    /// Gives up: at once, or as soon as the writing has stopped.
    void cancel();
    void end();

private:
    QString theTitle;
    std::unique_ptr<Progress> theProgress;
    Work theWork;
};

} // namespace tarnwick
