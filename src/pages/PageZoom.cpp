#include "PageZoom.h"

#include "PageScroller.h"
#include "PageViewport.h"

#include <algorithm>
#include <cmath>

namespace tarnwick {

PageZoom::PageZoom(PageViewport& viewport, PageScroller& scroller, QObject* parent)
    : QObject(parent)
    , theViewport(viewport)
    , theScroller(scroller)
{
}

double PageZoom::factor() const
{
    return theViewport.pages().scale() / theViewport.frame().actualScale();
}

void PageZoom::setFactor(double factor, const QPointF& inView)
{
    free();
    take(factor, inView);
}

void PageZoom::take(double factor, const QPointF& inView)
{
    const double bounded = std::clamp(factor, smallest, largest);
    const double scale = bounded * theViewport.frame().actualScale();
    if (std::abs(scale - theViewport.pages().scale()) < 1e-9)
        return;
    const PagePlace place = theViewport.placeAt(inView);
    theViewport.pages().setScale(scale);
    theScroller.moveTo(theViewport.pages().contentPoint(place) - inView);
    emit changed(bounded);
}

void PageZoom::setFit(Fit fit)
{
    theFit = fit;
    const int page = theScroller.currentPage();
    fitAgain();
    if (fit == Fit::isPage && page >= 0)
        theScroller.showPage(page);
}

void PageZoom::fitAgain()
{
    const PageGeometry& pages = theViewport.pages();
    if (pages.pageCount() == 0 || theFit == Fit::isFree)
        return;
    const QSizeF view = theViewport.frame().size();
    const double scale = theFit == Fit::isWidth
        ? pages.scaleForWidth(view.width())
        : pages.scaleForPage(std::max(0, theScroller.currentPage()), view);
    // A fraction less than fits, so that rounding never asks for a scroll bar.
    take(scale / theViewport.frame().actualScale() * 0.9999, {view.width() / 2, 0});
}

void PageZoom::rotateBy(int quarterTurns)
{
    PageGeometry& pages = theViewport.pages();
    const int page = std::max(0, theScroller.currentPage());
    pages.setRotation(pages.rotation() + quarterTurns);
    if (pages.pageCount() == 0)
        return;
    fitAgain();
    theScroller.showPage(page);
}

} // namespace tarnwick
