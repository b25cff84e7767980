#include "ThumbnailPainter.h"

#include "ThumbnailGrid.h"
#include "TileLoader.h"

#include <QPainter>
#include <QPolygonF>
#include <QWidget>

#include <algorithm>

namespace tarnwick {

namespace {

/// A page's label in the middle of an area, elided to it.
void paintLabel(QPainter& painter, const QWidget& strip, const QString& whole, const QRect& area,
    bool isCurrent)
{
    const QFontMetrics metrics = strip.fontMetrics();
    const QString label = metrics.elidedText(whole, Qt::ElideMiddle, area.width() - 8);
    const QPalette& colours = strip.palette();
    painter.save();
    if (isCurrent) {
        QRect pill(0, 0, metrics.horizontalAdvance(label) + 12, metrics.height());
        pill.moveCenter(area.center());
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(colours.color(QPalette::Highlight));
        painter.drawRoundedRect(pill, pill.height() / 2.0, pill.height() / 2.0);
    }
    painter.setPen(colours.color(isCurrent ? QPalette::HighlightedText : QPalette::WindowText));
    painter.drawText(area, Qt::AlignCenter, label);
    painter.restore();
}

/// The sign of a marked page: a ribbon that hangs over the upper edge of its paper.
void paintMark(QPainter& painter, const QRect& paper)
{
    const double width = std::clamp(paper.width() / 7.0, 6.0, 16.0);
    const double left = paper.right() - 1.6 * width;
    const double top = paper.top() - 2;
    const double height = 1.7 * width;
    const QPolygonF ribbon{
        QList<QPointF>{{left, top}, {left + width, top}, {left + width, top + height},
            {left + width / 2, top + height - width / 2}, {left, top + height}}};
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(120, 20, 20), 1));
    painter.setBrush(QColor(214, 48, 49));
    painter.drawPolygon(ribbon);
    painter.restore();
}

void paintFrame(QPainter& painter, const QWidget& strip, const QRect& paper)
{
    painter.setPen(QPen(strip.palette().color(QPalette::Highlight), 3));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(paper.adjusted(-3, -3, 2, 2));
}

/// @returns where the page's paper lies.
QRect paintPage(QPainter& painter, const ThumbnailPainter::Cell& cell, const TileCache& tiles)
{
    const double ratio = cell.page.pixelRatio;
    const QSize pixels
        = TileLoader::pixelSize(cell.page.sizeInPoints, cell.page.rotation, cell.page.scale);
    const QSizeF shown = QSizeF(pixels) / ratio;
    const QPointF corner(cell.area.x() + (cell.area.width() - shown.width()) / 2,
        cell.area.y() + ThumbnailGrid::frame + cell.box.height() - shown.height());
    const QPoint origin(qRound(corner.x() * ratio), qRound(corner.y() * ratio));
    painter.save();
    painter.scale(1 / ratio, 1 / ratio);
    PagePainter::paint(painter, cell.page, origin, QRect(origin, pixels), tiles);
    painter.restore();
    return {corner.toPoint(), shown.toSize()};
}

} // namespace

void ThumbnailPainter::paint(
    QPainter& painter, const QWidget& strip, const Cell& cell, const TileCache& tiles)
{
    painter.save();
    const QRect paper = paintPage(painter, cell, tiles);
    if (cell.isCurrent)
        paintFrame(painter, strip, paper);
    if (cell.isMarked)
        paintMark(painter, paper);
    paintLabel(painter, strip, cell.label,
        {cell.area.left(), cell.area.bottom() + 1 - cell.labelHeight, cell.area.width(),
            cell.labelHeight},
        cell.isCurrent);
    painter.restore();
}

} // namespace tarnwick
