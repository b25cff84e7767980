#include "platform/PageGeometry.h"

#include <algorithm>

namespace {

/// How much wider than the median page one may be and still decide what "fit the width" means.
constexpr double widestOutlier = 2;

double fittingWidth(std::vector<double> widths)
{
    if (widths.empty())
        return 1;
    const auto middle = widths.begin() + static_cast<std::ptrdiff_t>(widths.size() / 2);
    std::nth_element(widths.begin(), middle, widths.end());
    const double limit = *middle * widestOutlier;
    double widest = *middle;
    for (const double width : widths) {
        if (width <= limit)
            widest = std::max(widest, width);
    }
    return widest;
}

} // namespace

void PageGeometry::setPages(const QList<QSizeF>& sizes)
{
    theSizes.assign(sizes.begin(), sizes.end());
    rebuild();
}

void PageGeometry::setPageSizes(int first, const QList<QSizeF>& sizes)
{
    std::copy(sizes.begin(), sizes.end(), theSizes.begin() + first);
    rebuild();
}

void PageGeometry::setRotation(int quarterTurns)
{
    theRotation = ((quarterTurns % 4) + 4) % 4;
    rebuild();
}

QSizeF PageGeometry::turnedSize(int page) const
{
    const QSizeF& size = theSizes[static_cast<std::size_t>(page)];
    return isTurned() ? size.transposed() : size;
}

void PageGeometry::rebuild()
{
    theHeightsBefore.assign(1, 0);
    theHeightsBefore.reserve(theSizes.size() + 1);
    std::vector<double> widths;
    widths.reserve(theSizes.size());
    for (int page = 0; page < pageCount(); ++page) {
        const QSizeF size = turnedSize(page);
        theHeightsBefore.push_back(theHeightsBefore.back() + size.height());
        widths.push_back(size.width());
    }
    theFittingWidth = fittingWidth(std::move(widths));
}

double PageGeometry::pageTop(int page) const
{
    return theHeightsBefore[static_cast<std::size_t>(page)] * theScale + gap * (page + 1);
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
    return std::max(1.0, width - 2 * gap) / theFittingWidth;
}

double PageGeometry::scaleForPage(int page, const QSizeF& view) const
{
    if (page < 0 || page >= pageCount())
        return theScale;
    const QSizeF size = turnedSize(page);
    return std::min(std::max(1.0, view.width() - 2 * gap) / size.width(),
        std::max(1.0, view.height() - 2 * gap) / size.height());
}
