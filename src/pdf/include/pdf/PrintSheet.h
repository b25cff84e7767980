#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>

namespace tarnwick {

/// What one sheet of paper shows of a document.
struct PrintSheet
{
    int page = 0; ///< of the document, from 0
    QRectF area; ///< in points of the page as it is scaled for printing
    double scale = 1; ///< points of paper for a point of the page
};

/// What the sheets' areas are printed on.
struct PrintPaper
{
    QSizeF size; ///< in points
    QPointF corner; ///< where an area's upper left corner comes to lie, from the paper's
};

} // namespace tarnwick
