#pragma once

#include "PageGeometry.h"

#include <QRect>
#include <QSizeF>

namespace tarnwick {

/// Where the thumbnails of a document lie: in rows from left to right, each in a cell of the same
/// size, the rows in the middle of the strip.
///
/// A value, in device-independent pixels; y from the upper end of the first row's gap.
class ThumbnailGrid
{
public:
    static constexpr int gap = 10; ///< around and between cells
    static constexpr int frame = 4; ///< between a thumbnail and its cell's edge

    /// Steps from one page to another.
    enum class Step
    {
        isUp,
        isDown,
        isLeft,
        isRight,
        isViewUp,
        isViewDown,
        isFirst,
        isLast,
    };

    /// @param thumbnail the box that each thumbnail fits into. @param labelHeight below it.
    /// @param view size of what shows of the strip.
    ThumbnailGrid(const QSizeF& thumbnail, int labelHeight, const QSize& view, int pageCount);

    const QSize& cell() const { return theCell; }
    int rowHeight() const { return theCell.height() + gap; }
    /// Of all rows. 64 bits: there may be a hundred million pages.
    qint64 height() const;

    /// Pages of the rows that show at least in part.
    /// @param offset what lies at the view's upper edge.
    PageGeometry::PageRange shownPages(int offset) const;
    /// A page's cell, in view; null for a page that is not there.
    QRect rect(int page, int offset) const;
    /// The page whose cell lies under a point in view, or -1.
    int pageAt(const QPoint& point, int offset) const;
    /// Where a step leads to from a page; the same page where it leads nowhere.
    int pageAfter(int page, Step step) const;

private:
    int target(int page, Step step) const;

    QSize theCell;
    QSize theView;
    int thePageCount;
    int theColumns;
};

} // namespace tarnwick
