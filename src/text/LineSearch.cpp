#include "LineSearch.h"

#include <algorithm>
#include <utility>

namespace tarnwick {

namespace {

/// Units of a line that are looked at in one go.
constexpr qsizetype stretch = 64 * 1024;
/// What reaching a line costs, in units read.
constexpr qsizetype lineCost = 32;

} // namespace

LineSearch::LineSearch(std::shared_ptr<const TextStorage> storage, const QString& wanted,
    Qt::CaseSensitivity sensitivity)
    : theStorage(std::move(storage))
    , theMatcher(wanted, sensitivity)
{
}

TextRange LineSearch::everything() const
{
    // Behind every position of the last line, so that its matches are all before it.
    return {{}, {theStorage->lineCount(), 0}};
}

TextPosition LineSearch::search(TextRange range, qsizetype units, const Sink& sink) const
{
    const qsizetype length = wantedLength();
    const qsizetype lines = theStorage->lineCount();
    TextPosition at = range.begin;
    if (length == 0)
        return range.end;
    while (at < range.end && at.line < lines && units > 0) {
        const QString text = theStorage->line(at.line, at.unit, stretch + length - 1).text;
        qsizetype next = 0; // where the next match may begin
        for (;;) {
            const qsizetype found = theMatcher.indexIn(text, next);
            if (found < 0 || found >= stretch)
                break;
            const TextPosition begin{at.line, at.unit + found};
            if (begin >= range.end)
                return range.end;
            next = found + length;
            if (!sink({begin, {at.line, at.unit + next}}))
                return {at.line, at.unit + next};
        }
        units -= text.size() + lineCost;
        const bool isWhole = text.size() < stretch + length - 1;
        at = isWhole ? TextPosition{at.line + 1, 0}
                     : TextPosition{at.line, at.unit + std::max(stretch, next)};
    }
    return std::min(at, range.end);
}

} // namespace tarnwick
