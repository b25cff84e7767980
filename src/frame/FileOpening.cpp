#include "frame/FileOpening.h"

#include "PasswordPrompt.h"
#include "files/ErrorText.h"
#include "frame/FrameDocument.h"
#include "frame/Notice.h"

#include <QFileInfo>
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

FileOpening::FileOpening(const QString& path, const std::optional<FileVersion>& version,
    const MakeDocument& makeDocument, QWidget* asking, QObject* parent)
    : QObject(parent)
    , thePath(path)
    , theVersion(version)
    , theAskingWindow(asking)
    , theDocument(makeDocument())
{
    theDocument->setFileURL(QUrl::fromLocalFile(thePath));
    theDocument->setVersion(version);
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
    theProgress = std::make_unique<Progress>(tr("Opening"),
        tr("Opening \u201c%1\u201d\u2026").arg(displayName()), theAskingWindow,
        Progress::Blocking::isNothing);
    connect(theProgress.get(), &Progress::cancelled, this, &FileOpening::cancel);
    QMetaObject::invokeMethod(this, &FileOpening::read, Qt::QueuedConnection);
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
    connect(theDocument.get(), &FrameDocument::opened, this, &FileOpening::finishOpening);
    connect(theDocument.get(), &FrameDocument::locked, this, &FileOpening::askForPassword);
    connect(theDocument.get(), &FrameDocument::refused, this, &FileOpening::fail);
    theDocument->readFromData(*reading.bytes);
}

void FileOpening::askForPassword(bool wasWrong)
{
    const bool knowsAPassword = theVersion && !theVersion->password.isNull();
    if (knowsAPassword && !std::exchange(thePasswordIsTried, true))
        return theDocument->unlock(theVersion->password);
    theProgress.reset();
    const bool wasAsked = thePrompt;
    if (!wasAsked) {
        thePrompt = new PasswordPrompt(theDocument->displayName(), theAskingWindow);
        connect(thePrompt, &QDialog::rejected, this, &FileOpening::cancel);
        // A window that is closed takes its prompt with it: nobody is left to answer.
        connect(thePrompt, &QObject::destroyed, this, &FileOpening::cancel);
        connect(
            thePrompt, &PasswordPrompt::passwordEntered, theDocument.get(), &FrameDocument::unlock);
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
    if (!thePrompt)
        return;
    thePrompt->disconnect(this);
    thePrompt->hide();
    thePrompt->deleteLater(); // it may itself be what has led here
}

void FileOpening::finishOpening()
{
    conclude();
    theDocument->disconnect(this);
    emit opened(theDocument.release());
}

void FileOpening::fail(const QString& reason)
{
    conclude();
    emit failed(reason);
}

void FileOpening::cancel()
{
    if (isConcluded)
        return;
    conclude();
    emit cancelled();
}

} // namespace tarnwick
