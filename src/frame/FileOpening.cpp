#include "frame/FileOpening.h"

#include "PasswordPrompt.h"
#include "files/ErrorText.h"
#include "frame/FrameDocument.h"
#include "frame/Notice.h"

#include <QFileInfo>
#include <QProgressDialog>
#include <QUrl>

namespace tarnwick {

namespace {

constexpr int patience = 500; // milliseconds until the user is told that it takes longer

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

FileOpening::FileOpening(const QString& path, MakeDocument make, QWidget* asking, QObject* parent)
    : QObject(parent)
    , thePath(path)
    , makeDocument(std::move(make))
    , theAskingWindow(asking)
{
    theProgressTimer.setSingleShot(true);
    theProgressTimer.setInterval(patience);
    connect(&theProgressTimer, &QTimer::timeout, this, &FileOpening::showProgress);
}

FileOpening::~FileOpening()
{
    isConcluded = true;
    delete thePrompt;
    delete theProgress;
}

void FileOpening::start()
{
    theProgressTimer.start();
    QMetaObject::invokeMethod(this, &FileOpening::read, Qt::QueuedConnection);
}

void FileOpening::read()
{
    if (isConcluded)
        return;
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
    theDocument = makeDocument();
    theDocument->setFileURL(QUrl::fromLocalFile(thePath));
    connect(theDocument.get(), &FrameDocument::opened, this, &FileOpening::finishOpening);
    connect(theDocument.get(), &FrameDocument::locked, this, &FileOpening::askForPassword);
    connect(theDocument.get(), &FrameDocument::refused, this, &FileOpening::fail);
    theDocument->readFromData(*reading.bytes);
}

void FileOpening::askForPassword(bool wasWrong)
{
    theProgressTimer.stop();
    delete theProgress;
    if (!thePrompt) {
        thePrompt = new PasswordPrompt(theDocument->displayName(), theAskingWindow);
        connect(thePrompt, &QDialog::rejected, this, &FileOpening::cancel);
        // A window that is closed takes its prompt with it: nobody is left to answer.
        connect(thePrompt, &QObject::destroyed, this, &FileOpening::cancel);
        connect(
            thePrompt, &PasswordPrompt::passwordEntered, theDocument.get(), &FrameDocument::unlock);
    }
    thePrompt->ask(wasWrong);
}

void FileOpening::showProgress()
{
    theProgress
        = new QProgressDialog(tr("Opening \u201c%1\u201d\u2026").arg(QFileInfo(thePath).fileName()),
            tr("Cancel"), 0, 0, theAskingWindow);
    theProgress->setWindowTitle(tr("Opening"));
    theProgress->setMinimumDuration(0);
    connect(theProgress, &QProgressDialog::canceled, this, &FileOpening::cancel);
    theProgress->show();
}

void FileOpening::bringUp()
{
    QWidget* dialog = thePrompt ? static_cast<QWidget*>(thePrompt) : theProgress;
    if (!dialog)
        return;
    dialog->raise();
    dialog->activateWindow();
}

void FileOpening::conclude()
{
    isConcluded = true;
    theReading.abandon();
    theProgressTimer.stop();
    for (QWidget* dialog : {static_cast<QWidget*>(thePrompt), static_cast<QWidget*>(theProgress)}) {
        if (!dialog)
            continue;
        dialog->disconnect(this);
        dialog->hide();
        dialog->deleteLater(); // the dialog itself may be what has led here
    }
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
