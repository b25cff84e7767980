#include "TextDrag.h"

#include "PageScroller.h"
#include "PageViewport.h"
#include "TextSelector.h"

#include <algorithm>

namespace tarnwick {

namespace {

constexpr int scrollPeriod = 30; ///< milliseconds
constexpr double longestStep = 120; ///< pixels

PDFTextPosition startOf(const PDFSelection::Range& range)
{
    return {range.page, range.start};
}

PDFTextPosition endOf(const PDFSelection::Range& range)
{
    return {range.page, range.start + range.length};
}

} // namespace

TextDrag::TextDrag(const PageViewport& viewport, const TextPlaces& places, TextSelector& selector,
    PageScroller& scroller, QObject* parent)
    : QObject(parent)
    , theViewport(viewport)
    , thePlaces(places)
    , theSelector(selector)
    , theScroller(scroller)
{
    connect(&theAutoScroll, &QTimer::timeout, this, [this] { dragTo(thePointer); });
}

bool TextDrag::begin(const QPointF& inView, Unit unit)
{
    const std::optional<PDFTextPosition> place = thePlaces.nearest(inView);
    if (!place || !theSelector.isPossible())
        return false;
    theUnit = unit;
    // A double click means the character under the pointer, not the gap that is nearest to it.
    const auto meant = unit == Unit::isCharacter ? place : thePlaces.under(inView).value_or(*place);
    theFirst = thePlaces.unitAt(*meant, unit);
    theSelector.selectBetween(startOf(theFirst), endOf(theFirst));
    return true;
}

bool TextDrag::beginExtending(const QPointF& inView)
{
    if (theSelector.selection().isEmpty())
        return begin(inView, Unit::isCharacter);
    if (!thePlaces.nearest(inView) || !theSelector.isPossible())
        return false;
    theUnit = Unit::isCharacter;
    theFirst = {theSelector.anchor().page, theSelector.anchor().index, 0};
    dragTo(inView);
    return true;
}

void TextDrag::dragTo(const QPointF& inView)
{
    thePointer = inView;
    scrollTowards(inView.y());
    const double height = theViewport.frame().size().height();
    const auto place = thePlaces.nearest({inView.x(), std::clamp(inView.y(), 1.0, height - 2)});
    if (!place)
        return;
    const PDFSelection::Range last = thePlaces.unitAt(*place, theUnit);
    if (startOf(last) < startOf(theFirst))
        theSelector.selectBetween(endOf(theFirst), startOf(last));
    else
        theSelector.selectBetween(startOf(theFirst), std::max(endOf(theFirst), endOf(last)));
}

/// Faster the farther the pointer is beyond the view's edge.
void TextDrag::scrollTowards(double height)
{
    const double beyond = height - std::clamp(height, 0.0, theViewport.frame().size().height());
    if (beyond == 0)
        return end();
    if (!theAutoScroll.isActive())
        theAutoScroll.start(scrollPeriod);
    theScroller.moveBy({0, std::clamp(beyond / 2, -longestStep, longestStep)});
    emit ranOn();
}

} // namespace tarnwick
