#pragma once

#include <QRect>
#include <QSizeF>

class QPainter;

namespace tarnwick {

class TileCache;
enum class PDFFailure;

/// Paints one page of a view: its paper, what there is of its image, or why there is none. The page
/// view and the thumbnails share it.
namespace PagePainter {

struct Page
{
    int page = 0;
    QSizeF sizeInPoints; ///< unrotated
    int rotation = 0; ///< clockwise quarter turns
    double scale = 1; ///< device pixels for a point
    PDFFailure failure; ///< isNone for a page that can be drawn
    double pixelRatio = 1; ///< device pixels for a device-independent one, for texts and lines
};

/// @param painter one unit to a device pixel.
/// @param origin device pixel of the page's upper left corner.
/// @param clip device pixels that need painting.
void paint(QPainter& painter, const Page& page, const QPoint& origin, const QRect& clip,
    const TileCache& tiles);

}

} // namespace tarnwick
