// The part of TextViewLayout that turns points into places of the text and back.
#include "text/TextViewLayout.h"

#include <algorithm>
#include <cmath>

namespace tarnwick {

namespace {

/// Segments that are laid out to the side of the visible ones to find a place; beyond, it is
/// estimated.
constexpr qsizetype nearSegments = 4;

} // namespace

std::shared_ptr<const TextSegment> TextViewLayout::segmentOf(TextPosition position) const
{
    return theSegments.segment(position.line, theSegments.indexOf(position));
}

TextViewLayout::Row TextViewLayout::rowOf(TextPosition position) const
{
    const Block block = blockOf(position);
    if (!theSegments.isWrapped())
        return {block, 0};
    const auto segment = theSegments.segment(block.line, block.segment);
    return {block, segment->rowOf(position.unit - segment->start)};
}

// --- Long lines without wrapping -------------------------------------------------------------
// A line of several segments cannot be measured up to a place far behind. Its segments count as
// equally wide; the one at the left edge is shown from the share of it that is scrolled to, and its
// neighbours adjoin it at their true widths. In a fixed-pitch font both widths are the same.

qreal TextViewLayout::usualSegmentWidth() const
{
    return static_cast<qreal>(theSegments.segmentSize()) * characterWidth();
}

/// Of a line of several segments, by its length: laying out its end as well would double the work
/// for a window full of long lines.
qreal TextViewLayout::unwrappedWidth(qsizetype line) const
{
    if (theSegments.count(line) == 1)
        return theSegments.segment(line, 0)->width;
    return static_cast<qreal>(storage().lineLength(line)) * characterWidth();
}

void TextViewLayout::visitUnwrapped(qsizetype line, qreal y, const SegmentVisitor& visit) const
{
    const qsizetype count = theSegments.count(line);
    theWidest = std::max(theWidest, unwrappedWidth(line));
    if (count == 1) {
        visit(*theSegments.segment(line, 0), {margin - theLeft, y});
        return;
    }
    const qreal passed = theLeft / usualSegmentWidth();
    qsizetype index = std::min(static_cast<qsizetype>(passed), count - 1);
    auto segment = theSegments.segment(line, index);
    const qreal share = passed - static_cast<qreal>(index);
    const qreal hidden = share * (segment->endsLine ? usualSegmentWidth() : segment->width);
    qreal x = margin - std::round(hidden);
    while (x < theSize.width()) {
        visit(*segment, {x, y});
        x += segment->width;
        if (++index == count) {
            // The end shows: from here on its true width counts, so that all of it can be reached.
            theWidest = std::max(theWidest, x + theLeft - margin);
            break;
        }
        segment = theSegments.segment(line, index);
    }
}

TextPosition TextViewLayout::positionInLine(qsizetype line, qreal x) const
{
    TextPosition position{line, 0};
    visitUnwrapped(line, 0, [&](const TextSegment& segment, QPointF origin) {
        if (position.unit == 0 || x >= origin.x())
            position.unit = segment.start + segment.cursorAt(0, x - origin.x());
    });
    return position;
}

/// Where a place is on the view; estimated when it is far outside.
qreal TextViewLayout::xOf(TextPosition position) const
{
    const qsizetype index = theSegments.indexOf(position);
    const auto segment = theSegments.segment(position.line, index);
    const qreal within = segment->xOf(position.unit - segment->start);
    if (theSegments.isWrapped())
        return margin + within;
    std::optional<qreal> x;
    visitUnwrapped(position.line, 0, [&](const TextSegment& visible, QPointF origin) {
        if (visible.start == segment->start)
            x = origin.x() + within;
    });
    return x.value_or(margin + usualX(position) - theLeft);
}

/// Pixels from the line's beginning, segments counting as equally wide.
qreal TextViewLayout::usualX(TextPosition position) const
{
    const qsizetype index = theSegments.indexOf(position);
    const auto segment = theSegments.segment(position.line, index);
    const qreal within = segment->xOf(position.unit - segment->start);
    if (theSegments.isWrapped() || segment->endsLine)
        return static_cast<qreal>(theSegments.isWrapped() ? 0 : index) * usualSegmentWidth()
            + within;
    const qreal share = segment->width > 0 ? within / segment->width : 0;
    return (static_cast<qreal>(index) + share) * usualSegmentWidth();
}

void TextViewLayout::revealAcross(TextPosition position)
{
    if (theSegments.isWrapped())
        return;
    theWidest = std::max(theWidest, unwrappedWidth(position.line));
    const qreal right = theSize.width() - margin;
    const qreal x = xOf(position);
    if (x < margin)
        setLeft(usualX(position) - (usualX(position) < right ? 0 : theSize.width() / 3));
    else if (x > right)
        setLeft(usualX(position) - theSize.width() * 2 / 3);
    if (x < margin && usualX(position) < right / 2)
        setLeft(0);
}

// --- Places ----------------------------------------------------------------------------------

TextPosition TextViewLayout::positionAt(QPointF point) const
{
    Block block = theTop;
    qreal y = -theHidden;
    while (point.y() < y) {
        const std::optional<Block> before = previous(block);
        if (!before)
            break;
        block = *before;
        y -= heightOf(block);
    }
    while (point.y() >= y + heightOf(block)) {
        const std::optional<Block> after = next(block);
        if (!after)
            break;
        y += heightOf(block);
        block = *after;
    }
    if (!theSegments.isWrapped())
        return positionInLine(block.line, point.x());
    const int row = static_cast<int>((point.y() - y) / rowHeight()) - gapRows(block);
    return positionInRow({block, std::clamp(row, 0, rowsOf(block) - 1)}, point.x() - margin);
}

TextPosition TextViewLayout::positionInRow(Row row, qreal distance) const
{
    qsizetype index = row.block.segment;
    qreal within = distance;
    if (!theSegments.isWrapped()) {
        const qsizetype count = theSegments.count(row.block.line);
        const qreal passed = std::max(0.0, distance / usualSegmentWidth());
        index = std::min(static_cast<qsizetype>(passed), count - 1);
        within = distance - static_cast<qreal>(index) * usualSegmentWidth();
        if (index + 1 < count) {
            const auto segment = theSegments.segment(row.block.line, index);
            within *= segment->width / usualSegmentWidth();
        }
    }
    const auto segment = theSegments.segment(row.block.line, index);
    return {row.block.line, segment->start + segment->cursorAt(row.number, within)};
}

std::optional<QRectF> TextViewLayout::caretAt(TextPosition position) const
{
    const std::optional<qreal> y = heightInView(rowOf(position));
    if (!y || *y <= -rowHeight() || *y >= theSize.height())
        return std::nullopt;
    return QRectF(xOf(position), *y, 0, rowHeight());
}

qreal TextViewLayout::distanceFromLineStart(TextPosition position) const
{
    return usualX(position);
}

TextPosition TextViewLayout::rowsBelow(
    TextPosition position, int rows, qreal distanceFromLineStart) const
{
    Row row = rowOf(position);
    row.number += rows;
    while (row.number < 0) {
        const std::optional<Block> before = previous(row.block);
        if (!before)
            return {0, 0};
        row.block = *before;
        row.number += rowsOf(row.block);
    }
    while (row.number >= rowsOf(row.block)) {
        const std::optional<Block> after = next(row.block);
        if (!after) {
            const qsizetype last = storage().lineCount() - 1;
            return {last, storage().lineLength(last)};
        }
        row.number -= rowsOf(row.block);
        row.block = *after;
    }
    return positionInRow(row, distanceFromLineStart);
}

TextPosition TextViewLayout::rowStart(TextPosition position) const
{
    if (!theSegments.isWrapped())
        return {position.line, 0};
    const auto segment = segmentOf(position);
    const QTextLine row = segment->layout.lineAt(segment->rowOf(position.unit - segment->start));
    return {position.line, segment->start + row.textStart()};
}

TextPosition TextViewLayout::rowEnd(TextPosition position) const
{
    if (!theSegments.isWrapped())
        return {position.line, storage().lineLength(position.line)};
    const auto segment = segmentOf(position);
    const int number = segment->rowOf(position.unit - segment->start);
    const QTextLine row = segment->layout.lineAt(number);
    const int end = row.textStart() + row.textLength();
    const bool isLast = number + 1 == segment->rows() && segment->endsLine;
    return {position.line,
        segment->start + (isLast ? end : segment->layout.previousCursorPosition(end))};
}

TextPosition TextViewLayout::nextCharacter(TextPosition position) const
{
    if (position.unit < storage().lineLength(position.line)) {
        const auto segment = segmentOf(position);
        const auto cursor = static_cast<int>(position.unit - segment->start);
        return {position.line, segment->start + segment->layout.nextCursorPosition(cursor)};
    }
    if (position.line + 1 < storage().lineCount())
        return {position.line + 1, 0};
    return position;
}

TextPosition TextViewLayout::previousCharacter(TextPosition position) const
{
    if (position.unit > 0) {
        const auto segment = segmentOf({position.line, position.unit - 1});
        const auto cursor = static_cast<int>(position.unit - segment->start);
        return {position.line, segment->start + segment->layout.previousCursorPosition(cursor)};
    }
    if (position.line > 0)
        return {position.line - 1, storage().lineLength(position.line - 1)};
    return position;
}

bool TextViewLayout::isRightToLeft(TextPosition position) const
{
    return segmentOf(position)->layout.text().isRightToLeft();
}

} // namespace tarnwick
