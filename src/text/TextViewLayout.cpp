#include "text/TextViewLayout.h"

#include "TextExtract.h"
#include "text/PlainTextStorage.h"

#include <QFontInfo>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tarnwick {

TextViewLayout::TextViewLayout()
{
    theSegments.setStorage(std::make_shared<PlainTextStorage>());
    restyle();
}

void TextViewLayout::setStorage(std::shared_ptr<const TextStorage> storage)
{
    theSegments.setStorage(std::move(storage));
    theGaps.reset();
    theTop = {};
    theHidden = 0;
    theLeft = 0;
    restyle();
}

void TextViewLayout::setGaps(std::vector<qsizetype> lines)
{
    const TextPosition top = topPosition();
    theGaps = std::make_shared<const std::vector<qsizetype>>(std::move(lines));
    restyle();
    keepPlace(top);
}

void TextViewLayout::setFont(const QFont& font)
{
    const TextPosition top = topPosition();
    const qreal columns = theLeft / characterWidth();
    theSegments.setStyle({font, theSegments.wrapWidth()});
    restyle();
    theLeft = columns * characterWidth();
    keepPlace(top);
}

void TextViewLayout::setWrapping(bool wrap)
{
    const TextPosition top = topPosition();
    theIsWrapping = wrap;
    theLeft = 0;
    restyle();
    keepPlace(top);
}

void TextViewLayout::setSize(QSizeF size)
{
    const bool isRewrapped = theIsWrapping && size.width() != theSize.width();
    const TextPosition top = topPosition();
    theSize = size;
    if (isRewrapped) {
        restyle();
        keepPlace(top);
    } else {
        clampToEnd();
    }
}

/// Makes everything anew that depends on text, font or width.
void TextViewLayout::restyle()
{
    const qreal leastWidth = 8 * theSegments.characterWidth();
    const qreal wrapWidth
        = theIsWrapping ? std::max(leastWidth, theSize.width() - 2 * margin) : 0.0;
    theSegments.setStyle({theSegments.font(), wrapWidth});
    theEstimate.restart(storage(), wrapWidth / theSegments.characterWidth(), theGaps);
    theWidest = 0;
}

TextPosition TextViewLayout::topPosition() const
{
    if (!theSegments.isWrapped())
        return {theTop.line, 0};
    const auto segment = theSegments.segment(theTop.line, theTop.segment);
    const int row = std::clamp(
        static_cast<int>(theHidden / rowHeight()) - gapRows(theTop), 0, segment->rows() - 1);
    return {theTop.line, segment->start + segment->layout.lineAt(row).textStart()};
}

void TextViewLayout::keepPlace(TextPosition top)
{
    const Row row = rowOf(top);
    theTop = row.block;
    // A gap above the first row comes into view with it.
    theHidden = row.number == 0 ? 0 : (row.number + gapRows(row.block)) * rowHeight();
    clampToEnd();
}

void TextViewLayout::showAtTop(TextPosition position)
{
    keepPlace(clampedToText(storage(), position));
}

int TextViewLayout::gapRows(Block block) const
{
    return theGaps && block.segment == 0
            && std::binary_search(theGaps->begin(), theGaps->end(), block.line)
        ? 1
        : 0;
}

int TextViewLayout::rowsOf(Block block) const
{
    return theSegments.isWrapped() ? theSegments.segment(block.line, block.segment)->rows() : 1;
}

std::optional<TextViewLayout::Block> TextViewLayout::next(Block block) const
{
    if (theSegments.isWrapped() && block.segment + 1 < theSegments.count(block.line))
        return Block{block.line, block.segment + 1};
    if (block.line + 1 < storage().lineCount())
        return Block{block.line + 1, 0};
    return std::nullopt;
}

std::optional<TextViewLayout::Block> TextViewLayout::previous(Block block) const
{
    if (block.segment > 0)
        return Block{block.line, block.segment - 1};
    if (block.line == 0)
        return std::nullopt;
    const qsizetype line = block.line - 1;
    return Block{line, theSegments.isWrapped() ? theSegments.count(line) - 1 : 0};
}

TextViewLayout::Block TextViewLayout::lastBlock() const
{
    const qsizetype line = storage().lineCount() - 1;
    return {line, theSegments.isWrapped() ? theSegments.count(line) - 1 : 0};
}

TextViewLayout::Block TextViewLayout::blockOf(TextPosition position) const
{
    return {position.line, theSegments.isWrapped() ? theSegments.indexOf(position) : 0};
}

void TextViewLayout::forEachVisible(const SegmentVisitor& visit) const
{
    std::optional<Block> block = theTop;
    for (qreal y = -theHidden; block && y < theSize.height(); block = next(*block)) {
        const qreal textTop = y + gapRows(*block) * rowHeight();
        if (theSegments.isWrapped())
            visit(*theSegments.segment(block->line, block->segment), {margin, textTop});
        else
            visitUnwrapped(block->line, textTop, visit);
        y += heightOf(*block);
    }
}

void TextViewLayout::forEachVisibleGap(const GapVisitor& visit) const
{
    if (!theGaps || theGaps->empty())
        return;
    std::optional<Block> block = theTop;
    for (qreal y = -theHidden; block && y < theSize.height(); block = next(*block)) {
        if (gapRows(*block) > 0) {
            const auto gap = std::lower_bound(theGaps->begin(), theGaps->end(), block->line);
            visit(static_cast<std::size_t>(gap - theGaps->begin()), y);
        }
        y += heightOf(*block);
    }
}

// --- Scrolling -----------------------------------------------------------------------------------

