#include "TextExcerpt.h"

#include "TextExtract.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tarnwick {

namespace {

TextPosition unitsBefore(const TextStorage& storage, TextPosition position, qsizetype units)
{
    while (position.unit < units) {
        if (position.line == 0)
            return {};
        units -= position.unit + 1;
        --position.line;
        position.unit = storage.lineLength(position.line);
    }
    return {position.line, position.unit - units};
}

TextPosition unitsBehind(const TextStorage& storage, TextPosition position, qsizetype units)
{
    for (;;) {
        const qsizetype left = storage.lineLength(position.line) - position.unit;
        if (units <= left)
            return {position.line, position.unit + units};
        if (position.line + 1 == storage.lineCount())
            return {position.line, position.unit + left};
        units -= left + 1;
        position = {position.line + 1, 0};
    }
}

} // namespace

TextExcerpt::TextExcerpt(
    std::shared_ptr<const TextStorage> storage, TextPosition centre, qsizetype reach)
    : theStorage(std::move(storage))
    , theRange{unitsBefore(*theStorage, centre, reach), unitsBehind(*theStorage, centre, reach)}
    , theReach(reach)
{
    for (qsizetype line = theRange.begin.line; line <= theRange.end.line; ++line) {
        if (line > theRange.begin.line)
            theText += u'\n';
        theLineStarts.append(theText.size());
        const qsizetype from = line == theRange.begin.line ? theRange.begin.unit : 0;
        const qsizetype to
            = line == theRange.end.line ? theRange.end.unit : theStorage->lineLength(line);
        theText += theStorage->line(line, from, to - from).text;
    }
}

bool TextExcerpt::coversWell(TextPosition position) const
{
    if (!theStorage || position < theRange.begin || position > theRange.end)
        return false;
    const qsizetype last = theStorage->lineCount() - 1;
    const bool holdsBeginning = theRange.begin == TextPosition{};
    const bool holdsEnd
        = theRange.end.line == last && theRange.end.unit == theStorage->lineLength(last);
    const int offset = offsetOf(position);
    return (holdsBeginning || offset >= theReach / 4)
        && (holdsEnd || theText.size() - offset >= theReach / 4);
}

int TextExcerpt::offsetOf(TextPosition position) const
{
    if (!theStorage || position <= theRange.begin)
        return 0;
    if (position >= theRange.end)
        return static_cast<int>(theText.size());
    const qsizetype line = position.line - theRange.begin.line;
    const qsizetype cut = line == 0 ? theRange.begin.unit : 0;
    return static_cast<int>(theLineStarts[line] + position.unit - cut);
}

TextPosition TextExcerpt::positionOf(int offset) const
{
    if (!theStorage)
        return {};
    const qsizetype bounded = std::clamp<qsizetype>(offset, 0, theText.size());
    const auto after = std::upper_bound(theLineStarts.begin(), theLineStarts.end(), bounded);
    const qsizetype line = std::distance(theLineStarts.begin(), after) - 1;
    const qsizetype cut = line == 0 ? theRange.begin.unit : 0;
    return {theRange.begin.line + line, bounded - theLineStarts[line] + cut};
}

} // namespace tarnwick
