#include "frame/DocumentController.h"

#include "FrameMenus.h"
#include "OpenFailureAlert.h"
#include "files/FileIdentity.h"
#include "frame/DocumentWindow.h"
#include "frame/FrameDocument.h"
#include "frame/RecentFiles.h"

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QPointer>
#include <QSettings>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

const QString folderKey = u"openFolder"_s;

/// Whether two paths lead to one file, by whatever links.
bool isSameFile(const QString& one, const QString& other)
{
    if (one == other)
        return true;
    const auto identity = fileIdentity(QFile::encodeName(one).toStdString());
    return identity && identity == fileIdentity(QFile::encodeName(other).toStdString());
}

} // namespace

DocumentController::DocumentController(FileOpening::MakeDocument make, QObject* parent)
    : QObject(parent)
    , makeDocument(std::move(make))
    , theRecentFiles(new RecentFiles(this))
{
}

DocumentController::~DocumentController()
{
    const QList<FileOpening*> openings = theOpenings;
    const QList<FrameDocument*> documents = theDocuments;
    for (FileOpening* opening : openings)
        delete opening;
    for (FrameDocument* document : documents)
        delete document;
    while (!theWindows.isEmpty()) // those without a document; they take themselves off the list
        delete theWindows.constLast();
}

void DocumentController::openFiles(const QStringList& paths, QWidget* asking)
{
    for (const QString& path : paths)
        open(QFileInfo(path).absoluteFilePath(), std::nullopt, asking);
}

void DocumentController::openVersion(FrameDocument* document, const FileVersion& version)
{
    const QString path = document->fileURL().toLocalFile();
    const FileOpening* const opening = open(path, version, document->windowForSheet());
    if (!opening)
        return;
    connect(opening, &FileOpening::failed, document,
        [document, number = version.number](
            const QString& reason) { emit document->versionRefused(number, reason); });
}

void DocumentController::openSources(const QStringList& paths, QWidget* asking)
{
    for (const QString& path : paths)
        openSource(QFileInfo(path).absoluteFilePath(), std::nullopt, asking);
}

/// @returns the opening that has begun; null where there is nothing left to do.
FileOpening* DocumentController::open(const QString& path, const Version& version, QWidget* asking)
{
    using State = FrameDocument::State;
    FrameDocument* const document = documentOf(path, version);
    const State state = document ? document->state() : State::isGivenUp;
    if (state == State::isOpened) {
        if (!version)
            theRecentFiles->add(path);
        document->showWindows();
        OpenFailureAlert::moveTo(document->windowForSheet());
        return nullptr;
    }
    if (FileOpening* opening = openingOf(path, version)) {
        if (document)
            document->showSource();
        opening->bringUp();
        return nullptr;
    }
    if (state == State::isOpening || state == State::isLocked) {
        document->showSource();
        return start(new FileOpening(document, this), asking);
    }
    // What was refused may have been mended.
    return start(
        new FileOpening(path, version, FileOpening::Wish::isDocument, makeDocument, asking, this),
        asking);
}

void DocumentController::openSource(const QString& path, const Version& version, QWidget* asking)
{
    if (FrameDocument* const document = documentOf(path, version))
        showSource(document);
    else if (FileOpening* const opening = openingOf(path, version))
        opening->openSource();
    else
        start(
            new FileOpening(path, version, FileOpening::Wish::isSource, makeDocument, asking, this),
            asking);
}

FileOpening* DocumentController::start(FileOpening* opening, QWidget* asking)
{
    theOpenings << opening;
    connect(opening, &FileOpening::opened, this,
        [this, opening](FrameDocument* document) { finish(opening, document); });
    connect(opening, &FileOpening::sourceReady, this, [this](FrameDocument* document) {
        adopt(document);
        showSource(document);
    });
    connect(opening, &FileOpening::cancelled, this, [this, opening] { remove(opening); });
    connect(opening, &FileOpening::failed, this,
        [this, opening, asker = QPointer(asking)](const QString& reason, bool hasSource) {
            if (!QFileInfo::exists(opening->path()))
                theRecentFiles->remove(opening->path());
            remove(opening);
            report(*opening, reason, hasSource, asker);
        });
    opening->start();
    return opening;
}

/// Of several the one that is opened: others were refused before the file was mended.
FrameDocument* DocumentController::documentOf(const QString& path, const Version& version) const
{
    FrameDocument* found = nullptr;
    for (FrameDocument* document : theDocuments) {
        if (document->windows().isEmpty() || document->version() != version
            || (!version && !isSameFile(document->fileURL().toLocalFile(), path)))
            continue;
        if (document->state() == FrameDocument::State::isOpened)
            return document;
        found = document;
    }
    return found;
}

