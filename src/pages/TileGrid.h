#pragma once

#include <QRect>
#include <QSize>

#include <algorithm>

namespace tarnwick {

/// How a page's image is cut into tiles: as few as possible of at most 1024 x 1024 pixels, all of
/// about one size, so that no tile is a sliver and none takes long to hand over.
class TileGrid
{
public:
    static constexpr int largestSide = 1024;

    /// @param page size of the whole page in device pixels, each side at least 1.
    explicit TileGrid(const QSize& page)
        : thePage(page)
        , theColumns(count(page.width()))
        , theRows(count(page.height()))
    {
    }

    int columns() const { return theColumns; }
    int rows() const { return theRows; }

    /// The pixels of a tile.
    QRect area(int column, int row) const
    {
        const QPoint from(
            edge(thePage.width(), theColumns, column), edge(thePage.height(), theRows, row));
        const QPoint to(edge(thePage.width(), theColumns, column + 1),
            edge(thePage.height(), theRows, row + 1));
        return {from, QSize(to.x() - from.x(), to.y() - from.y())};
    }

    /// Columns (x) and rows (y) of the tiles that hold pixels of an area; null when there are none.
    QRect tilesIn(const QRect& pixels) const
    {
        const QRect inside = pixels.intersected(QRect(QPoint(0, 0), thePage));
        if (inside.isEmpty())
            return {};
        return {QPoint(index(thePage.width(), theColumns, inside.left()),
                    index(thePage.height(), theRows, inside.top())),
            QPoint(index(thePage.width(), theColumns, inside.right()),
                index(thePage.height(), theRows, inside.bottom()))};
    }

private:
    static int count(int length) { return std::max(1, (length + largestSide - 1) / largestSide); }
    static int edge(int length, int count, int index)
    {
        return static_cast<int>(qint64{length} * index / count);
    }
    static int index(int length, int count, int pixel)
    {
        int index = static_cast<int>(qint64{pixel} * count / length);
        while (edge(length, count, index + 1) <= pixel)
            ++index;
        return index;
    }

    QSize thePage;
    int theColumns;
    int theRows;
};

} // namespace tarnwick
