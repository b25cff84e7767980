#pragma once

#include "PreferenceStore.h"
#include "document/Document.h"
#include "frame/DocumentController.h"
#include "frame/ViewFlags.h"
#include "frame/WindowRegistry.h"

#include <QList>
#include <QObject>
#include <QStringList>

#include <functional>

class QAction;

namespace tarnwick {

class DocumentController;
class DocumentWindow;

/// The application's delegate: what it does at launch and at quit, the three view flags, and the
/// commands that belong to no document. One exists, made with the application.
class AppDelegate : public QObject, public ViewFlags
{
    Q_OBJECT

public:
    /// The three flags are at their first values (thumbnails on, the others off) until launch.
    explicit AppDelegate(QObject* parent = nullptr);
    ~AppDelegate() override;

    bool showThumbnail() const override { return theFlags.showThumbnail; }
    bool showRawSource() const override { return theFlags.showRawSource; }
    bool showSummarySource() const override { return theFlags.showSummarySource; }

    DocumentController* controller() const { return theController; }
    /// What makes the documents' windows; to be filled before the first file is opened.
    WindowRegistry<Document>& windowRegistry() { return theWindowRegistry; }
    /// What makes the windows that show no document: the help window.
    WindowRegistry<void>& plainWindowRegistry() { return thePlainWindowRegistry; }

    /// Every help window opened so far, kept after it has been closed.
    const QList<DocumentWindow*>& myHelpWindow() const { return theHelpWindows; }

    /// A window as all of them are: the main menu with its marks in step with the flags, the
    /// content, and known to the frame. Not shown yet.
    /// @param document whose window it is, or null.
    DocumentWindow* makeWindow(
        const QString& identifier, FrameDocument* document, QWidget* content);

    /// What starts the update check when it is due at launch.
    void setUpdateCheck(std::function<void()> start) { startUpdateCheck = std::move(start); }
    /// Marks and retitles the item "Update not checked" in the Help menus of all windows, those to
    /// come included: the update feed has been read.
    void showUpdateChecked();

    /// Reads the preferences, starts the update check when it is due, and opens the files, or the
    /// start window without any.
    void applicationDidFinishLaunching(const QStringList& files);
    /// Stores the flags.
    void applicationWillTerminate();

    Q_INVOKABLE bool validateCommand(const QString& command) const;
    Q_INVOKABLE bool commandIsChecked(const QString& command) const;

public slots:
    void toggleThumbnails(QAction* sender);
    void toggleRawSource(QAction* sender);
    void toggleSummarySource(QAction* sender);
    /// Whether updates are looked for at launch; stored at once.
    void toggleUpdateCheck();
    /// Asks for a file and compares the active window's document with it.
    void compareWith();
    /// Opens a further help window.
    void openHelp();
    void openUpdates();
    void openSupport();
    void about();
    /// Closes every window and ends the program, when the user agrees to end what is at work in
    /// them. Exports that are writing may finish, unless this is called again.
    void quit();
    /// The same without asking: the system or its administrator ends the program.
    void quitUnasked();
    /// Shows the start window, or brings it up.
    void showStartWindow();

private:
    void toggle(bool& flag, QAction* sender);
    void checkForUpdates(const UpdatePreferences& preferences);
    void openPage(const QString& address);
    void quitBehindExports();
    void updateMenus(const DocumentWindow& window) const;
    DocumentWindow* startWindow();
    QWidget* windowForAlerts();

    PreferenceStore::Flags theFlags;
    bool isUpdateCheckRefused = false;
    bool isUpdateChecked = false;
    bool isEnding = false;
    bool isWaitingForExports = false;
    std::function<void()> startUpdateCheck;
    WindowRegistry<Document> theWindowRegistry;
    WindowRegistry<void> thePlainWindowRegistry;
    DocumentController* theController;
    DocumentWindow* theStartWindow = nullptr;
    QList<DocumentWindow*> theHelpWindows;
};

} // namespace tarnwick
