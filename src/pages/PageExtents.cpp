#include "PageExtents.h"

#include <algorithm>
#include <map>

namespace tarnwick {

namespace {

/// How much wider than the median page one may be and still decide what "fit the width" means.
constexpr double widestOutlier = 2;
constexpr std::size_t widths = 14402;

std::size_t pointOf(double width)
{
    return std::min(static_cast<std::size_t>(std::max(0.0, width)), widths - 1);
}

} // namespace

int PageExtents::endOf(std::size_t block) const
{
    return std::min(static_cast<int>(block + 1) * blockSize, theCount);
}

void PageExtents::measure(std::size_t block, const SizeOf& sizeOf)
{
    Block extent;
    const int first = static_cast<int>(block) * blockSize;
    extent.narrowest = extent.widest = sizeOf(first).width();
    for (int page = first; page < endOf(block); ++page) {
        const QSizeF size = sizeOf(page);
        extent.height += size.height();
        extent.narrowest = std::min(extent.narrowest, size.width());
        extent.widest = std::max(extent.widest, size.width());
    }
    theBlocks[block] = extent;
}

void PageExtents::count(std::size_t block, int step, const SizeOf& sizeOf)
{
    const Block& extent = theBlocks[block];
    const int first = static_cast<int>(block) * blockSize;
    if (extent.narrowest == extent.widest) {
        theWidths[pointOf(extent.widest)] += step * (endOf(block) - first);
        return;
    }
    for (int page = first; page < endOf(block); ++page)
        theWidths[pointOf(sizeOf(page).width())] += step;
}

void PageExtents::setPages(int pages, const SizeOf& sizeOf)
{
    theCount = pages;
    theBlocks.assign(static_cast<std::size_t>((pages + blockSize - 1) / blockSize), {});
    theWidths.assign(widths, 0);
    if (pages > 0)
        learn(0, pages, sizeOf);
    else
        theFittingWidth = 1;
}

void PageExtents::forget(int first, int pages, const SizeOf& sizeOf)
{
    for (int block = first / blockSize; block <= (first + pages - 1) / blockSize; ++block)
        count(static_cast<std::size_t>(block), -1, sizeOf);
}

void PageExtents::learn(int first, int pages, const SizeOf& sizeOf)
{
    for (int block = first / blockSize; block <= (first + pages - 1) / blockSize; ++block) {
        measure(static_cast<std::size_t>(block), sizeOf);
        count(static_cast<std::size_t>(block), 1, sizeOf);
    }
    finish(sizeOf);
}

void PageExtents::finish(const SizeOf& sizeOf)
{
    double height = 0;
    for (Block& block : theBlocks) {
        block.heightBefore = height;
        height += block.height;
    }
    const double median = medianWidth(sizeOf);
    theFittingWidth = widestUpTo(median * widestOutlier, median, sizeOf);
}

double PageExtents::heightBefore(int page, const SizeOf& sizeOf) const
{
    if (page >= theCount)
        return theBlocks.empty() ? 0 : theBlocks.back().heightBefore + theBlocks.back().height;
    const Block& block = theBlocks[static_cast<std::size_t>(page / blockSize)];
    double height = block.heightBefore;
    for (int before = page / blockSize * blockSize; before < page; ++before)
        height += sizeOf(before).height();
    return height;
}

/// The widths of one point are enough to find the middle one among.
double PageExtents::medianWidth(const SizeOf& sizeOf) const
{
    int rank = theCount / 2;
    std::size_t point = 0;
    while (point + 1 < widths && rank >= theWidths[point])
        rank -= theWidths[point++];
    std::map<double, int> found;
    for (std::size_t block = 0; block < theBlocks.size(); ++block) {
        const Block& extent = theBlocks[block];
        if (pointOf(extent.narrowest) > point || pointOf(extent.widest) < point)
            continue;
        const int first = static_cast<int>(block) * blockSize;
        if (extent.narrowest == extent.widest) {
            found[extent.widest] += endOf(block) - first;
            continue;
        }
        for (int page = first; page < endOf(block); ++page) {
            const double width = sizeOf(page).width();
            if (pointOf(width) == point)
                ++found[width];
        }
    }
    for (const auto& [width, pages] : found) {
        if (rank < pages)
            return width;
        rank -= pages;
    }
    return 1;
}

double PageExtents::widestUpTo(double limit, double least, const SizeOf& sizeOf) const
{
    double widest = least;
    for (std::size_t block = 0; block < theBlocks.size(); ++block) {
        const Block& extent = theBlocks[block];
        if (extent.widest <= limit) {
            widest = std::max(widest, extent.widest);
            continue;
        }
        for (int page = static_cast<int>(block) * blockSize;
             extent.narrowest <= limit && page < endOf(block); ++page) {
            const double width = sizeOf(page).width();
            if (width <= limit)
                widest = std::max(widest, width);
        }
    }
    return widest;
}

} // namespace tarnwick
