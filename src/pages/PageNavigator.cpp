#include "PageNavigator.h"

#include "PageScroller.h"
#include "PageViewport.h"

#include <algorithm>

namespace tarnwick {

PageNavigator::PageNavigator(const PageViewport& viewport, PageScroller& scroller, QObject* parent)
    : QObject(parent)
    , theViewport(viewport)
    , theScroller(scroller)
{
}

void PageNavigator::goTo(int page, const QPointF& point)
{
    const PageGeometry& pages = theViewport.pages();
    if (page < 0 || page >= pages.pageCount())
        return;
    theHistory.recordJumpFrom(theViewport.topPlace());
    emit historyChanged();
    if (point.isNull())
        return theScroller.showPage(page);
    // Across the page the middle stays in the middle: jumps are up and down.
    const double top = std::max(pages.contentPoint({page, point}).y(), pages.pageRect(page).top());
    theScroller.scrollTo({theViewport.origin().x(), top - PageGeometry::gap}, page);
}

void PageNavigator::goBack()
{
    show(theHistory.goBack(theViewport.topPlace()));
}

void PageNavigator::goForward()
{
    show(theHistory.goForward(theViewport.topPlace()));
}

void PageNavigator::show(const std::optional<PagePlace>& place)
{
    if (place)
        theScroller.showPlace(*place);
    emit historyChanged();
}

} // namespace tarnwick
