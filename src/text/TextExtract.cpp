#include "TextExtract.h"

#include <algorithm>
#include <utility>

namespace tarnwick {

namespace {

/// Units that are taken from a line between two looks at the clock.
constexpr qsizetype stretch = 256 * 1024;

} // namespace

TextPosition clampedToText(const TextStorage& storage, TextPosition position)
{
    if (position.line < 0)
        return {};
    const qsizetype last = storage.lineCount() - 1;
    if (position.line > last)
        return {last, storage.lineLength(last)};
    return {
        position.line, std::clamp<qsizetype>(position.unit, 0, storage.lineLength(position.line))};
}

TextCollector::TextCollector(
    std::shared_ptr<const TextStorage> storage, TextRange range, qsizetype limit)
    : theStorage(std::move(storage))
    , theNext(range.begin)
    , theEnd(range.end)
    , theLimit(limit)
{
}

bool TextCollector::advance(QDeadlineTimer deadline)
{
    for (int stretches = 1; !theIsDone; ++stretches) {
        collectStretch();
        if (stretches % 64 == 0 && deadline.hasExpired())
            break;
    }
    return !theIsDone;
}

void TextCollector::collectStretch()
{
    const bool isLastLine = theNext.line == theEnd.line;
    const qsizetype length = isLastLine ? theEnd.unit : theStorage->lineLength(theNext.line);
    const qsizetype wanted = std::min(length - theNext.unit, stretch);
    const qsizetype room = theLimit - theText.size();
    theText += theStorage->line(theNext.line, theNext.unit, std::min(wanted, room)).text;
    theNext.unit += wanted;
    theIsCut = wanted > room;
    theIsDone = theIsCut || (isLastLine && theNext.unit >= length);
    if (!theIsDone && theNext.unit == length)
        collectLineEnd();
    if (theIsCut && !theText.isEmpty() && theText.back().isHighSurrogate())
        theText.chop(1);
}

void TextCollector::collectLineEnd()
{
    const QString end = theStorage->lineEnd(theNext.line);
    theIsCut = theIsDone = theLimit - theText.size() < end.size();
    if (!theIsDone)
        theText += end;
    theNext = {theNext.line + 1, 0};
}

QString textOf(std::shared_ptr<const TextStorage> storage, TextRange range, qsizetype limit)
{
    TextCollector collector(std::move(storage), range, limit);
    collector.advance(QDeadlineTimer::Forever);
    return collector.text();
}

qsizetype unitsIn(
    const TextStorage& storage, TextRange range, qsizetype limit, QDeadlineTimer deadline)
{
    if (range.begin.line == range.end.line)
        return std::min(range.end.unit - range.begin.unit, limit + 1);
    constexpr qsizetype longestEnd = 2;
    qsizetype units
        = storage.lineLength(range.begin.line) - range.begin.unit + longestEnd + range.end.unit;
    for (qsizetype line = range.begin.line + 1; line < range.end.line; ++line) {
        if (units > limit || (line % 64 == 0 && deadline.hasExpired()))
            return limit + 1;
        units += storage.lineLength(line) + longestEnd;
    }
    return std::min(units, limit + 1);
}

} // namespace tarnwick
