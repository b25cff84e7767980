#include "TextPlaces.h"

#include "PageViewport.h"

#include <algorithm>
#include <utility>

namespace tarnwick {

TextPlaces::TextPlaces(const PageViewport& viewport, TextOf textOf)
    : theViewport(viewport)
    , theTextOf(std::move(textOf))
{
}

const PDFPageText* TextPlaces::textUnder(const QPointF& inView) const
{
    return theViewport.pages().pageCount() > 0 ? theTextOf(theViewport.placeAt(inView).page)
                                               : nullptr;
}

std::optional<PDFTextPosition> TextPlaces::nearest(const QPointF& inView) const
{
    const PDFPageText* const text = textUnder(inView);
    if (!text)
        return std::nullopt;
    const PagePlace place = theViewport.placeAt(inView);
    return PDFTextPosition{place.page, PageTextGeometry::nearestPosition(*text, place.point)};
}

std::optional<PDFTextPosition> TextPlaces::under(const QPointF& inView) const
{
    const PDFPageText* const text = textUnder(inView);
    if (!text)
        return std::nullopt;
    const PagePlace place = theViewport.placeAt(inView);
    const qsizetype index = PageTextGeometry::characterAt(*text, place.point);
    return index < 0 ? std::nullopt : std::optional(PDFTextPosition{place.page, index});
}

QRectF TextPlaces::rectOf(const PDFTextPosition& place) const
{
    const PDFPageText* const text = theTextOf(place.page);
    if (!text || place.index < 0 || place.index >= text->quads.size()
        || text->quads.at(place.index).isEmpty())
        return {};
    return theViewport.inView(place.page, text->quads.at(place.index)).boundingRect();
}

PDFSelection::Range TextPlaces::unitAt(const PDFTextPosition& place, Unit unit) const
{
    const PDFPageText* const text = theTextOf(place.page);
    if (!text || text->string.isEmpty() || unit == Unit::isCharacter)
        return {place.page, place.index, 0};
    const qsizetype index = std::min(place.index, text->string.size() - 1);
    return unit == Unit::isWord ? PageTextGeometry::wordAt(text->string, place.page, index)
                                : PageTextGeometry::lineAt(text->string, place.page, index);
}

} // namespace tarnwick
