#include "TextReveal.h"

#include "PageScroller.h"
#include "PageViewport.h"

#include <algorithm>
#include <utility>

namespace tarnwick {

namespace {

constexpr double margin = 20; ///< pixels above and below that are not enough to read on

} // namespace

TextReveal::TextReveal(
    const PageViewport& viewport, PageScroller& scroller, TextPlaces::TextOf textOf)
    : theViewport(viewport)
    , theScroller(scroller)
    , theTextOf(std::move(textOf))
{
}

bool TextReveal::show(const PDFSelection& selection)
{
    forget();
    return selection.isEmpty() || show(selection.ranges().first());
}

void TextReveal::textArrived()
{
    if (const auto range = std::exchange(theWaiting, std::nullopt))
        show(*range);
}

bool TextReveal::show(const PDFSelection::Range& range)
{
    if (range.page < 0 || range.page >= theViewport.pages().pageCount())
        return true;
    const PDFPageText* const text = theTextOf(range.page);
    if (!text) {
        theWaiting = range;
        if (!theViewport.shownPages().contains(range.page))
            theScroller.showPage(range.page);
        return false;
    }
    const QList<QPolygonF> outlines = PageTextGeometry::outlines(
        *text, range.start, std::min<qsizetype>(range.length, PDFPageText::quadBlock));
    if (outlines.isEmpty())
        theScroller.showPage(range.page);
    else
        scrollTo(theViewport.inView(range.page, outlines.first()).boundingRect());
    return true;
}

void TextReveal::scrollTo(const QRectF& target)
{
    const QRectF view(QPointF(0, 0), theViewport.frame().size());
    if (view.adjusted(0, margin, 0, -margin).contains(target))
        return;
    // A third from above there is room to read on, and what led there shows as well.
    QPointF way(0, target.center().y() - view.height() / 3);
    if (target.left() < 0 || target.right() > view.width())
        way.setX(target.center().x() - view.width() / 2);
    theScroller.scrollBy(way);
}

} // namespace tarnwick
