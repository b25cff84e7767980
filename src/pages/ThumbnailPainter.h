#pragma once

#include "pages/PagePainter.h"

#include <QRect>
#include <QSizeF>
#include <QString>

class QPainter;
class QWidget;

namespace tarnwick {

class TileCache;

/// Paints a thumbnail strip's cells: a page with its label below it.
namespace ThumbnailPainter {

struct Cell
{
    PagePainter::Page page;
    QRect area; ///< of the whole cell
    QSizeF box; ///< that the page fits into, at the area's upper edge
    int labelHeight = 0; ///< at its lower edge
    QString label;
    bool isCurrent = false; ///< framed, the label on a pill
    bool isMarked = false; ///< carries a ribbon
};

/// Leaves the painter as it was. @param painter one unit to a device-independent pixel.
/// @param strip whose font and colours the cell has.
void paint(QPainter& painter, const QWidget& strip, const Cell& cell, const TileCache& tiles);

}

} // namespace tarnwick
