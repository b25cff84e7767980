#pragma once

#include "frame/Notice.h"

#include <QStringList>

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

} // namespace tarnwick
