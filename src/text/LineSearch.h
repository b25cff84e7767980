#pragma once

#include "text/TextPosition.h"
#include "text/TextStorage.h"

#include <QStringMatcher>

#include <functional>
#include <memory>
#include <optional>

namespace tarnwick {

/// Finds a piece of text in the lines of a text, portion by portion.
///
/// A match lies within one line, and matches do not overlap: the search goes on behind each.
/// Letters are compared with or without their case, and otherwise as they stand: most of what views
/// show is a file's bytes, one to a character, where "é" and "e" with an accent, a soft hyphen or a
/// line's end are different bytes, and whoever looks for some wants these. What pages say is
/// searched by other rules, and by another class: it knows characters that are the same, words
/// that are broken and lines that only the layout has ended. Any thread may use it; a thread of its
/// own needs a copy.
class LineSearch
{
public:
    /// @param wanted without line ends; an empty one matches nothing.
    LineSearch(
        std::shared_ptr<const TextStorage> storage, const QString& wanted, Qt::CaseSensitivity);

    const TextStorage& storage() const { return *theStorage; }
    qsizetype wantedLength() const { return theMatcher.pattern().size(); }

    /// Gets a match; false ends the search behind it.
    using Sink = std::function<bool(TextRange match)>;

    /// Hands over the matches that begin in a range, in order, until about so many units are read.
    /// @returns where to go on; range.end when the range is searched.
    TextPosition search(TextRange range, qsizetype units, const Sink& sink) const;

    /// The whole text.
    TextRange everything() const;

private:
    std::shared_ptr<const TextStorage> theStorage;
    QStringMatcher theMatcher;
};

} // namespace tarnwick
