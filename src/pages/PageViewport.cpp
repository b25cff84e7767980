#include "PageViewport.h"

#include <algorithm>
#include <cmath>

namespace tarnwick {

void PageViewport::moveTo(const QPointF& origin)
{
    const QSizeF view = theFrame.size();
    const double ratio = theFrame.pixelRatio();
    const double lowest = std::max(0.0, thePages.contentHeight() - view.height());
    const double y = std::clamp(origin.y(), 0.0, lowest);
    theOrigin.setY(std::round(y * ratio) / ratio);
    const double width = thePages.widthOf(shownPages());
    const double most = std::max(-view.width() / 2, width / 2 - view.width());
    const double x = std::clamp(origin.x(), std::min(-view.width() / 2, -width / 2), most);
    theOrigin.setX(width <= view.width() ? -view.width() / 2 : std::round(x * ratio) / ratio);
}

QPointF PageViewport::originOfPage(int page) const
{
    return {-theFrame.size().width() / 2, thePages.pageRect(page).top() - PageGeometry::gap};
}

QPointF PageViewport::originOfPlace(const PagePlace& place) const
{
    return thePages.contentPoint(place) - QPointF(theFrame.size().width() / 2, 0);
}

PagePlace PageViewport::topPlace() const
{
    return placeAt({theFrame.size().width() / 2, 0});
}

QPolygonF PageViewport::inView(int page, const QPolygonF& polygon) const
{
    QPolygonF shown;
    for (const QPointF& point : polygon)
        shown.append(thePages.contentPoint({page, point}) - theOrigin);
    return shown;
}

QRectF PageViewport::pageArea(int page, const QRectF& inView) const
{
    return thePages.pageArea(page, inView.translated(theOrigin));
}

PageGeometry::PageRange PageViewport::shownPages() const
{
    return thePages.pagesBetween(theOrigin.y(), theOrigin.y() + theFrame.size().height());
}

double PageViewport::shownHeight(int page) const
{
    const QRectF rect = thePages.pageRect(page);
    return std::min(rect.bottom(), theOrigin.y() + theFrame.size().height())
        - std::max(rect.top(), theOrigin.y());
}

int PageViewport::presentPage(int target) const
{
    const int page = thePages.dominantPage(theOrigin.y(), theFrame.size().height());
    if (!shownPages().contains(target))
        return page;
    const double enough = std::min(shownHeight(page), thePages.pageRect(target).height()) - 1;
    return shownHeight(target) > enough ? target : page;
}

QPoint PageViewport::deviceOrigin(int page) const
{
    const QPointF corner = (thePages.pageRect(page).topLeft() - theOrigin) * theFrame.pixelRatio();
    return {static_cast<int>(std::round(corner.x())), static_cast<int>(std::round(corner.y()))};
}

} // namespace tarnwick
