// What views that follow each other ask of one.

#include "PDFViewPrivate.h"

namespace tarnwick {

PDFView::Place PDFView::topPlace() const
{
    if (d->theViewport.pages().pageCount() == 0)
        return {};
    const PagePlace place = d->theViewport.topPlace();
    return {place.page, place.point};
}

void PDFView::showPlace(const Place& place)
{
    if (place.page >= 0 && place.page < d->theViewport.pages().pageCount())
        d->theScroller.showPlace({place.page, place.point});
}

void PDFView::setMarkedAreas(std::function<QList<QRectF>(int page)> areas)
{
    d->theMarkedAreas = std::move(areas);
    viewport()->update();
}

} // namespace tarnwick
