#pragma once

#include "text/RowEstimate.h"
#include "text/TextSegments.h"

#include <QPointF>
#include <QRectF>
#include <QSizeF>

#include <functional>
#include <optional>

namespace tarnwick {

/// Which part of a text a view shows, and where on it.
///
/// Points are pixels from the view's top left corner, y downwards. What is scrolled to is kept as a
/// place in the text, not as a distance from its beginning: of a huge text nobody knows the latter.
/// Distances from the beginning are estimates (exact where lines are not wrapped) and serve scroll
/// bars.
class TextViewLayout
{
public:
    /// Blank pixels to the left and right of the text.
    static constexpr qreal margin = 4;

    TextViewLayout();

    /// Shows another text from its beginning. Never null.
    void setStorage(std::shared_ptr<const TextStorage> storage);
    /// Gaps between lines, a row high each, for what is no part of the text. @param lines before
    /// which they stand, growing; gone with the storage.
    void setGaps(std::vector<qsizetype> lines);
    void setFont(const QFont& font);
    void setWrapping(bool wrap);
    void setSize(QSizeF size);

    const TextStorage& storage() const { return theSegments.storage(); }
    const QFont& font() const { return theSegments.font(); }
    bool isWrapping() const { return theIsWrapping; }
    QSizeF size() const { return theSize; }
    qreal rowHeight() const { return theSegments.rowHeight(); }
    qreal characterWidth() const { return theSegments.characterWidth(); }

    /// Reads more of the text to make the estimates better. @returns whether anything is left.
    bool refineEstimate(QDeadlineTimer deadline) { return theEstimate.advance(deadline); }

    /// A segment that shows, and the point of its top left corner.
    using SegmentVisitor = std::function<void(const TextSegment& segment, QPointF origin)>;
    void forEachVisible(const SegmentVisitor& visit) const;
    /// A gap that shows, by its place among those that were set, and its upper edge.
    using GapVisitor = std::function<void(std::size_t gap, qreal y)>;
    void forEachVisibleGap(const GapVisitor& visit) const;

    // Scrolling
    void scrollBy(qreal down);
    void scrollToHeight(qreal fromTop);
    qreal height() const;
    qreal heightAbove() const;
    /// Without wrapping: pixels that are out of view on the left.
    void setLeft(qreal left);
    qreal left() const { return theLeft; }
    /// Of the widest line that was met so far, margins included.
    qreal width() const;
    /// The beginning of the row at the upper edge, and scrolling to one.
    TextPosition topPosition() const;
    void showAtTop(TextPosition position);
    /// Scrolls as little as it takes, but to the middle when the place is far away.
    void reveal(TextPosition position);

    // Places
    /// The place nearest to a point, which may lie outside the view.
    TextPosition positionAt(QPointF point) const;
    /// A row high and without width; nothing when the row does not show.
    std::optional<QRectF> caretAt(TextPosition position) const;
    /// Pixels from the beginning of the line, which up and down movements keep.
    qreal distanceFromLineStart(TextPosition position) const;
    /// The place in the row so many rows below (above: negative), clamped to the text.
    TextPosition rowsBelow(TextPosition position, int rows, qreal distanceFromLineStart) const;
    TextPosition rowStart(TextPosition position) const;
    TextPosition rowEnd(TextPosition position) const;
    TextPosition nextCharacter(TextPosition position) const;
    TextPosition previousCharacter(TextPosition position) const;
    bool isRightToLeft(TextPosition position) const;

private:
    /// What is one above the other: a line, or a segment of it where lines are wrapped.
    struct Block
    {
        qsizetype line = 0;
        qsizetype segment = 0;
        bool operator==(const Block&) const = default;
    };
    struct Row
    {
        Block block;
        int number = 0;
    };

    void restyle();
    void keepPlace(TextPosition top);
    bool showsBeginning() const { return theTop == Block{} && theHidden <= 0; }
    int rowsOf(Block block) const;
    /// Rows above a block's text: 1 where there is a gap, else 0.
    int gapRows(Block block) const;
    qreal heightOf(Block block) const { return (gapRows(block) + rowsOf(block)) * rowHeight(); }
    std::optional<Block> next(Block block) const;
    std::optional<Block> previous(Block block) const;
    Block lastBlock() const;
    Block blockOf(TextPosition position) const;
    void settle();
    void clampToEnd();
    bool showsEnd() const;
    qreal spaceBelowText() const;
    void revealAcross(TextPosition position);

    Row rowOf(TextPosition position) const;
    std::optional<qreal> heightInView(Row row) const;
    TextPosition positionInRow(Row row, qreal distance) const;
    std::shared_ptr<const TextSegment> segmentOf(TextPosition position) const;
    qreal usualX(TextPosition position) const;
    qreal usualSegmentWidth() const;
    qreal unwrappedWidth(qsizetype line) const;
    void visitUnwrapped(qsizetype line, qreal y, const SegmentVisitor& visit) const;
    TextPosition positionInLine(qsizetype line, qreal x) const;
    qreal xOf(TextPosition position) const;

    TextSegments theSegments;
    std::shared_ptr<const std::vector<qsizetype>> theGaps;
    RowEstimate theEstimate;
    bool theIsWrapping = true;
    QSizeF theSize{400, 300};
    Block theTop; ///< the block at the view's upper edge
    qreal theHidden = 0; ///< pixels of it above the edge
    qreal theLeft = 0;
    mutable qreal theWidest = 0;
};

} // namespace tarnwick
