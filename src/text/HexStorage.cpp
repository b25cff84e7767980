#include "text/HexStorage.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace tarnwick {

namespace {

constexpr qsizetype groupSize = 8;
/// "25 50 44 46 2D 31 2E 37  0A 25 E2 E3 CF D3 0A 31", without blanks around it.
constexpr qsizetype hexWidth = 48;
constexpr qsizetype columnGap = 2;
constexpr qsizetype usualDigits = 8;
constexpr qsizetype manyDigits = 12; // from 4 GB on

/// Units of the hexadecimal column before a byte.
qsizetype hexUnit(qsizetype index)
{
    return 3 * index + (index >= groupSize ? 1 : 0);
}

QChar hexDigit(std::size_t value)
{
    return QLatin1Char("0123456789ABCDEF"[value & 0xF]);
}

QChar shown(unsigned char byte)
{
    return byte >= 0x20 && byte < 0x7F ? QLatin1Char(static_cast<char>(byte)) : QChar(u'\u00B7');
}

/// The part of marks that lies within a stretch of their line.
QList<TextMark> clipped(const QList<TextMark>& marks, qsizetype position, qsizetype count)
{
    QList<TextMark> rest;
    for (const TextMark& mark : marks) {
        const qsizetype begin = std::max(mark.start, position);
        const qsizetype end = std::min(mark.start + mark.length, position + count);
        if (begin < end)
            rest.append({begin - position, end - begin, mark.kind});
    }
    return rest;
}

} // namespace

HexStorage::HexStorage(SharedBytes bytes, const StrayBytes& stray)
    : theBytes(std::move(bytes))
    , theStray(stray)
    , theDigits(size() >> 32 == 0 ? usualDigits : manyDigits)
{
}

qsizetype HexStorage::textColumn() const
{
    return hexColumn() + hexWidth + columnGap;
}

qsizetype HexStorage::lineCount() const
{
    return static_cast<qsizetype>(size() / bytesPerLine) + 1;
}

std::size_t HexStorage::bytesIn(qsizetype line) const
{
    return std::min(bytesPerLine, size() - static_cast<std::size_t>(line) * bytesPerLine);
}

qsizetype HexStorage::lineLength(qsizetype index) const
{
    assert(index >= 0 && index < lineCount());
    const std::size_t count = bytesIn(index);
    return count == 0 ? hexColumn() : textColumn() + static_cast<qsizetype>(count);
}

std::optional<std::size_t> HexStorage::lineOffset(qsizetype index) const
{
    return static_cast<std::size_t>(index) * bytesPerLine;
}

TextLine HexStorage::line(qsizetype index, qsizetype position, qsizetype count) const
{
    assert(index >= 0 && index < lineCount());
    return {wholeLine(index).mid(position, count), ColourRole::isDefault,
        clipped(marksOf(index), position, count)};
}

QString HexStorage::wholeLine(qsizetype index) const
{
    QString text(lineLength(index), u' ');
    QChar* const units = text.data();
    const std::size_t offset = static_cast<std::size_t>(index) * bytesPerLine;
    for (qsizetype digit = 0; digit < theDigits; ++digit)
        units[digit] = hexDigit(offset >> (4 * (theDigits - 1 - digit)));
    const std::string_view bytes = theBytes.view.substr(offset, bytesPerLine);
    for (qsizetype at = 0; at < static_cast<qsizetype>(bytes.size()); ++at) {
        const auto byte = static_cast<unsigned char>(bytes[static_cast<std::size_t>(at)]);
        QChar* const cell = units + hexColumn() + hexUnit(at);
        cell[0] = hexDigit(byte >> 4);
        cell[1] = hexDigit(byte);
        units[textColumn() + at] = shown(byte);
    }
    return text;
}

QList<TextMark> HexStorage::marksOf(qsizetype index) const
{
    QList<TextMark> marks{{0, theDigits, TextMark::Kind::isAside}};
    const std::size_t begin = static_cast<std::size_t>(index) * bytesPerLine;
    const std::size_t end = begin + bytesIn(index);
    addStray(begin, std::min(end, theStray.header.value_or(0)), marks);
    addStray(std::max(begin, theStray.end.value_or(size())), end, marks);
    return marks;
}

void HexStorage::addStray(std::size_t begin, std::size_t end, QList<TextMark>& marks) const
{
    if (begin >= end)
        return;
    for (const Column column : {Column::isHex, Column::isText}) {
        const TextRange range = rangeOf(begin, end, column);
        marks.append(
            {range.begin.unit, range.end.unit - range.begin.unit, TextMark::Kind::isStray});
    }
}

TextPosition HexStorage::positionOf(std::size_t byte, Column column) const
{
    assert(byte <= size());
    const auto line = static_cast<qsizetype>(byte / bytesPerLine);
    const auto index = static_cast<qsizetype>(byte % bytesPerLine);
    // A last line without bytes ends where the first one would stand.
    const bool isHex = column == Column::isHex || bytesIn(line) == 0;
    return {line, isHex ? hexColumn() + hexUnit(index) : textColumn() + index};
}

std::size_t HexStorage::byteAt(TextPosition position) const
{
    const std::size_t begin = static_cast<std::size_t>(position.line) * bytesPerLine;
    qsizetype index = 0;
    if (columnOf(position) == Column::isText)
        index = std::max<qsizetype>(0, position.unit - textColumn());
    else if (position.unit >= hexColumn() + hexUnit(groupSize) - 1)
        index = (position.unit - hexColumn() - 1) / 3;
    else if (position.unit > hexColumn())
        index = (position.unit - hexColumn()) / 3;
    const std::size_t count = bytesIn(position.line);
    const std::size_t last = count == bytesPerLine ? bytesPerLine - 1 : count;
    return begin + std::min(static_cast<std::size_t>(index), last);
}

HexStorage::Column HexStorage::columnOf(TextPosition position) const
{
    return position.unit >= textColumn() - 1 ? Column::isText : Column::isHex;
}

TextRange HexStorage::rangeOf(std::size_t begin, std::size_t end, Column column) const
{
    assert(begin < end && begin / bytesPerLine == (end - 1) / bytesPerLine);
    TextPosition last = positionOf(end - 1, column);
    last.unit += column == Column::isHex ? 2 : 1;
    return {positionOf(begin, column), last};
}

} // namespace tarnwick
