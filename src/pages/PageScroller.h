#pragma once

#include "SmoothScroll.h"

#include <QObject>
#include <QPointF>

namespace tarnwick {

class PageScrollBars;
class PageViewport;
struct PagePlace;

/// Moves a viewport over its pages, keeps the scroll bars with it, and knows which page is the
/// present one.
///
/// A glide is a way that is still to be gone. Whatever shows a place ends it; who moves the view on
/// its way does not.
class PageScroller : public QObject
{
    Q_OBJECT

public:
    /// @param viewport, bars borrowed.
    PageScroller(PageViewport& viewport, PageScrollBars& bars, QObject* parent);

    /// Brings a point of the content into the view's upper left corner and ends a glide.
    /// @param target page that a jump leads to: the present one, even where another shows as much.
    void scrollTo(const QPointF& origin, int target = -1);
    void scrollBy(const QPointF& way);
    /// Shows a page from its upper edge, a place at the view's upper edge.
    void showPage(int page);
    void showPlace(const PagePlace& place);
    /// Goes to where the user has moved a scroll bar; nothing when it was moved for him.
    void followBars();
    /// Goes a view up (-1) or down (1), at once.
    void goView(int direction);

    /// Glides so many pixels further.
    void glide(const QPointF& way) { theGlide.add(way); }
    /// Ends a glide where it is.
    void stop() { theGlide.stop(); }
    /// Moves at once, a glide going on.
    void moveBy(const QPointF& way);
    void moveTo(const QPointF& origin, int target = -1);

    /// -1 without pages.
    int currentPage() const { return theCurrentPage; }
    /// The pages are other ones now: the next move tells their present one.
    void forgetCurrentPage() { theCurrentPage = -1; }

signals:
    void currentPageChanged(int page);
    /// The view may show something else; the present page has been told.
    void moved();

private:
    PageViewport& theViewport;
    PageScrollBars& theBars;
    SmoothScroll theGlide;
    int theCurrentPage = -1;
};

} // namespace tarnwick
