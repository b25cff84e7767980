#include "printing/PrintNotice.h"

#include "frame/DocumentWindow.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace tarnwick {

namespace {

QString text(const char* source)
{
    return QCoreApplication::translate("PrintNotice", source);
}

} // namespace

Notice printNotice(const PrintedJob& job, const QString& reason)
{
    const QString title = shownName(job.title);
    if (!reason.isEmpty())
        return {Notice::Kind::isFailure,
            text("%1 has not been printed: %2").arg(title, asSentence(reason))};
    const QString folder = QDir::toNativeSeparators(QFileInfo(job.path).absolutePath());
    const QString done = job.path.isEmpty()
        ? text("%1 has been handed to the printer “%2”.").arg(title, job.printer)
        : text("%1 has been printed into %2 in “%3”.").arg(title, shownName(job.path), folder);
    if (job.missing.isEmpty())
        return {Notice::Kind::isDone, done};
    return {Notice::Kind::isIncomplete, job.missing.join(u' ') + u' ' + done};
}

QString paintingFailure()
{
    return text("The printer or the file cannot be written to");
}

void askBeforeClosing(const QWidget* window, QObject* printing, const QString& title)
{
    if (DocumentWindow* const asking = DocumentWindow::of(window))
        asking->askBeforeClosing(printing,
            {text("%1 is being printed.").arg(shownName(title)),
                text("Closing the window cancels the printing."), text("&Cancel Printing")});
}

void tellOfClosing(const PrintedJob& job)
{
    tellUser(printNotice(job, text("Its window has been closed")), nullptr);
}

} // namespace tarnwick
