#include "printing/PrintNotice.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace tarnwick {

Notice printNotice(const PrintedJob& job, const QString& reason)
{
    const auto text
        = [](const char* source) { return QCoreApplication::translate("PrintNotice", source); };
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

} // namespace tarnwick
