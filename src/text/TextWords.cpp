#include "TextWords.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace tarnwick {

namespace {

/// Units that are looked at on each side of a place.
constexpr qsizetype reach = 2048;

/// The part of a line around a place.
struct Surroundings
{
    Surroundings(const TextStorage& storage, TextPosition position)
        : start(std::max<qsizetype>(0, position.unit - reach))
        , text(storage.line(position.line, start, position.unit - start + reach).text)
        , finder(QTextBoundaryFinder::Word, text)
    {
        finder.setPosition(position.unit - start);
    }

    bool isSpaceAt(qsizetype at) const { return at < text.size() && text.at(at).isSpace(); }

    qsizetype start;
    QString text;
    QTextBoundaryFinder finder;
};

} // namespace

TextRange wordAt(const TextStorage& storage, TextPosition position)
{
    Surroundings around(storage, position);
    if (around.text.isEmpty())
        return {position, position};
    if (position.unit == storage.lineLength(position.line))
        around.finder.toPreviousBoundary();
    else if (!around.finder.isAtBoundary())
        around.finder.toPreviousBoundary();
    const qsizetype begin = around.finder.position();
    qsizetype end = around.finder.toNextBoundary();
    while (around.isSpaceAt(begin) && around.isSpaceAt(end))
        ++end;
    return {{position.line, around.start + begin},
        {position.line, around.start + std::max(begin, end)}};
}

TextPosition nextWord(const TextStorage& storage, TextPosition position)
{
    if (position.unit == storage.lineLength(position.line)) {
        const bool isLast = position.line + 1 == storage.lineCount();
        return isLast ? position : TextPosition{position.line + 1, 0};
    }
    Surroundings around(storage, position);
    qsizetype at = around.finder.toNextBoundary();
    while (around.isSpaceAt(at))
        ++at;
    return {position.line, around.start + std::max<qsizetype>(at, 0)};
}

TextPosition previousWord(const TextStorage& storage, TextPosition position)
{
    if (position.unit == 0) {
        if (position.line == 0)
            return position;
        return {position.line - 1, storage.lineLength(position.line - 1)};
    }
    Surroundings around(storage, position);
    qsizetype at = position.unit - around.start;
    while (at > 0 && around.isSpaceAt(at - 1))
        --at;
    around.finder.setPosition(at);
    return {
        position.line, around.start + std::max<qsizetype>(around.finder.toPreviousBoundary(), 0)};
}

} // namespace tarnwick