void TextViewLayout::scrollBy(qreal down)
{
    if (!theSegments.isWrapped()) {
        scrollToHeight(heightAbove() + down);
        return;
    }
    theHidden += down;
    settle();
    clampToEnd();
}

/// Moves the upper edge over whole blocks until it is inside one.
void TextViewLayout::settle()
{
    while (theHidden < 0) {
        const std::optional<Block> before = previous(theTop);
        if (!before) {
            theHidden = 0;
            return;
        }
        theTop = *before;
        theHidden += heightOf(theTop);
    }
    while (theHidden >= heightOf(theTop)) {
        const std::optional<Block> after = next(theTop);
        if (!after)
            return;
        theHidden -= heightOf(theTop);
        theTop = *after;
    }
}

/// Whether nothing is below the view; the text's end may be anywhere in it.
bool TextViewLayout::showsEnd() const
{
    return spaceBelowText() >= 0;
}

/// Pixels between the last row and the view's lower edge, or less than 0 when it is below that.
qreal TextViewLayout::spaceBelowText() const
{
    qreal below = -theHidden;
    for (std::optional<Block> block = theTop; block; block = next(*block)) {
        below += heightOf(*block);
        if (below > theSize.height())
            break;
    }
    return theSize.height() - below;
}

/// Scrolls back when there is blank space below the last row.
void TextViewLayout::clampToEnd()
{
    if (spaceBelowText() <= 0)
        return;
    theTop = lastBlock();
    theHidden = heightOf(theTop) - theSize.height();
    settle();
}

void TextViewLayout::scrollToHeight(qreal fromTop)
{
    const qreal rows = std::clamp(fromTop, 0.0, height()) / rowHeight();
    const qsizetype line = theEstimate.lineAt(rows);
    const double lineRows = rows - theEstimate.rowsBefore(line);
    theTop = {line, 0};
    if (theSegments.isWrapped()) {
        const qsizetype count = theSegments.count(line);
        const double share = std::clamp(lineRows / theEstimate.rowsOf(line), 0.0, 1.0);
        const double segments = share * static_cast<double>(count);
        theTop.segment = std::min(static_cast<qsizetype>(segments), count - 1);
        theHidden = (segments - static_cast<double>(theTop.segment)) * heightOf(theTop);
    } else {
        theHidden = lineRows * rowHeight();
    }
    theHidden = std::round(theHidden);
    settle();
    clampToEnd();
}

qreal TextViewLayout::height() const
{
    // A text that shows as a whole leaves nothing to estimate.
    if (theSegments.isWrapped() && showsBeginning() && showsEnd())
        return theSize.height() - spaceBelowText();
    return theEstimate.totalRows() * rowHeight();
}

qreal TextViewLayout::heightAbove() const
{
    if (!theSegments.isWrapped())
        return theEstimate.rowsBefore(theTop.line) * rowHeight() + theHidden;
    const double share = (static_cast<double>(theTop.segment) + theHidden / heightOf(theTop))
        / static_cast<double>(theSegments.count(theTop.line));
    const double rows
        = theEstimate.rowsBefore(theTop.line) + share * theEstimate.rowsOf(theTop.line);
    const double most = std::max(0.0, height() - theSize.height());
    if (showsBeginning())
        return 0;
    // A scroll bar must not stand at its end while there is more to see, nor before it at the end.
    return showsEnd() ? most : std::min(rows * rowHeight(), std::max(0.0, most - 1));
}

void TextViewLayout::setLeft(qreal left)
{
    theLeft = theSegments.isWrapped() ? 0 : std::max(0.0, std::round(left));
}

qreal TextViewLayout::width() const
{
    if (theSegments.isWrapped())
        return theSize.width();
    const auto longest = static_cast<qreal>(theEstimate.longestLine());
    const qreal likely = QFontInfo(font()).fixedPitch() ? longest * characterWidth() : 0;
    // The caret stands behind the last character.
    return std::max(theWidest, likely) + 2 * margin + 2;
}

void TextViewLayout::reveal(TextPosition position)
{
    const Row row = rowOf(position);
    const std::optional<qreal> y = heightInView(row);
    // A gap comes into view with the row below it.
    const qreal gap = row.number == 0 ? gapRows(row.block) * rowHeight() : 0;
    if (!y) {
        theTop = row.block;
        theHidden = (gapRows(row.block) + row.number + 1) * rowHeight()
            - std::round(theSize.height() / 2);
    } else if (*y - gap < 0) {
        theHidden += *y - gap;
    } else if (*y + rowHeight() > theSize.height()) {
        theHidden += std::min(*y + rowHeight() - theSize.height(), *y);
    }
    settle();
    clampToEnd();
    revealAcross(position);
}

/// Where a row's upper edge is, when that is at most a view's height out of view.
std::optional<qreal> TextViewLayout::heightInView(Row row) const
{
    qreal y = -theHidden;
    const bool isAbove
        = std::pair(row.block.line, row.block.segment) < std::pair(theTop.line, theTop.segment);
    std::optional<Block> block = theTop;
    while (block && *block != row.block && (isAbove || y < 2 * theSize.height())
        && (!isAbove || y > -theSize.height())) {
        if (!isAbove)
            y += heightOf(*block);
        block = isAbove ? previous(*block) : next(*block);
        if (isAbove && block)
            y -= heightOf(*block);
    }
    if (!block || *block != row.block)
        return std::nullopt;
    y += (gapRows(row.block) + row.number) * rowHeight();
    if (y < -theSize.height() || y > 2 * theSize.height())
        return std::nullopt;
    return y;
}

} // namespace tarnwick
