#pragma once

#include "files/FileBytes.h"
#include "work/Work.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <stop_token>

namespace tarnwick {

class WholeFile;

/// The file that is printed into. It appears whole or not at all, in place of one that had its
/// name, but never of an opened file (WholeFile).
class PrintedFile : public QObject
{
    Q_OBJECT

public:
    PrintedFile(const QString& path, QObject* parent);
    /// Before finished(), no file appears, unless that is happening at this very moment.
    ~PrintedFile() override;

    /// @returns why no file can be written there, as a phrase for the user; empty when it can.
    QString open();
    /// Path of the file that has no name yet, for what paints into files by path; valid in this
    /// process, once open.
    QString unfinishedPath() const;
    /// Writes bytes on a thread of its own and gives the file its name; finished() follows from the
    /// event loop. To be called once, when open.
    void complete(const FileBytes& bytes);
    /// The same once a PDF file has been painted into unfinishedPath(). The painter tells of no
    /// full disk, so the file is looked at: one that lacks anything gets no name.
    void completePainted();

signals:
    /// @param reason why there is no file, as a phrase for the user; empty when there is one.
    void finished(const QString& reason);

private:
    void finish(const std::function<int(const std::stop_token&)>& part);

    std::shared_ptr<WholeFile> theFile; ///< the work's as well, which may outlive this object
    Work theWork;
};

} // namespace tarnwick
