#include "PageScroller.h"

#include "PageScrollBars.h"
#include "PageViewport.h"

#include <algorithm>
#include <utility>

namespace tarnwick {

PageScroller::PageScroller(PageViewport& viewport, PageScrollBars& bars, QObject* parent)
    : QObject(parent)
    , theViewport(viewport)
    , theBars(bars)
    , theGlide(this)
{
    connect(&theGlide, &SmoothScroll::moved, this, &PageScroller::moveBy);
}

void PageScroller::scrollTo(const QPointF& origin, int target)
{
    stop();
    moveTo(origin, target);
}

void PageScroller::scrollBy(const QPointF& way)
{
    scrollTo(theViewport.origin() + way);
}

void PageScroller::showPage(int page)
{
    scrollTo(theViewport.originOfPage(page), page);
}

void PageScroller::showPlace(const PagePlace& place)
{
    scrollTo(theViewport.originOfPlace(place));
}

void PageScroller::followBars()
{
    if (const auto origin = theBars.origin())
        scrollTo(*origin);
}

void PageScroller::goView(int direction)
{
    constexpr double line = PageScrollBars::lineStep;
    // A line stays to go on reading from.
    const double step = std::max(line, theViewport.frame().size().height() - line);
    scrollBy({0, direction * step});
}

void PageScroller::moveBy(const QPointF& way)
{
    moveTo(theViewport.origin() + way);
}

void PageScroller::moveTo(const QPointF& origin, int target)
{
    theViewport.moveTo(origin);
    theBars.show();
    const int page = theViewport.presentPage(target);
    if (std::exchange(theCurrentPage, page) != page)
        emit currentPageChanged(page);
    emit moved();
}

} // namespace tarnwick
