#pragma once

#include "PageGeometry.h"
#include "ViewFrame.h"

#include <QPoint>
#include <QPolygonF>

namespace tarnwick {

/// What shows of a column of pages in a frame: the pages, and the place that they are scrolled to.
///
/// Points "in view" are device-independent pixels from the frame's upper left corner.
class PageViewport
{
public:
    /// @param frame borrowed; asked whenever its size matters.
    explicit PageViewport(const ViewFrame& frame)
        : theFrame(frame)
    {
    }

    const ViewFrame& frame() const { return theFrame; }
    PageGeometry& pages() { return thePages; }
    const PageGeometry& pages() const { return thePages; }

    /// What lies in the frame's upper left corner, in content space (PageGeometry).
    const QPointF& origin() const { return theOrigin; }
    /// Brings a point of the content into the upper left corner, as far as the content reaches.
    ///
    /// Across, the pages that then show decide how far one can go, so that one poster among a
    /// thousand letters does not make every letter slide about; what fits stands in the middle.
    void moveTo(const QPointF& origin);

    /// The origin that shows a page from its upper edge, centred.
    QPointF originOfPage(int page) const;
    /// The origin that shows a place at the upper edge, in the middle.
    QPointF originOfPlace(const PagePlace& place) const;
    /// The place at the upper edge, in the middle.
    PagePlace topPlace() const;

    PagePlace placeAt(const QPointF& inView) const { return thePages.placeAt(inView + theOrigin); }
    /// The page nearest to a point; -1 without pages.
    int pageAt(const QPointF& inView) const
    {
        return thePages.pageCount() > 0 ? placeAt(inView).page : -1;
    }
    QPolygonF inView(int page, const QPolygonF& polygon) const;
    /// What of a page lies in a rectangle in view, in page space.
    QRectF pageArea(int page, const QRectF& inView) const;

    PageGeometry::PageRange shownPages() const;
    /// The page that takes up most of the frame, -1 without pages.
    /// @param target page that is preferred to others that show as much.
    int presentPage(int target = -1) const;

    /// Device pixels for a point.
    double deviceScale() const { return thePages.scale() * theFrame.pixelRatio(); }
    /// The device pixel of a page's upper left corner. Pages begin at whole ones: only so their
    /// images come to the screen unblurred.
    QPoint deviceOrigin(int page) const;

private:
    double shownHeight(int page) const;

    const ViewFrame& theFrame;
    PageGeometry thePages;
    QPointF theOrigin;
};

} // namespace tarnwick
