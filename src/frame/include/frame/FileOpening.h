#pragma once

#include "dialogs/Progress.h"
#include "files/FileBytes.h"
#include "frame/FileVersion.h"
#include "work/Work.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

class QWidget;

namespace tarnwick {

class FrameDocument;
class PasswordPrompt;

/// One file, or saved version of one, on its way to becoming a document: its bytes are read off the
/// main thread unless they are there, the document opens them, the password is asked for where one
/// is needed. Takes longer than half a second: a small dialog says so and offers to cancel.
///
/// Ends with exactly one of opened(), failed() and cancelled(), never from inside start().
class FileOpening : public QObject
{
    Q_OBJECT

public:
    using MakeDocument = std::function<std::unique_ptr<FrameDocument>()>;

    /// @param path absolute. @param version of that file; none for the whole of it.
    /// @param asking the window that dialogs belong to, or null; may close meanwhile.
    FileOpening(const QString& path, const std::optional<FileVersion>& version,
        const MakeDocument& makeDocument, QWidget* asking, QObject* parent);
    ~FileOpening() override;

    const QString& path() const { return thePath; }
    const std::optional<FileVersion>& version() const { return theVersion; }
    /// What the document is going to be called.
    QString displayName() const;
    void start();
    void cancel();
    /// Brings the dialog of this opening, if there is one, before the user.
    void bringUp();

signals:
    /// The document is read; the receiver owns it. It has no window yet.
    void opened(FrameDocument* document);
    void failed(const QString& reason);
    void cancelled();

private:
    struct Reading
    {
        std::optional<FileBytes> bytes;
        int failure = 0;
    };
    void read();
    void readFile();
    void finishReading(const Reading& reading);
    void askForPassword(bool wasWrong);
    void conclude();
    void finishOpening();
    void fail(const QString& reason);

    QString thePath;
    std::optional<FileVersion> theVersion;
    QPointer<QWidget> theAskingWindow;
    Work theReading;
    std::unique_ptr<FrameDocument> theDocument; ///< null once it is opened
    QPointer<PasswordPrompt> thePrompt;
    std::unique_ptr<Progress> theProgress;
    bool isConcluded = false;
    bool thePasswordIsTried = false; ///< that of the file whose version this is
};

} // namespace tarnwick
