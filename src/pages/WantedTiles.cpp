#include "WantedTiles.h"

#include "PageViewport.h"
#include "TileGrid.h"
#include "TileLoader.h"

#include <algorithm>
#include <vector>

namespace tarnwick {

namespace {

constexpr double hidden = 1e6; ///< pixels that a tile which does not show counts as further away

struct Candidate
{
    double distance;
    TileKey key;
};

class Candidates
{
public:
    explicit Candidates(const PageViewport& viewport)
        : theViewport(viewport)
        , theView(QPoint(0, 0), (viewport.frame().size() * viewport.frame().pixelRatio()).toSize())
    {
    }

    void addPage(int page);
    QList<TileKey> nearestFirst();

private:
    double distance(const QRect& area) const;

    const PageViewport& theViewport;
    QRect theView; ///< in device pixels
    std::vector<Candidate> theCandidates;
};

double Candidates::distance(const QRect& area) const
{
    const QPointF away = QRectF(area).center() - QRectF(theView).center();
    return away.manhattanLength() + (area.intersects(theView) ? 0 : hidden);
}

void Candidates::addPage(int page)
{
    const PageGeometry& pages = theViewport.pages();
    const int rotation = pages.rotation();
    const double scale = theViewport.deviceScale();
    const QPoint origin = theViewport.deviceOrigin(page);
    const TileGrid grid(TileLoader::pixelSize(pages.pageSize(page), rotation, scale));
    const int more = theView.height() / 2;
    const QRect cells = grid.tilesIn(theView.adjusted(0, -more, 0, more).translated(-origin));
    for (int row = cells.top(); row <= cells.bottom(); ++row) {
        for (int column = cells.left(); column <= cells.right(); ++column) {
            const QRect area = grid.area(column, row).translated(origin);
            theCandidates.push_back({distance(area), {page, rotation, scale, column, row}});
        }
    }
}

QList<TileKey> Candidates::nearestFirst()
{
    std::stable_sort(theCandidates.begin(), theCandidates.end(),
        [](const Candidate& left, const Candidate& right) {
            return left.distance < right.distance;
        });
    QList<TileKey> keys;
    for (const Candidate& candidate : theCandidates)
        keys.append(candidate.key);
    return keys;
}

} // namespace

QList<TileKey> wantedTiles(const PageViewport& viewport)
{
    const PageGeometry::PageRange shown = viewport.shownPages();
    const int last = std::min(viewport.pages().pageCount() - 1, shown.last + 1);
    Candidates candidates(viewport);
    for (int page = std::max(0, shown.first - 1); page <= last; ++page)
        candidates.addPage(page);
    return candidates.nearestFirst();
}

} // namespace tarnwick
