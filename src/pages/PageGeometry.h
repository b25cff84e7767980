#pragma once

#include "PageExtents.h"

#include <QList>
#include <QPointF>
#include <QRectF>
#include <QSizeF>

#include <functional>
#include <vector>

namespace tarnwick {

/// A place on a page that stays the same under zoom, rotation and newly known page sizes.
struct PagePlace
{
    int page = 0;
    /// In page space (PDFPageText); may lie outside of the page, in the gap beside it.
    QPointF point;

    bool operator==(const PagePlace&) const = default;
};

/// Where the pages of a continuously scrolled view lie: one below the other, centred on one axis.
///
/// Content space, in device-independent pixels: x from that axis (negative to the left), y
/// downwards from the upper end of the content. Doubles throughout: 100,000 large pages at a large
/// zoom are more pixels than an int counts. Looking a page up takes O(log n), changing the sizes of
/// a few pages little more than these, rotation or the number of pages O(n).
///
/// Page sizes are in points as PDFDocument::pageSize() gives them: positive, bounded, unrotated.
class PageGeometry
{
public:
    /// Pixels above the first page, between pages, below the last one and beside every page.
    static constexpr double gap = 10;

    /// First and last page of a stretch, both included; none when last < first.
    struct PageRange
    {
        int first = 0;
        int last = -1;

        bool operator==(const PageRange&) const = default;
        bool contains(int page) const { return page >= first && page <= last; }
    };

    /// Starts again with these pages; scale and rotation stay.
    void setPages(const QList<QSizeF>& sizes);
    void setPages(int count, const std::function<QSizeF(int page)>& sizeOf);
    /// Replaces the sizes from a page on. Precondition: they are pages that exist.
    void setPageSizes(int first, const QList<QSizeF>& sizes);
    int pageCount() const { return static_cast<int>(theSizes.size()); }

    /// Pixels for a point, positive.
    double scale() const { return theScale; }
    void setScale(double pixelsPerPoint) { theScale = pixelsPerPoint; }
    /// Clockwise quarter turns of every page, 0 to 3.
    int rotation() const { return theRotation; }
    void setRotation(int quarterTurns);

    double contentHeight() const;
    /// Size of a page in points, unrotated.
    const QSizeF& pageSize(int page) const { return theSizes[static_cast<std::size_t>(page)]; }
    /// Size of a page in pixels as it is shown, rotation applied.
    QSizeF shownSize(int page) const;
    QRectF pageRect(int page) const;

    /// Pages that lie between two heights at least in part.
    PageRange pagesBetween(double top, double bottom) const;
    /// The page at a height, a gap counting to the page above it (the first to the one below); the
    /// nearest page outside of the content, -1 without pages.
    int pageAt(double y) const;
    /// The page that takes up most of a view of that height, the upper one of equals; -1 without
    /// pages.
    int dominantPage(double top, double height) const;
    /// Width of the widest page of a stretch with the gaps beside it; 0 for an empty stretch.
    double widthOf(const PageRange& pages) const;

    PagePlace placeAt(const QPointF& content) const;
    QPointF contentPoint(const PagePlace& place) const;
    /// Where a rectangle in page space lies in content space.
    QRectF contentRect(int page, const QRectF& area) const;
    /// The other way round: where an area of the content lies in a page's space. Precondition: 0 <=
    /// page < pageCount().
    QRectF pageArea(int page, const QRectF& content) const;

    /// Pixels for a point at which pages fill a width: the widest page decides, unless it is more
    /// than twice as wide as most, so that a single poster does not make every page small.
    double scaleForWidth(double width) const;
    /// Pixels for a point at which a page fits into a view whole.
    double scaleForPage(int page, const QSizeF& view) const;

private:
    QPointF pointOn(int page, const QPointF& content) const;
    bool isTurned() const { return theRotation % 2 != 0; }
    QSizeF turnedSize(int page) const;
    PageExtents::SizeOf turnedSizes() const;
    double pageTop(int page) const;

    std::vector<QSizeF> theSizes;
    PageExtents theExtents; ///< of the pages as they are turned
    double theScale = 1;
    int theRotation = 0;
};

} // namespace tarnwick
