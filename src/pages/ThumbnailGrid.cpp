#include "ThumbnailGrid.h"

#include <algorithm>

namespace tarnwick {

ThumbnailGrid::ThumbnailGrid(
    const QSizeF& thumbnail, int labelHeight, const QSize& view, int pageCount)
    : theCell(thumbnail.toSize() + QSize(2 * frame, labelHeight + 2 * frame))
    , theView(view)
    , thePageCount(pageCount)
    , theColumns(std::max(1, (view.width() - gap) / (theCell.width() + gap)))
{
}

qint64 ThumbnailGrid::height() const
{
    const int rows = (thePageCount + theColumns - 1) / theColumns;
    return qint64{rows} * rowHeight() + gap;
}

PageGeometry::PageRange ThumbnailGrid::shownPages(int offset) const
{
    const int first = offset / rowHeight() * theColumns;
    const int lastRow = (offset + theView.height()) / rowHeight();
    return {first, std::min(thePageCount - 1, (lastRow + 1) * theColumns - 1)};
}

QRect ThumbnailGrid::rect(int page, int offset) const
{
    if (page < 0 || page >= thePageCount)
        return {};
    const int step = theCell.width() + gap;
    const int left = (theView.width() - (theColumns * step - gap)) / 2;
    const int top = gap + page / theColumns * rowHeight() - offset;
    return {QPoint(left + page % theColumns * step, top), theCell};
}

int ThumbnailGrid::pageAt(const QPoint& point, int offset) const
{
    const PageGeometry::PageRange shown = shownPages(offset);
    for (int page = shown.first; page <= shown.last; ++page) {
        if (rect(page, offset).contains(point))
            return page;
    }
    return -1;
}

int ThumbnailGrid::target(int page, Step step) const
{
    const int view = std::max(1, theView.height() / rowHeight()) * theColumns;
    const int last = thePageCount - 1;
    switch (step) {
    case Step::isUp:
        return page - theColumns;
    case Step::isDown:
        return page + theColumns;
    case Step::isLeft:
        return page - 1;
    case Step::isRight:
        return page + 1;
    case Step::isViewUp:
        return std::max(0, page - view);
    case Step::isViewDown:
        return std::min(last, page + view);
    case Step::isFirst:
        return 0;
    case Step::isLast:
        break;
    }
    return last;
}

int ThumbnailGrid::pageAfter(int page, Step step) const
{
    const int next = target(page, step);
    return next >= 0 && next < thePageCount ? next : page;
}

} // namespace tarnwick
