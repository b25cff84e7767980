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

class QPushButton;
class QWidget;

namespace tarnwick {

class FrameDocument;
class PasswordPrompt;

/// One file, or saved version of one, on its way to becoming a document: its bytes are read off the
/// main thread unless they are there, the document opens them, the password is asked for where one
/// is needed. Takes longer than half a second: a small dialog says so and offers to cancel, and to
/// open the source as soon as the bytes are read. The opening goes on behind that, until the
/// document's last window is closed.
///
/// Ends with exactly one of opened(), failed() and cancelled(), never from inside start().
class FileOpening : public QObject
{
    Q_OBJECT

public:
    using MakeDocument = std::function<std::unique_ptr<FrameDocument>()>;

    /// What is wanted of the file.
    enum class Wish
    {
        isDocument,
        isSource, ///< alone: the document goes on opening by itself, and nobody is asked anything
    };

    /// @param path absolute. @param version of that file; none for the whole of it.
    /// @param asking the window that dialogs belong to, or null; may close meanwhile.
    FileOpening(const QString& path, const std::optional<FileVersion>& version, Wish wish,
        const MakeDocument& makeDocument, QWidget* asking, QObject* parent);
    /// Goes on with a document that is being opened, or locked, and whose source shows. Borrowed.
    FileOpening(FrameDocument* document, QObject* parent);
    ~FileOpening() override;

    const QString& path() const { return thePath; }
    const std::optional<FileVersion>& version() const { return theVersion; }
    /// What the document is going to be called.
    QString displayName() const;
    void start();
    void cancel();
    /// Brings the dialog of this opening, if there is one, before the user.
    void bringUp();
    /// The source is wanted too, as soon as the bytes are read.
    void openSource();

signals:
    /// The document is read; the receiver owns it. It has no main window yet.
    void opened(FrameDocument* document);
    /// @param hasSource the bytes have been read, and nobody shows them.
    void failed(const QString& reason, bool hasSource);
    /// It has ended with nothing more to tell: given up, or the source was all that was wanted.
    void cancelled();
    /// The source of a document is to be shown; the receiver owns it from now on. It may be opening
    /// still; then one of the others follows.
    void sourceReady(FrameDocument* document);

private:
    struct Reading
    {
        std::optional<FileBytes> bytes;
        int failure = 0;
    };
    void read();
    void readFile();
    void finishReading(const Reading& reading);
    void follow();
    void offerSource();
    void openSourceAlone();
    bool isShown() const { return theDocument && !theOwnDocument; }
    void askForPassword(bool wasWrong);
    void conclude();
    void finishOpening();
    void fail(const QString& reason);

    QString thePath;
    std::optional<FileVersion> theVersion;
    Wish theWish = Wish::isDocument;
    QPointer<QWidget> theAskingWindow;
    Work theReading;
    std::unique_ptr<FrameDocument> theOwnDocument; ///< until somebody else shows it
    QPointer<FrameDocument> theDocument;
    QPointer<PasswordPrompt> thePrompt;
    std::unique_ptr<Progress> theProgress;
    QPointer<QPushButton> theSourceButton;
    bool isRead = false;
    bool isSourceWanted = false; ///< while the bytes are being read
    bool isConcluded = false;
    bool isPasswordTried = false; ///< that of the file whose version this is
};

} // namespace tarnwick
