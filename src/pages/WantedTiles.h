#pragma once

#include "TileCache.h"

#include <QList>

namespace tarnwick {

class PageViewport;

/// The tiles that a viewport shows, and half a view more above and below, where a scroll would lead
/// next: those that show first, in each part the nearest to the middle first.
QList<TileKey> wantedTiles(const PageViewport& viewport);

} // namespace tarnwick
