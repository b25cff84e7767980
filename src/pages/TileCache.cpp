#include "TileCache.h"

#include <algorithm>
#include <cmath>

namespace tarnwick {

int TileCache::distance(int page) const
{
    return std::max({0, thePages.first - page, page - thePages.last});
}

void TileCache::setFocus(
    const PageGeometry::PageRange& pages, int rotation, double scale, int reach)
{
    thePages = pages;
    theRotation = rotation;
    theScale = scale;
    for (auto tile = theTiles.begin(); tile != theTiles.end();)
        tile = distance(tile->first.page) > reach ? drop(tile) : std::next(tile);
}

TileCache::Tiles::iterator TileCache::drop(Tiles::iterator tile)
{
    theBytes -= tile->second.sizeInBytes();
    return theTiles.erase(tile);
}

void TileCache::insert(const TileKey& key, const QImage& image)
{
    if (const auto old = theTiles.find(key); old != theTiles.end())
        drop(old);
    theBytes += image.sizeInBytes();
    theTiles.emplace(key, image);
    if (theBytes > theLimit)
        makeRoom(key);
}

void TileCache::makeRoom(const TileKey& keep)
{
    // Worst first. Insertions that overflow are rare beside paintings that look tiles up, and
    // there are hundreds of tiles, not millions: so the order is made when it is needed.
    std::vector<std::tuple<bool, int, Tiles::iterator>> order;
    for (auto tile = theTiles.begin(); tile != theTiles.end(); ++tile) {
        const TileKey& key = tile->first;
        const bool isOther = key.rotation != theRotation || key.scale != theScale;
        if (!(key == keep))
            order.emplace_back(isOther, distance(key.page), tile);
    }
    std::sort(order.begin(), order.end(), [](const auto& left, const auto& right) {
        return std::tie(std::get<0>(left), std::get<1>(left))
            > std::tie(std::get<0>(right), std::get<1>(right));
    });
    for (const auto& entry : order) {
        if (theBytes <= theLimit)
            return;
        drop(std::get<2>(entry));
    }
}

const QImage* TileCache::find(const TileKey& key) const
{
    const auto tile = theTiles.find(key);
    return tile == theTiles.end() ? nullptr : &tile->second;
}

QList<TileKey> TileCache::standIns(int page, int rotation, double scale) const
{
    QList<TileKey> keys;
    double best = 0;
    for (auto tile = theTiles.lower_bound({page, rotation, 0, 0, 0});
         tile != theTiles.end() && tile->first.page == page && tile->first.rotation == rotation;
         ++tile) {
        const double candidate = tile->first.scale;
        if (candidate == scale)
            continue;
        const auto off = [scale](double other) { return std::abs(std::log(other / scale)); };
        if (keys.isEmpty() || (candidate != best && off(candidate) < off(best))) {
            keys.clear();
            best = candidate;
        }
        if (candidate == best)
            keys.append(tile->first);
    }
    return keys;
}

void TileCache::dropPage(int page)
{
    for (auto tile = theTiles.lower_bound({page, 0, 0, 0, 0});
         tile != theTiles.end() && tile->first.page == page;)
        tile = drop(tile);
}

void TileCache::clear()
{
    theTiles.clear();
    theBytes = 0;
}

} // namespace tarnwick
