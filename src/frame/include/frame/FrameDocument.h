#pragma once

#include "files/FileBytes.h"
#include "frame/FileVersion.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>

#include <optional>

namespace tarnwick {

class DocumentWindow;

/// What the frame knows of a document: its file, how it is read, its windows.
///
/// The frame makes one for each file, or saved version of one, reads it once, and shows its
/// windows. Of a file that is not opened, or not yet, its source can be shown nevertheless. It
/// destroys itself (deleteLater) after its last window has closed; windows that are left when it is
/// destroyed go with it.
class FrameDocument : public QObject
{
    Q_OBJECT

public:
    explicit FrameDocument(QObject* parent = nullptr);
    ~FrameDocument() override;

    /// The document's file; empty for a document without one.
    const QUrl& fileURL() const { return theFileURL; }
    void setFileURL(const QUrl& url) { theFileURL = url; }
    /// The saved version of the file that the document is; none where it is the whole file.
    const std::optional<FileVersion>& version() const { return theVersion; }
    void setVersion(const std::optional<FileVersion>& version) { theVersion = version; }
    /// What windows call it: the file's name with its extension, and which version of it it is
    /// ("report.pdf (version 2)"); "Untitled" without a file.
    QString displayName() const;

    enum class State
    {
        isOpening,
        isLocked, ///< waits for unlock()
        isOpened, ///< for good
        isRefused, ///< likewise
        isGivenUp, ///< likewise, by giveUp()
    };
    virtual State state() const = 0;

    /// Reads the file's bytes. One of opened(), locked() and refused() follows from the event loop.
    virtual void readFromData(const FileBytes& bytes) = 0;
    /// Ends the opening where it is under way; the bytes stay.
    virtual void giveUp() = 0;
    /// Tries a password after locked(); opened() or locked(true) follows.
    virtual void unlock(const QString& password) = 0;

    /// Makes the document's first window and adds it, not shown yet.
    virtual void makeWindowControllers() = 0;
    /// Brings the document's windows up, its main one in front; makes a main window where it has
    /// been closed. Precondition: it is opened.
    void showWindows();
    /// Brings its latest source window up, or opens one: of the bytes as they are, in any state.
    virtual void showSource() = 0;

    /// Ties a window to the document; called by the window itself.
    void addWindow(DocumentWindow* window);
    /// Windows that have not been closed, in the order in which they were made.
    const QList<DocumentWindow*>& windows() const { return theWindows; }
    /// The window that panels of this document belong to: its active one, else its first; null
    /// without a window.
    DocumentWindow* windowForSheet() const;

signals:
    void opened();
    /// A password is wanted. @param wasWrong one was tried and is not it.
    void locked(bool wasWrong);
    /// The bytes are none that the document can show. @param reason a sentence for the user.
    void refused(const QString& reason);
    void givenUp();

    /// A saved version of the file is to be opened as a document of its own.
    void versionWanted(const FileVersion& version);
    /// That version cannot be opened. @param reason a sentence for the user.
    void versionRefused(std::size_t number, const QString& reason);

protected:
    /// Destroys every window; for subclasses whose windows borrow what their destructor frees.
    void closeWindows();

private:
    void forget(DocumentWindow* window);

    QUrl theFileURL;
    std::optional<FileVersion> theVersion;
    QList<DocumentWindow*> theWindows;
    QList<DocumentWindow*> theWindowsAlive; // with those that are closed and not yet destroyed
};

} // namespace tarnwick
