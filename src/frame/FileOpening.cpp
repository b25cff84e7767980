#include "frame/FileOpening.h"

#include "PasswordPrompt.h"
#include "files/ErrorText.h"
#include "frame/DocumentWindow.h"
#include "frame/FrameDocument.h"
#include "frame/Notice.h"

#include <QFileInfo>
#include <QPushButton>
#include <QUrl>

#include <utility>

namespace tarnwick {

namespace {

/// Why a path is not worth reading; empty when it is. A pipe or a device would have no end.
QString obviousFault(const QString& path)
{
    const QFileInfo info(path);
    if (info.isDir())
        return FileOpening::tr("It is a folder.");
    if (!info.exists()) {
        if (info.isSymLink())
            return FileOpening::tr("The link leads to no file.");
        // A name of other bytes cannot be said in Qt, which puts this character in their place.
        return path.contains(QChar::ReplacementCharacter)
            ? FileOpening::tr("Its name is not in UTF-8. Rename it to open it.")
            : FileOpening::tr("There is no such file.");
    }
    if (!info.isFile())
        return FileOpening::tr("It is not a regular file.");
    if (!info.isReadable())
        return FileOpening::tr("You do not have the permission to read it.");
    return {};
}

} // namespace

FileOpening::FileOpening(const QString& path, const std::optional<FileVersion>& version, Wish wish,
    const MakeDocument& makeDocument, QWidget* asking, QObject* parent)
    : QObject(parent)
    , thePath(path)
    , theVersion(version)
    , theWish(wish)
    , theAskingWindow(asking)
    , theOwnDocument(makeDocument())
    , theDocument(theOwnDocument.get())
{
    theDocument->setFileURL(QUrl::fromLocalFile(thePath));
    theDocument->setVersion(version);
}

FileOpening::FileOpening(FrameDocument* document, QObject* parent)
    : QObject(parent)
    , thePath(document->fileURL().toLocalFile())
    , theVersion(document->version())
    , theDocument(document)
    , isRead(true)
{
}

FileOpening::~FileOpening()
{
    isConcluded = true;
    delete thePrompt;
}

QString FileOpening::displayName() const
{
    return theDocument->displayName();
}

void FileOpening::start()
{
    if (isShown()) {
        QMetaObject::invokeMethod(this, &FileOpening::follow, Qt::QueuedConnection);
        return;
    }
    theProgress = std::make_unique<Progress>(tr("Opening"),
        tr("Opening \u201c%1\u201d\u2026").arg(displayName()), theAskingWindow,
        Progress::Blocking::isNothing);
    connect(theProgress.get(), &Progress::cancelled, this, &FileOpening::cancel);
    if (theWish == Wish::isDocument)
        offerSource();
    QMetaObject::invokeMethod(this, &FileOpening::read, Qt::QueuedConnection);
}

void FileOpening::offerSource()
{
    theSourceButton = theProgress->addAnswer(tr("Open &Source"));
    theSourceButton->setEnabled(false);
    connect(theSourceButton, &QPushButton::clicked, this, &FileOpening::openSource);
}

void FileOpening::read()
{
    if (isConcluded)
        return;
    if (theVersion)
        finishReading({theVersion->bytes});
    else
        readFile();
}

void FileOpening::readFile()
{
    if (const QString fault = obviousFault(thePath); !fault.isEmpty()) {
        fail(fault);
        return;
    }
    const auto task = [path = thePath](const std::stop_token& stop) {
        Reading reading;
        reading.bytes = FileBytes::read(path, &reading.failure, stop);
        return reading;
    };
    theReading.start(task, [this](const Reading& reading) { finishReading(reading); });
}

void FileOpening::finishReading(const Reading& reading)
{
    if (!reading.bytes) {
        fail(asSentence(QString::fromStdString(errorText(reading.failure))));
        return;
    }
    isRead = true;
    theDocument->readFromData(*reading.bytes);
    if (theWish == Wish::isSource)
        return openSourceAlone();
    follow();
    if (theSourceButton)
        theSourceButton->setEnabled(true);
    if (isSourceWanted)
        openSource();
}

/// What becomes of the document.
void FileOpening::follow()
{
    if (isConcluded || !theDocument)
        return cancel();
    connect(theDocument, &FrameDocument::opened, this, &FileOpening::finishOpening);
    connect(theDocument, &FrameDocument::locked, this, &FileOpening::askForPassword);
    connect(theDocument, &FrameDocument::refused, this, &FileOpening::fail);
    connect(theDocument, &FrameDocument::givenUp, this, &FileOpening::cancel);
    connect(theDocument, &QObject::destroyed, this, &FileOpening::cancel);
    if (theDocument->state() == FrameDocument::State::isLocked)
        askForPassword(false);
}

void FileOpening::openSource()
{
    isSourceWanted = true;
    if (!isRead)
        return; // as soon as it is
    theProgress.reset(); // the window says what is under way
    if (isShown())
        theDocument->showSource();
    else
        emit sourceReady(theOwnDocument.release());
}

void FileOpening::openSourceAlone()
{
    FrameDocument* const document = theOwnDocument.release();
    conclude();
    emit sourceReady(document);
    emit cancelled();
}

void FileOpening::askForPassword(bool wasWrong)
{
    const bool knowsAPassword = theVersion && !theVersion->password.isNull();
    if (knowsAPassword && !std::exchange(isPasswordTried, true))
        return theDocument->unlock(theVersion->password);
    theProgress.reset();
    const bool wasAsked = thePrompt;
    if (!wasAsked) {
        // Who reads the source goes on reading it.
        thePrompt = isShown() ? new PasswordPrompt(displayName(), theDocument->windowForSheet(),
                        PasswordPrompt::Blocking::isNothing)
                              : new PasswordPrompt(displayName(), theAskingWindow,
                                  PasswordPrompt::Blocking::isWindow);
        connect(thePrompt, &QDialog::rejected, this, &FileOpening::cancel);
        // A window that is closed takes its prompt with it: nobody is left to answer.
        connect(thePrompt, &QObject::destroyed, this, &FileOpening::cancel);
        connect(thePrompt, &PasswordPrompt::passwordEntered, theDocument, &FrameDocument::unlock);
        connect(thePrompt, &PasswordPrompt::sourceWanted, this, &FileOpening::openSourceAlone);
        thePrompt->offerSource(!isShown());
    }
    thePrompt->ask(wasWrong && wasAsked);
}

void FileOpening::bringUp()
{
    if (theProgress)
        theProgress->bringUp();
    if (!thePrompt)
        return;
    thePrompt->raise();
    thePrompt->activateWindow();
}

void FileOpening::conclude()
{
    isConcluded = true;
    theReading.abandon();
    theProgress.reset();
    if (theDocument)
        theDocument->disconnect(this);
    if (!thePrompt)
        return;
    thePrompt->disconnect(this);
    thePrompt->hide();
    thePrompt->deleteLater(); // it may itself be what has led here
}

void FileOpening::finishOpening()
{
    if (isShown() && theDocument->windows().isEmpty())
        return cancel(); // it is about to go with the window that showed its source
    conclude();
    static_cast<void>(theOwnDocument.release());
    emit opened(theDocument);
}

void FileOpening::fail(const QString& reason)
{
    conclude();
    emit failed(reason, isRead && theOwnDocument);
}

void FileOpening::cancel()
{
    if (isConcluded)
        return;
    conclude();
    if (isShown())
        theDocument->giveUp();
    emit cancelled();
}

} // namespace tarnwick
