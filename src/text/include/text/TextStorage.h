#pragma once

#include "analysis/ColourRole.h"
#include "text/TextPosition.h"

#include <QList>
#include <QString>

#include <cstddef>
#include <optional>

namespace tarnwick {

/// A stretch of a line that looks otherwise than the rest of it.
struct TextMark
{
    enum class Kind
    {
        isAside, ///< says something about the text: dimmed
        isStray, ///< does not belong where it stands: shaded and underlined
        isColoured, ///< in the colour of its role
    };
    qsizetype start = 0; ///< UTF-16 units of the served characters before it
    qsizetype length = 0;
    Kind kind = Kind::isAside;
    ColourRole role = ColourRole::isDefault; ///< of one that isColoured

    bool operator==(const TextMark&) const = default;
};

/// One line of a text as a view draws it: its characters without the line end, in one colour but
/// for what is marked.
struct TextLine
{
    QString text;
    ColourRole role = ColourRole::isDefault;
    QList<TextMark> marks = {};
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
        return QString(u'\n');
    }

    /// Where the text of a line begins in the bytes that it was made from; nothing where nobody
    /// knows, or where the text is not made from bytes. Precondition as for line().
    virtual std::optional<std::size_t> lineOffset(qsizetype index) const
    {
        Q_UNUSED(index)
        return std::nullopt;
    }

    /// The link that holds a place or ends there: a stretch of text that leads elsewhere when it is
    /// followed. Nothing where the text has none. Looks at some characters around the place,
    /// however long the line. Precondition: a place of the text.
    virtual std::optional<TextRange> linkAt(TextPosition position) const
    {
        Q_UNUSED(position)
        return std::nullopt;
    }
};

} // namespace tarnwick
