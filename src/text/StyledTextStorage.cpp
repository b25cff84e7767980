#include "text/StyledTextStorage.h"

#include <cassert>
#include <string>
#include <utility>

namespace tarnwick {

StyledTextStorage::StyledTextStorage(StyledText text)
    : theText(std::move(text))
    , theLineCount(static_cast<qsizetype>(theText.lineCount()))
{
}

qsizetype StyledTextStorage::lineCount() const
{
    return theLineCount;
}

qsizetype StyledTextStorage::lineLength(qsizetype index) const
{
    assert(index >= 0 && index < theLineCount);
    return static_cast<qsizetype>(theText.lineLength(static_cast<std::size_t>(index)));
}

std::optional<std::size_t> StyledTextStorage::lineOffset(qsizetype index) const
{
    assert(index >= 0 && index < theLineCount);
    return theText.offsetOfLine(static_cast<std::size_t>(index));
}

TextLine StyledTextStorage::line(qsizetype index, qsizetype position, qsizetype count) const
{
    assert(index >= 0 && index < theLineCount);
    std::u16string text;
    const ColourRole role = theText.appendLine(static_cast<std::size_t>(index),
        static_cast<std::size_t>(position), static_cast<std::size_t>(count), text);
    return {QString::fromStdU16String(text), role};
}

} // namespace tarnwick
