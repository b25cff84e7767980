#include "compare/PictureCells.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace tarnwick {

namespace {

/// The cells of two pictures that lie on each other from their upper left corners.
class CellGrid
{
public:
    CellGrid(const Picture& before, const Picture& after)
        : theBefore(sound(before))
        , theAfter(sound(after))
        , theWidth(std::max(theBefore.width, theAfter.width))
        , theHeight(std::max(theBefore.height, theAfter.height))
        , theColumns((theWidth + cellSide - 1) / cellSide)
        , theRows((theHeight + cellSide - 1) / cellSide)
        , theDiffering(static_cast<std::size_t>(theColumns) * static_cast<std::size_t>(theRows))
    {
        for (int y = 0; y < theHeight; ++y)
            compareRow(y);
    }
    /// A box around each group of cells that touch.
    std::vector<PictureArea> takeAreas()
    {
        std::vector<PictureArea> areas;
        for (int row = 0; row < theRows; ++row) {
            for (int column = 0; column < theColumns; ++column) {
                if (differs(column, row))
                    areas.push_back(takeGroup(column, row));
            }
        }
        return areas;
    }

private:
    static Picture sound(const Picture& picture)
    {
        const bool isSound = picture.width > 0 && picture.height > 0
            && picture.pixels.size() >= static_cast<std::size_t>(picture.width)
                    * static_cast<std::size_t>(picture.height);
        return isSound ? picture : Picture();
    }
    std::vector<bool>::reference differs(int column, int row)
    {
        return theDiffering[static_cast<std::size_t>(row) * static_cast<std::size_t>(theColumns)
            + static_cast<std::size_t>(column)];
    }
    static const std::uint32_t* rowOf(const Picture& picture, int y)
    {
        return y < picture.height ? picture.pixels.data()
                + static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.width)
                                  : nullptr;
    }
    void compareRow(int y)
    {
        const int width = y < theBefore.height ? theBefore.width : 0;
        const int otherWidth = y < theAfter.height ? theAfter.width : 0;
        const int shared = std::min(width, otherWidth);
        const int whole = std::max(width, otherWidth);
        const std::uint32_t* const before = rowOf(theBefore, y);
        const std::uint32_t* const after = rowOf(theAfter, y);
        for (int begin = 0; begin < whole; begin += cellSide) {
            const int end = std::min(begin + cellSide, whole);
            if (end > shared || !std::equal(before + begin, before + end, after + begin))
                differs(begin / cellSide, y / cellSide) = true;
        }
    }
    /// The box of all cells that touch this one, at an edge or a corner; they differ no more.
    PictureArea takeGroup(int column, int row)
    {
        int left = column;
        int right = column;
        int bottom = row;
        std::vector<std::pair<int, int>> open = {{column, row}};
        differs(column, row) = false;
        while (!open.empty()) {
            const auto [x, y] = open.back();
            open.pop_back();
            left = std::min(left, x);
            right = std::max(right, x);
            bottom = std::max(bottom, y);
            for (int nextY = std::max(0, y - 1); nextY <= std::min(theRows - 1, y + 1); ++nextY) {
                for (int nextX = std::max(0, x - 1); nextX <= std::min(theColumns - 1, x + 1);
                     ++nextX) {
                    if (differs(nextX, nextY)) {
                        differs(nextX, nextY) = false;
                        open.emplace_back(nextX, nextY);
                    }
                }
            }
        }
        const auto edge = [](int cells, int limit) { return std::min(cells * cellSide, limit); };
        return {static_cast<double>(left * cellSide), static_cast<double>(row * cellSide),
            static_cast<double>(edge(right + 1, theWidth)),
            static_cast<double>(edge(bottom + 1, theHeight))};
    }

    Picture theBefore;
    Picture theAfter;
    int theWidth;
    int theHeight;
    int theColumns;
    int theRows;
    std::vector<bool> theDiffering;
};

} // namespace

std::vector<PictureArea> differingAreas(const Picture& before, const Picture& after)
{
    std::vector<PictureArea> areas = CellGrid(before, after).takeAreas();
    if (areas.size() <= mostAreas)
        return areas;
    PictureArea all = areas.front();
    for (const PictureArea& area : areas) {
        all.left = std::min(all.left, area.left);
        all.top = std::min(all.top, area.top);
        all.right = std::max(all.right, area.right);
        all.bottom = std::max(all.bottom, area.bottom);
    }
    return {all};
}

} // namespace tarnwick
