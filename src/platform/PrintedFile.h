#pragma once

#include "platform/FileBytes.h"

#include <QObject>
#include <QString>

#include <memory>

/// The file that is printed into. It appears whole or not at all, in place of one that had its
/// name, but never of the opened file.
class PrintedFile : public QObject
{
    Q_OBJECT

public:
    /// @param opened path of the file that must not be replaced; may be empty.
    PrintedFile(const QString& path, const QString& opened, QObject* parent);
    /// Before finished(), no file appears, unless that is happening at this very moment.
    ~PrintedFile() override;

    /// @returns why no file can be written there, as a phrase for the user; empty when it can.
    QString open();
    /// Path of the file that has no name yet, for what paints into files by path; valid in this
    /// process, once open.
    QString unfinishedPath() const;
    /// Appends bytes on a thread of its own and gives the file its name; finished() follows from
    /// the event loop. To be called once, when open.
    void complete(const FileBytes& bytes = {});

signals:
    /// @param reason why there is no file, as a phrase for the user; empty when there is one.
    void finished(const QString& reason);

private:
    struct Work;
    std::shared_ptr<Work> theWork; ///< the thread's as well, which may outlive this object
    QString thePath;
    QString theOpened;
};
