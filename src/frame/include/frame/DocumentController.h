#pragma once

#include "frame/FileOpening.h"
#include "frame/FrameDocument.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QStringList>

#include <functional>
#include <optional>

namespace tarnwick {

class DocumentWindow;
class RecentFiles;

/// Opens files and knows every document and window of the program. One exists.
///
/// Opening never blocks: files open side by side while windows stay usable. A file that is open
/// already, or on its way, comes to the front instead. So does a saved version, which is no reason
/// for its file not to open, nor the other way round. A file that cannot be opened is reported in
/// an alert with its name and the reason.
class DocumentController : public QObject
{
    Q_OBJECT

public:
    using WindowForAlerts = std::function<QWidget*()>;

    explicit DocumentController(FileOpening::MakeDocument makeDocument, QObject* parent = nullptr);
    /// Gives up what is being opened and destroys the documents and all windows.
    ~DocumentController() override;

    RecentFiles* recentFiles() const { return theRecentFiles; }

    /// Where alerts belong when the window that asked for a file shows no more or there was none.
    void setWindowForAlerts(WindowForAlerts provider) { windowForAlerts = std::move(provider); }

    /// Opens files. @param paths absolute, or relative to the working folder.
    /// @param asking the window that dialogs belong to, or null.
    void openFiles(const QStringList& paths, QWidget* asking = nullptr);
    /// Opens a saved version of an open document's file as a document of its own, which the recent
    /// files know nothing of. One that does not open is told of like a file, and by
    /// FrameDocument::versionRefused() of that document.
    void openVersion(FrameDocument* document, const FileVersion& version);
    /// Opens the source of files, whatever the PDF engine will say of them: one that is open, or on
    /// its way, shows its source.
    void openSources(const QStringList& paths, QWidget* asking = nullptr);
    bool isOpening() const { return !theOpenings.isEmpty(); }

    /// Documents in the order of their opening.
    const QList<FrameDocument*>& documents() const { return theDocuments; }

    /// Counts a window in: files dropped on it are opened, its closing is noticed, and its menus
    /// named "recentMenu" and "windowMenu" are kept filled.
    void addWindow(DocumentWindow* window);
    /// Windows that show, in the order of their first showing.
    QList<DocumentWindow*> windows() const;

    /// Asks in every window with something at work whether it may close, one after the other. When
    /// the user has agreed to all, calls what follows; until then nothing is closed or given up,
    /// and where the user keeps one window, all stay.
    void askToCloseAll(const std::function<void()>& agreed);
    /// Closes every window and gives up every opening, without asking.
    void closeAll();

public slots:
    /// Asks the user for files and opens them.
    void openDocument();

signals:
    /// A document has been opened and its window shows.
    void documentOpened(FrameDocument* document);
    /// A document's source shows, which it may do before it is opened.
    void sourceOpened(FrameDocument* document);
    /// The user has closed the last window, and nothing is being opened.
    void lastWindowClosed();
    /// The last opening under way has come to nothing, and there is no window.
    void nothingOpened();

private:
    using Version = std::optional<FileVersion>;

    FrameDocument* documentOf(const QString& path, const Version& version) const;
    FileOpening* openingOf(const QString& path, const Version& version) const;
    FileOpening* open(const QString& path, const Version& version, QWidget* asking);
    void openSource(const QString& path, const Version& version, QWidget* asking);
    FileOpening* start(FileOpening* opening, QWidget* asking);
    void adopt(FrameDocument* document);
    void finish(FileOpening* opening, FrameDocument* document);
    void showSource(FrameDocument* document);
    void remove(FileOpening* opening);
    void report(const FileOpening& opening, const QString& reason, bool hasSource, QWidget* asking);
    void checkForLastWindow();
    void askNext(
        const QList<QPointer<DocumentWindow>>& answered, const std::function<void()>& agreed);

    FileOpening::MakeDocument makeDocument;
    WindowForAlerts windowForAlerts;
    RecentFiles* theRecentFiles;
    QList<FileOpening*> theOpenings;
    QList<FrameDocument*> theDocuments;
    QList<DocumentWindow*> theWindows;
};

} // namespace tarnwick
