#pragma once

#include "PageGeometry.h"

#include <QImage>
#include <QList>

#include <map>
#include <tuple>

namespace tarnwick {

/// A tile of a page's image (TileGrid).
struct TileKey
{
    int page = 0;
    int rotation = 0; ///< clockwise quarter turns
    double scale = 1; ///< device pixels for a point
    int column = 0;
    int row = 0;

    bool operator==(const TileKey&) const = default;
    bool operator<(const TileKey& other) const
    {
        return std::tie(page, rotation, scale, column, row)
            < std::tie(other.page, other.rotation, other.scale, other.column, other.row);
    }
};

/// The tiles that a view keeps: never more bytes than its limit, except that a tile just inserted
/// stays even where it alone is larger.
///
/// Room is made by giving up what is least likely to be shown next: other scales and rotations
/// before the present one, far pages before near ones.
class TileCache
{
public:
    /// @param limit bytes of image data.
    explicit TileCache(qsizetype limit)
        : theLimit(limit)
    {
    }

    /// What shows at present; gives up every page further away than that many pages.
    void setFocus(const PageGeometry::PageRange& pages, int rotation, double scale, int reach);

    void insert(const TileKey& key, const QImage& image);
    /// @returns null when the tile is not kept; valid until the next change.
    const QImage* find(const TileKey& key) const;
    /// Tiles of a page at another scale in the same rotation, to stand in for those that are
    /// missing: all of one scale, the one nearest to the wanted.
    QList<TileKey> standIns(int page, int rotation, double scale) const;

    void dropPage(int page);
    void clear();

    qsizetype limit() const { return theLimit; }
    qsizetype bytes() const { return theBytes; }
    qsizetype count() const { return static_cast<qsizetype>(theTiles.size()); }

private:
    using Tiles = std::map<TileKey, QImage>;
    Tiles::iterator drop(Tiles::iterator tile);
    int distance(int page) const;
    void makeRoom(const TileKey& keep);

    Tiles theTiles;
    qsizetype theLimit;
    qsizetype theBytes = 0;
    PageGeometry::PageRange thePages;
    int theRotation = 0;
    double theScale = 1;
};

} // namespace tarnwick