FileOpening* DocumentController::openingOf(const QString& path, const Version& version) const
{
    for (FileOpening* opening : theOpenings) {
        if (opening->version() == version && (version || isSameFile(opening->path(), path)))
            return opening;
    }
    return nullptr;
}

void DocumentController::adopt(FrameDocument* document)
{
    if (theDocuments.contains(document))
        return;
    document->setParent(this);
    theDocuments << document;
    connect(document, &QObject::destroyed, this,
        [this, document] { theDocuments.removeAll(document); });
    connect(document, &FrameDocument::versionWanted, this,
        [this, document](const FileVersion& version) { openVersion(document, version); });
}

void DocumentController::finish(FileOpening* opening, FrameDocument* document)
{
    adopt(document);
    if (!document->version())
        theRecentFiles->add(opening->path());
    document->showWindows();
    emit documentOpened(document);
    remove(opening);
    OpenFailureAlert::moveTo(document->windowForSheet());
    for (FileOpening* other : std::as_const(theOpenings))
        other->bringUp(); // a question waits for its answer
}

void DocumentController::showSource(FrameDocument* document)
{
    if (!document->version())
        theRecentFiles->add(document->fileURL().toLocalFile());
    document->showSource();
    emit sourceOpened(document);
    OpenFailureAlert::moveTo(document->windowForSheet());
}

void DocumentController::remove(FileOpening* opening)
{
    theOpenings.removeAll(opening);
    opening->deleteLater(); // it is telling us of its end right now
    if (theOpenings.isEmpty() && windows().isEmpty())
        emit nothingOpened();
}

void DocumentController::report(
    const FileOpening& opening, const QString& reason, bool hasSource, QWidget* asking)
{
    if ((!asking || !asking->isVisible()) && windowForAlerts)
        asking = windowForAlerts();
    OpenFailureAlert::OpenSource openIt;
    if (hasSource)
        openIt = [controller = QPointer(this), path = opening.path(), version = opening.version()] {
            if (controller)
                controller->openSource(path, version, nullptr);
        };
    OpenFailureAlert::report(
        asking, opening.version() ? opening.displayName() : opening.path(), reason, openIt);
}

void DocumentController::addWindow(DocumentWindow* window)
{
    theWindows << window;
    FrameMenus::keepFilled(*window, *this);
    connect(window, &DocumentWindow::filesDropped, this,
        [this, window](const QStringList& paths) { openFiles(paths, window); });
    connect(window, &QObject::destroyed, this, [this, window] { theWindows.removeAll(window); });
    connect(window, &DocumentWindow::closed, this, [this, window] {
        QList<DocumentWindow*> others = windows();
        others.removeAll(window);
        OpenFailureAlert::leave(window, others.isEmpty() ? nullptr : others.constLast());
    });
    // Queued: the window shows still while it says so.
    connect(window, &DocumentWindow::closed, this, &DocumentController::checkForLastWindow,
        Qt::QueuedConnection);
}

QList<DocumentWindow*> DocumentController::windows() const
{
    QList<DocumentWindow*> shown;
    for (DocumentWindow* window : theWindows) {
        if (window->isVisible())
            shown << window;
    }
    return shown;
}

void DocumentController::checkForLastWindow()
{
    if (theOpenings.isEmpty() && windows().isEmpty())
        emit lastWindowClosed();
}

void DocumentController::askToCloseAll(const std::function<void()>& agreed)
{
    askNext({}, agreed);
}

void DocumentController::askNext(
    const QList<QPointer<DocumentWindow>>& answered, const std::function<void()>& agreed)
{
    const QList<DocumentWindow*> open = windows();
    for (DocumentWindow* window : open) {
        if (!window->isAtWork() || answered.contains(window))
            continue;
        window->askToClose([this, answered = answered + QList{QPointer(window)}, agreed] {
            askNext(answered, agreed);
        });
        return;
    }
    agreed();
}

void DocumentController::closeAll()
{
    const QList<FileOpening*> openings = theOpenings;
    for (FileOpening* opening : openings)
        opening->cancel();
    const QList<DocumentWindow*> open = windows();
    for (DocumentWindow* window : open)
        window->closeUnasked();
}

void DocumentController::openDocument()
{
    QWidget* window = QApplication::activeWindow();
    auto* dialog = new QFileDialog(window, tr("Open"), QSettings().value(folderKey).toString());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFiles);
    dialog->setNameFilters({tr("PDF files (*.pdf *.PDF)"), tr("All files (*)")});
    connect(dialog, &QFileDialog::filesSelected, this,
        [this, asker = QPointer(window)](const QStringList& paths) {
            QSettings().setValue(folderKey, QFileInfo(paths.value(0)).absolutePath());
            openFiles(paths, asker);
        });
    dialog->open();
}

} // namespace tarnwick
