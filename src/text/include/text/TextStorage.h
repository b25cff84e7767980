#pragma once

#include "analysis/ColourRole.h"

#include <QString>

namespace tarnwick {

/// One line of a text as a view draws it: its characters without the line end, in one colour.
struct TextLine
{
    QString text;
    ColourRole role = ColourRole::isDefault;
};

/// A text that serves its lines one by one, so that a view of a gigabyte keeps only what shows.
///
/// Never changes once a view holds it; line() may be called from any thread.
class TextStorage
{
public:
    virtual ~TextStorage() = default;

    /// Number of lines, at least 1: an empty text has one empty line, and a text that ends with a
    /// line end has an empty last line.
    virtual qsizetype lineCount() const = 0;

    /// Number of UTF-16 units of a line, cheaper than making it. Precondition as for line().
    virtual qsizetype lineLength(qsizetype index) const = 0;

    /// A line, or a stretch of it: at most count UTF-16 units from the unit at position on. Lines
    /// can be a gigabyte long, so views ask for the stretch that they need.
    /// Precondition: 0 <= index < lineCount(), 0 <= position <= lineLength(index).
    virtual TextLine line(
        qsizetype index, qsizetype position = 0, qsizetype count = 1'000'000) const = 0;

    /// What ends a line, as it stands in the text: at most two UTF-16 units. A line feed unless the
    /// text has something else. Precondition: 0 <= index < lineCount() - 1.
    virtual QString lineEnd(qsizetype index) const
    {
        Q_UNUSED(index)
        return QStringLiteral("\n");
    }
};

} // namespace tarnwick
