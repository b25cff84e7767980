#include "text/StyledTextStorage.h"

#include "analysis/pdfObject.h"

#include <algorithm>
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

// --- Places in the file --------------------------------------------------------------------------

std::optional<std::size_t> StyledTextStorage::offsetOf(TextPosition position) const
{
    const auto line = static_cast<std::size_t>(position.line);
    if (theText.objectOfLine(line))
        return std::nullopt;
    const std::optional<std::size_t> begin = theText.offsetOfLine(line);
    const bool isCut = isElided(line);
    return begin ? std::optional(*begin + (isCut ? 0 : static_cast<std::size_t>(position.unit)))
                 : std::nullopt;
}

std::optional<TextPosition> StyledTextStorage::placeOf(std::size_t offset) const
{
    const std::optional<std::size_t> line = theText.lineOfOffset(offset);
    if (!line)
        return std::nullopt;
    const std::size_t begin = theText.offsetOfLine(*line).value_or(offset);
    const std::size_t unit = offset > begin && !isElided(*line)
        ? std::min(offset - begin, theText.lineLength(*line))
        : 0;
    return TextPosition{static_cast<qsizetype>(*line), static_cast<qsizetype>(unit)};
}

/// A line of the listing that stands for a stream: its characters are none of the file.
bool StyledTextStorage::isElided(std::size_t line) const
{
    std::u16string none;
    return !theText.objectOfLine(line)
        && theText.appendLine(line, 0, 0, none) == ColourRole::isBlue;
}

// --- References ----------------------------------------------------------------------------------

std::optional<TextRange> StyledTextStorage::linkAt(TextPosition position) const
{
    const std::optional<Reference> reference = referenceAt(position);
    return reference ? std::optional(reference->range) : std::nullopt;
}

std::optional<StyledTextStorage::Reference> StyledTextStorage::referenceAt(
    TextPosition position) const
{
    const auto line = static_cast<std::size_t>(position.line);
    return theText.objectOfLine(line) ? listReferenceAt(position) : sourceReferenceAt(position);
}

std::optional<StyledTextStorage::Reference> StyledTextStorage::listReferenceAt(
    TextPosition position) const
{
    const auto unit = static_cast<std::size_t>(position.unit);
    const std::size_t begin = unit - std::min(unit, ReferenceScan::reach);
    std::u16string text;
    theText.appendLine(
        static_cast<std::size_t>(position.line), begin, 2 * ReferenceScan::reach, text);
    auto target = ReferenceScan::listReferenceAt(std::u16string_view(text), unit - begin);
    if (!target) // plain objects are shown with a line of their source
        target = ReferenceScan::sourceReferenceAt(std::u16string_view(text), unit - begin);
    if (!target)
        return std::nullopt;
    const auto at = [&](std::size_t place) {
        return TextPosition{position.line, static_cast<qsizetype>(begin + place)};
    };
    return Reference{*target, {at(target->begin), at(target->end)}};
}

/// Looked for in the file rather than in the line: a reference may be broken over two.
std::optional<StyledTextStorage::Reference> StyledTextStorage::sourceReferenceAt(
    TextPosition position) const
{
    const auto line = static_cast<std::size_t>(position.line);
    const std::optional<std::size_t> offset = offsetOf(position);
    if (!offset || isElided(line) || theText.lineLength(line) == 0)
        return std::nullopt;
    const auto target = ReferenceScan::sourceReferenceAt(theText.bytes(), *offset);
    if (!target)
        return std::nullopt;
    const std::optional<TextPosition> begin = placeOf(target->begin);
    const std::optional<TextPosition> end = placeOf(target->end);
    if (!begin || !end || position < *begin || *end < position)
        return std::nullopt;
    return Reference{*target, {*begin, *end}};
}

} // namespace tarnwick
