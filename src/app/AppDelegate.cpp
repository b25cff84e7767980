#include "AppDelegate.h"

#include "Comparisons.h"
#include "StartView.h"
#include "dialogs/Alert.h"
#include "export/ExportJob.h"
#include "frame/CommandRouter.h"
#include "frame/DocumentController.h"
#include "frame/DocumentWindow.h"
#include "ui_MainMenu.h"

#include <QApplication>
#include <QDesktopServices>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

const QString startWindowIdentifier = u"Start Window"_s;
const QString updateItemTitle = u"Update not checked"_s;
const QString updateItemCheckedTitle = u"Checked for update"_s;

QAction* itemWithTitle(const QMenu& menu, const QString& title)
{
    const QList<QAction*> actions = menu.actions();
    for (QAction* action : actions) {
        if (action->text() == title)
            return action;
    }
    return nullptr;
}

void showMessage(QWidget* parent, const QString& title, const QString& text, const QString& more)
{
    auto* const alert
        = new Alert(QMessageBox::Information, title, text, parent, Alert::Blocking::isNothing);
    alert->setTexts(text, more);
    alert->comeUp();
}

} // namespace

AppDelegate::AppDelegate(QObject* parent)
    : QObject(parent)
    , theController(new DocumentController(
          [this] { return std::make_unique<Document>(&theWindowRegistry); }, this))
{
    theController->setWindowForAlerts([this] { return windowForAlerts(); });
    const auto leaveStart = [this] {
        if (theStartWindow)
            theStartWindow->close();
    };
    connect(theController, &DocumentController::documentOpened, this, leaveStart);
    connect(theController, &DocumentController::sourceOpened, this, leaveStart);
    connect(theController, &DocumentController::lastWindowClosed, this, [this] {
        if (!isEnding) // else quitting has closed it, and exports may finish
            quit();
    });
    connect(theController, &DocumentController::nothingOpened, this, [this] {
        if (!isEnding)
            showStartWindow();
    });
}

AppDelegate::~AppDelegate()
{
    delete theController; // with its windows, which use the registries and flags
}

DocumentWindow* AppDelegate::makeWindow(
    const QString& identifier, FrameDocument* document, QWidget* content)
{
    auto* window = new DocumentWindow(identifier, document);
    Ui::MainMenu menu;
    menu.setupUi(window);
    window->setContent(content);
    window->installCommands({theController, this});
    theController->addWindow(window);
    updateMenus(*window);
    return window;
}

void AppDelegate::applicationDidFinishLaunching(const QStringList& files)
{
    const UpdatePreferences preferences = PreferenceStore::readUpdatePreferences();
    checkForUpdates(preferences);
    theFlags = PreferenceStore::readFlags();
    const QList<DocumentWindow*> windows = theController->windows();
    for (const DocumentWindow* window : windows)
        updateMenus(*window);
    PreferenceStore::storeNoUpdateCheck(preferences.noUpdateCheck);
    PreferenceStore::storeUpdateInterval(intervalInForce(preferences));
    if (files.isEmpty())
        showStartWindow();
    else
        theController->openFiles(files);
}

void AppDelegate::checkForUpdates(const UpdatePreferences& preferences)
{
    isUpdateCheckRefused = preferences.noUpdateCheck;
    if (isUpdateCheckDue(preferences, PreferenceStore::currentTime()) && startUpdateCheck) {
        startUpdateCheck();
        PreferenceStore::storeLastUpdateCheck(PreferenceStore::currentTime());
    }
}

void AppDelegate::applicationWillTerminate()
{
    PreferenceStore::storeFlags(theFlags);
}

bool AppDelegate::validateCommand(const QString& command) const
{
    if (command == "openHelp"_L1)
        return thePlainWindowRegistry.knows(WindowIdentifiers::help);
    if (command == "compareWith"_L1) {
        const DocumentWindow* const window = DocumentWindow::of(QApplication::activeWindow());
        const auto* const document
            = window ? qobject_cast<const Document*>(window->document()) : nullptr;
        return document && document->state() == FrameDocument::State::isOpened;
    }
    return true;
}

bool AppDelegate::commandIsChecked(const QString& command) const
{
    if (command == "toggleThumbnails"_L1)
        return theFlags.showThumbnail;
    if (command == "toggleRawSource"_L1)
        return theFlags.showRawSource;
    if (command == "toggleSummarySource"_L1)
        return theFlags.showSummarySource;
    return command == "toggleUpdateCheck"_L1 && !isUpdateCheckRefused;
}

void AppDelegate::toggleThumbnails(QAction* sender)
{
    toggle(theFlags.showThumbnail, sender);
}

