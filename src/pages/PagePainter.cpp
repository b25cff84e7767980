#include "pages/PagePainter.h"

#include "TileCache.h"
#include "TileGrid.h"
#include "TileLoader.h"
#include "pdf/FailureText.h"

#include <QPainter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarnwick {

namespace {

/// Paints a page's image at another scale, stretched, where its own is still to come.
void paintStandIns(
    QPainter& painter, const PagePainter::Page& page, const QRect& whole, const TileCache& tiles)
{
    for (const TileKey& key : tiles.standIns(page.page, page.rotation, page.scale)) {
        const QSize size = TileLoader::pixelSize(page.sizeInPoints, key.rotation, key.scale);
        const QRect area = TileGrid(size).area(key.column, key.row);
        const double x = whole.width() / static_cast<double>(size.width());
        const double y = whole.height() / static_cast<double>(size.height());
        const QRectF target(whole.x() + area.x() * x, whole.y() + area.y() * y, area.width() * x,
            area.height() * y);
        painter.drawImage(target, *tiles.find(key));
    }
}

bool hasAll(const PagePainter::Page& page, const QRect& cells, const TileCache& tiles)
{
    for (int row = cells.top(); row <= cells.bottom(); ++row) {
        for (int column = cells.left(); column <= cells.right(); ++column) {
            if (!tiles.find({page.page, page.rotation, page.scale, column, row}))
                return false;
        }
    }
    return true;
}

/// Texts are laid out in device-independent pixels, as the font's size means them.
void paintFailure(QPainter& painter, const QRect& whole, const PagePainter::Page& page)
{
    painter.save();
    painter.scale(page.pixelRatio, page.pixelRatio);
    painter.setPen(QColor(0x60, 0x60, 0x60));
    const QRect inside(
        QPoint(qRound(whole.x() / page.pixelRatio) + 8, qRound(whole.y() / page.pixelRatio) + 8),
        (QSizeF(whole.size()) / page.pixelRatio - QSizeF(16, 16)).toSize());
    const QString text = failureText(page.failure, FailedTask::isDrawing);
    const QRect needed = painter.boundingRect(inside, Qt::AlignCenter | Qt::TextWordWrap, text);
    // A thumbnail has no room for sentences: a mark says that something is wrong.
    const bool isTight = needed.height() > inside.height() || needed.width() > inside.width();
    painter.drawText(inside, Qt::AlignCenter | Qt::TextWordWrap, isTight ? u"⚠"_s : text);
    painter.restore();
}

} // namespace

void PagePainter::paint(QPainter& painter, const Page& page, const QPoint& origin,
    const QRect& clip, const TileCache& tiles)
{
    const QSize size = TileLoader::pixelSize(page.sizeInPoints, page.rotation, page.scale);
    const QRect whole(origin, size);
    painter.fillRect(whole, Qt::white);
    painter.setClipRect(whole);
    const TileGrid grid(size);
    const QRect cells = grid.tilesIn(clip.translated(-origin));
    if (!cells.isNull() && !hasAll(page, cells, tiles)) {
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        paintStandIns(painter, page, whole, tiles);
    }
    for (int row = cells.top(); row <= cells.bottom(); ++row) {
        for (int column = cells.left(); column <= cells.right(); ++column) {
            const QImage* const tile
                = tiles.find({page.page, page.rotation, page.scale, column, row});
            if (tile)
                painter.drawImage(origin + grid.area(column, row).topLeft(), *tile);
        }
    }
    if (page.failure != PDFFailure::isNone)
        paintFailure(painter, whole, page);
    painter.setClipping(false);
    const QColor edge(0, 0, 0, 96);
    const int line = std::max(1, qRound(page.pixelRatio));
    painter.fillRect(whole.left() - line, whole.top() - line, whole.width() + 2 * line, line, edge);
    painter.fillRect(whole.left() - line, whole.bottom() + 1, whole.width() + 2 * line, line, edge);
    painter.fillRect(whole.left() - line, whole.top(), line, whole.height(), edge);
    painter.fillRect(whole.right() + 1, whole.top(), line, whole.height(), edge);
}

} // namespace tarnwick
