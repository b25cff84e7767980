#pragma once

#include <QString>

class QWidget;

namespace tarnwick {

class FrameDocument;

/// Something that the user is to know and that is worth no alert: what was written and where, what
/// was not and why.
struct Notice
{
    enum class Kind
    {
        isDone,
        isIncomplete, ///< done, but something is missing
        isFailure,
    };

    Kind kind = Kind::isDone;
    QString text; ///< one or two plain sentences; shown as they are, never as markup
    /// What it is about. A later notice of the same subject takes the place of an unread one; empty
    /// for a notice of its own.
    QString subject = {};
};

/// The name that a path ends in, in quotation marks; of a very long one the ends, so that what a
/// notice says behind it is still seen.
QString shownName(const QString& path);

/// The phrase with a full stop, unless it has one.
QString asSentence(const QString& phrase);

/// Shows a notice until it is read: in the window of a widget, else in another window of the
/// document, else in any document window that shows. Only a program that shows none any more says
/// it on standard error.
/// @param near in the window where the command was given; may be null. @param document may be null.
void tellUser(const Notice& notice, const QWidget* near, const FrameDocument* document = nullptr);

} // namespace tarnwick
