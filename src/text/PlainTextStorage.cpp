#include "text/PlainTextStorage.h"

#include "analysis/BlockMasks.h"

#include <algorithm>
#include <cassert>

namespace tarnwick {

namespace {

bool endsLine(char16_t unit)
{
    return (unit >= 0x0A && unit <= 0x0D) || unit == 0x85 || unit == 0x2028 || unit == 0x2029;
}

std::size_t nextBreak(std::string_view text, std::size_t offset)
{
    return nextLineBreak(text, offset);
}

std::size_t nextBreak(std::u16string_view text, std::size_t offset)
{
    const auto found
        = std::find_if(text.begin() + static_cast<std::ptrdiff_t>(offset), text.end(), endsLine);
    return static_cast<std::size_t>(found - text.begin());
}

/// Where the line behind a line end begins. Precondition: a line ends at end < text.size().
template<class Text> std::size_t behindBreak(const Text& text, std::size_t end)
{
    const bool isPair = text[end] == '\r' && end + 1 < text.size() && text[end + 1] == '\n';
    return end + (isPair ? 2 : 1);
}

template<class Text> LineIndex indexOf(const Text& text)
{
    LineIndex index;
    std::size_t end = nextBreak(text, 0);
    while (end < text.size()) {
        const std::size_t start = behindBreak(text, end);
        index.append(start);
        end = nextBreak(text, start);
    }
    index.shrink();
    return index;
}

template<class Text>
std::size_t startOfLine(const Text& text, const LineIndex& index, std::size_t line)
{
    LineIndex::Start start = index.before(line);
    for (; start.line < line; ++start.line)
        start.offset = behindBreak(text, nextBreak(text, start.offset));
    return start.offset;
}

/// The end of the line that begins at start, its line end not counted.
template<class Text>
std::size_t endOfLine(const Text& text, const LineIndex& index, std::size_t line, std::size_t start)
{
    if (line + 1 == index.lineCount())
        return text.size();
    const std::optional<std::size_t> next = index.kept(line + 1);
    if (!next)
        return nextBreak(text, start);
    const bool isPair = *next >= start + 2 && text[*next - 1] == '\n' && text[*next - 2] == '\r';
    return *next - (isPair ? 2 : 1);
}

std::u16string_view view(const QString& text)
{
    return {reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size())};
}

std::string_view view(const SharedBytes& bytes)
{
    return bytes.view;
}

} // namespace

PlainTextStorage::PlainTextStorage(const QString& text)
    : theText(text)
    , theIndex(indexOf(view(text)))
{
}

PlainTextStorage::PlainTextStorage(const SharedBytes& bytes)
    : theText(bytes)
    , theIndex(indexOf(bytes.view))
{
}

qsizetype PlainTextStorage::lineCount() const
{
    return static_cast<qsizetype>(theIndex.lineCount());
}

PlainTextStorage::Extent PlainTextStorage::extent(std::size_t index) const
{
    return std::visit(
        [&](const auto& text) -> Extent {
            const std::size_t begin = startOfLine(view(text), theIndex, index);
            return {begin, endOfLine(view(text), theIndex, index, begin)};
        },
        theText);
}

qsizetype PlainTextStorage::lineAt(qsizetype position) const
{
    const auto wanted = static_cast<std::size_t>(position);
    std::size_t first = 0; // begins at or before the position
    std::size_t behind = theIndex.lineCount(); // begins behind it
    while (behind - first > 1) {
        const std::size_t middle = first + (behind - first) / 2;
        if (extent(middle).begin <= wanted)
            first = middle;
        else
            behind = middle;
    }
    return static_cast<qsizetype>(first);
}

TextPosition PlainTextStorage::placeOf(qsizetype position) const
{
    const qsizetype line = lineAt(position);
    const Extent whole = extent(static_cast<std::size_t>(line));
    const qsizetype unit = position - static_cast<qsizetype>(whole.begin);
    return {line, std::min(unit, static_cast<qsizetype>(whole.end - whole.begin))};
}

qsizetype PlainTextStorage::positionOf(TextPosition place) const
{
    return static_cast<qsizetype>(extent(static_cast<std::size_t>(place.line)).begin) + place.unit;
}

qsizetype PlainTextStorage::lineLength(qsizetype index) const
{
    assert(index >= 0 && index < lineCount());
    const Extent whole = extent(static_cast<std::size_t>(index));
    return static_cast<qsizetype>(whole.end - whole.begin);
}

TextLine PlainTextStorage::line(qsizetype index, qsizetype position, qsizetype count) const
{
    assert(index >= 0 && index < lineCount());
    const Extent whole = extent(static_cast<std::size_t>(index));
    const auto begin = static_cast<qsizetype>(whole.begin) + position;
    const qsizetype length = std::min(count, static_cast<qsizetype>(whole.end) - begin);
    return {characters(begin, length), ColourRole::isDefault};
}

QString PlainTextStorage::lineEnd(qsizetype index) const
{
    assert(index >= 0 && index + 1 < lineCount());
    const std::size_t end = extent(static_cast<std::size_t>(index)).end;
    const std::size_t next
        = std::visit([&](const auto& text) { return behindBreak(view(text), end); }, theText);
    return characters(static_cast<qsizetype>(end), static_cast<qsizetype>(next - end));
}

std::optional<std::size_t> PlainTextStorage::lineOffset(qsizetype index) const
{
    assert(index >= 0 && index < lineCount());
    if (std::holds_alternative<QString>(theText))
        return std::nullopt;
    return extent(static_cast<std::size_t>(index)).begin;
}

QString PlainTextStorage::characters(qsizetype begin, qsizetype length) const
{
    if (const auto* text = std::get_if<QString>(&theText))
        return text->mid(begin, length);
    return QString::fromLatin1(std::get<SharedBytes>(theText).view.data() + begin, length);
}

} // namespace tarnwick
