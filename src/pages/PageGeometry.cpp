#include "PageGeometry.h"

#include <algorithm>

namespace tarnwick {

PageExtents::SizeOf PageGeometry::turnedSizes() const
{
    return [this](int page) { return turnedSize(page); };
}

void PageGeometry::setPages(const QList<QSizeF>& sizes)
{
    setPages(static_cast<int>(sizes.size()), [&sizes](int page) { return sizes.at(page); });
}

void PageGeometry::setPages(int count, const std::function<QSizeF(int page)>& sizeOf)
{
    theSizes.clear();
    theSizes.reserve(static_cast<std::size_t>(count));
    for (int page = 0; page < count; ++page)
        theSizes.push_back(sizeOf(page));
    theExtents.setPages(count, turnedSizes());
}

void PageGeometry::setPageSizes(int first, const QList<QSizeF>& sizes)
{
    if (sizes.isEmpty())
        return;
    const int count = static_cast<int>(sizes.size());
    theExtents.forget(first, count, turnedSizes());
    std::copy(sizes.begin(), sizes.end(), theSizes.begin() + first);
    theExtents.learn(first, count, turnedSizes());
}

void PageGeometry::setRotation(int quarterTurns)
{
    theRotation = ((quarterTurns % 4) + 4) % 4;
    theExtents.setPages(pageCount(), turnedSizes());
}

QSizeF PageGeometry::turnedSize(int page) const
{
    const QSizeF& size = theSizes[static_cast<std::size_t>(page)];
    return isTurned() ? size.transposed() : size;
}

double PageGeometry::pageTop(int page) const
{
    return theExtents.heightBefore(page, turnedSizes()) * theScale + gap * (page + 1);
}

double PageGeometry::contentHeight() const
{
    return pageTop(pageCount());
}

QSizeF PageGeometry::shownSize(int page) const
{
    return turnedSize(page) * theScale;
}

QRectF PageGeometry::pageRect(int page) const
{
    const QSizeF size = shownSize(page);
    return {QPointF(-size.width() / 2, pageTop(page)), size};
}

int PageGeometry::pageAt(double y) const
{
    int low = 0;
    int high = pageCount() - 1;
    while (low < high) {
        const int middle = low + (high - low + 1) / 2;
        if (pageTop(middle) <= y)
            low = middle;
        else
            high = middle - 1;
    }
    return std::min(low, pageCount() - 1);
}

PageGeometry::PageRange PageGeometry::pagesBetween(double top, double bottom) const
{
    if (pageCount() == 0 || bottom <= top)
        return {};
    PageRange range{pageAt(top), pageAt(bottom)};
    if (pageRect(range.first).bottom() <= top)
        ++range.first;
    if (pageTop(range.last) >= bottom)
        --range.last;
    return range;
}

int PageGeometry::dominantPage(double top, double height) const
{
    const PageRange range = pagesBetween(top, top + height);
    if (range.last < range.first)
        return pageAt(top);
    int best = range.first;
    double bestHeight = 0;
    for (int page = range.first; page <= range.last; ++page) {
        const QRectF rect = pageRect(page);
        const double shown = std::min(rect.bottom(), top + height) - std::max(rect.top(), top);
        if (shown > bestHeight + 0.5) {
            best = page;
            bestHeight = shown;
        }
    }
    return best;
}

double PageGeometry::widthOf(const PageRange& pages) const
{
    double width = 0;
    for (int page = pages.first; page <= pages.last; ++page)
        width = std::max(width, shownSize(page).width() + 2 * gap);
    return width;
}

PagePlace PageGeometry::placeAt(const QPointF& content) const
{
    const int page = pageAt(content.y());
    return page < 0 ? PagePlace() : PagePlace{page, pointOn(page, content)};
}

QPointF PageGeometry::pointOn(int page, const QPointF& content) const
{
    const QPointF inside = (content - pageRect(page).topLeft()) / theScale;
    const QSizeF size = theSizes[static_cast<std::size_t>(page)];
    switch (theRotation) {
    case 1:
        return {inside.y(), size.height() - inside.x()};
    case 2:
        return {size.width() - inside.x(), size.height() - inside.y()};
    case 3:
        return {size.width() - inside.y(), inside.x()};
    default:
        return inside;
    }
}

QPointF PageGeometry::contentPoint(const PagePlace& place) const
{
    if (place.page < 0 || place.page >= pageCount())
        return {};
    const QSizeF size = theSizes[static_cast<std::size_t>(place.page)];
    const QPointF& point = place.point;
    QPointF inside = point;
    if (theRotation == 1)
        inside = {size.height() - point.y(), point.x()};
    else if (theRotation == 2)
        inside = {size.width() - point.x(), size.height() - point.y()};
    else if (theRotation == 3)
        inside = {point.y(), size.width() - point.x()};
    return pageRect(place.page).topLeft() + inside * theScale;
}

QRectF PageGeometry::contentRect(int page, const QRectF& area) const
{
    return QRectF(contentPoint({page, area.topLeft()}), contentPoint({page, area.bottomRight()}))
        .normalized();
}

QRectF PageGeometry::pageArea(int page, const QRectF& content) const
{
    return QRectF(pointOn(page, content.topLeft()), pointOn(page, content.bottomRight()))
        .normalized();
}

double PageGeometry::scaleForWidth(double width) const
{
    return std::max(1.0, width - 2 * gap) / theExtents.fittingWidth();
}

double PageGeometry::scaleForPage(int page, const QSizeF& view) const
{
    if (page < 0 || page >= pageCount())
        return theScale;
    const QSizeF size = turnedSize(page);
    return std::min(std::max(1.0, view.width() - 2 * gap) / size.width(),
        std::max(1.0, view.height() - 2 * gap) / size.height());
}

} // namespace tarnwick