void AppDelegate::toggleRawSource(QAction* sender)
{
    toggle(theFlags.showRawSource, sender);
}

void AppDelegate::toggleSummarySource(QAction* sender)
{
    toggle(theFlags.showSummarySource, sender);
}

void AppDelegate::toggle(bool& flag, QAction* sender)
{
    flag = !flag;
    if (sender)
        sender->setChecked(flag);
    // Every window has a menu of its own.
    const QList<DocumentWindow*> windows = theController->windows();
    for (const DocumentWindow* window : windows)
        updateMenus(*window);
}

void AppDelegate::toggleUpdateCheck()
{
    isUpdateCheckRefused = !isUpdateCheckRefused;
    PreferenceStore::storeNoUpdateCheck(isUpdateCheckRefused);
}

void AppDelegate::updateMenus(const DocumentWindow& window) const
{
    window.router()->validate();
    const auto* help = window.findChild<QMenu*>(u"helpMenu"_s);
    QAction* item = help && isUpdateChecked ? itemWithTitle(*help, updateItemTitle) : nullptr;
    if (!item)
        return;
    item->setCheckable(true);
    item->setChecked(true);
    item->setText(updateItemCheckedTitle);
}

void AppDelegate::showUpdateChecked()
{
    isUpdateChecked = true;
    const QList<DocumentWindow*> windows = theController->windows();
    for (const DocumentWindow* window : windows)
        updateMenus(*window);
}

void AppDelegate::compareWith()
{
    if (DocumentWindow* const window = DocumentWindow::of(QApplication::activeWindow()))
        compareWithFile(*this, window);
}

void AppDelegate::openHelp()
{
    QWidget* made = thePlainWindowRegistry.make(WindowIdentifiers::help, nullptr);
    auto* window = qobject_cast<DocumentWindow*>(made);
    if (!window)
        return;
    window->setAttribute(Qt::WA_DeleteOnClose, false); // kept until the program ends
    window->show();
    theHelpWindows << window;
}

void AppDelegate::openUpdates()
{
    openPage(QString::fromLatin1(TARNWICK_UPDATES_PAGE));
}

void AppDelegate::openSupport()
{
    openPage(QString::fromLatin1(TARNWICK_SUPPORT_PAGE));
}

void AppDelegate::openPage(const QString& address)
{
    if (!QDesktopServices::openUrl(QUrl(address))) {
        showMessage(windowForAlerts(), tr("Web Page"), tr("No browser could be started."),
            tr("The page\u2019s address is %1").arg(address));
    }
}

void AppDelegate::about()
{
    showMessage(windowForAlerts(), tr("About Tarnwick"),
        tr("Tarnwick %1").arg(QApplication::applicationVersion()),
        tr("Shows what a PDF file is made of: its pages, its source, its objects and its "
           "saved versions.\n\nFree software under the GNU Affero General Public License, "
           "version 3 or later. It comes with no warranty."));
}

void AppDelegate::quit()
{
    theController->askToCloseAll([this] { quitUnasked(); });
}

void AppDelegate::quitUnasked()
{
    if (isWaitingForExports)
        return QCoreApplication::quit();
    if (std::exchange(isEnding, true))
        return;
    theController->closeAll();
    quitBehindExports();
}

void AppDelegate::quitBehindExports()
{
    const QList<ExportJob*> jobs = ExportJob::writing();
    isWaitingForExports = !jobs.isEmpty();
    if (jobs.isEmpty())
        return QCoreApplication::quit();
    connect(jobs.first(), &QObject::destroyed, this, &AppDelegate::quitBehindExports,
        Qt::QueuedConnection);
}

void AppDelegate::showStartWindow()
{
    startWindow()->bringUp();
}

DocumentWindow* AppDelegate::startWindow()
{
    if (theStartWindow)
        return theStartWindow;
    auto* view = new StartView(theController->recentFiles());
    theStartWindow = makeWindow(startWindowIdentifier, nullptr, view);
    // Hidden rather than destroyed: it may have a dialog about a file that is still being opened.
    theStartWindow->setAttribute(Qt::WA_DeleteOnClose, false);
    connect(view, &StartView::fileChosen, this,
        [this](const QString& path) { theController->openFiles({path}, theStartWindow); });
    connect(view, &StartView::sourceChosen, this,
        [this](const QString& path) { theController->openSources({path}, theStartWindow); });
    return theStartWindow;
}

QWidget* AppDelegate::windowForAlerts()
{
    if (auto* window = DocumentWindow::of(QApplication::activeWindow()))
        return window;
    const QList<DocumentWindow*> windows = theController->windows();
    return windows.isEmpty() ? startWindow() : windows.constLast();
}

} // namespace tarnwick
