#pragma once

#include "frame/Notice.h"

#include <QStringList>

class QObject;
class QWidget;

namespace tarnwick {

/// What has been printed where.
struct PrintedJob
{
    QString title; ///< of what is printed
    QString path; ///< of the file that is printed into; empty on paper
    QString printer; ///< name of the queue
    QStringList missing = {}; ///< what of the pages is not on the paper, as sentences
};

/// What the user is told at a printing's end. @param reason why nothing was printed, as a phrase
/// without full stop; empty when it was.
Notice printNotice(const PrintedJob& job, const QString& reason);

/// The reason when what is painted on takes no more, as a phrase likewise.
QString paintingFailure();

/// Has the window in which somebody prints ask before it closes.
/// @param printing destroyed when the user closes it nevertheless. @param window may be any.
void askBeforeClosing(const QWidget* window, QObject* printing, const QString& title);

/// Tells that a printing has ended because its window or document has gone. @param job of which
/// nothing is printed.
void tellOfClosing(const PrintedJob& job);

} // namespace tarnwick
