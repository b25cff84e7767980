#include "PDFViewPrivate.h"

#include "TextMarker.h"
#include "pages/PagePainter.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tarnwick {

namespace {

/// Pages are white under every palette; what marks their text multiplies with it.
const QColor highlightColour(255, 232, 120);
const QColor pulseColour(255, 196, 0);

QColor surround(const QPalette& palette)
{
    const QColor window = palette.color(QPalette::Window);
    return window.darker(window.lightness() > 127 ? 116 : 130);
}

/// A colour light enough to leave black text legible when it is multiplied with the page.
QColor selectionColour(const QPalette& palette)
{
    const QColor colour = palette.color(QPalette::Active, QPalette::Highlight);
    return QColor::fromHslF(colour.hslHueF() < 0 ? 0.58F : colour.hslHueF(),
        std::max(0.5F, colour.hslSaturationF()), 0.78F);
}

} // namespace

double PDFView::Private::deviceScale() const
{
    return theGeometry.scale() * q->viewport()->devicePixelRatioF();
}

/// Pages begin at whole device pixels: only so their images come to the screen unblurred.
QPoint PDFView::Private::deviceOrigin(int page) const
{
    const QPointF corner
        = inView(theGeometry.pageRect(page).topLeft()) * q->viewport()->devicePixelRatioF();
    return {static_cast<int>(std::round(corner.x())), static_cast<int>(std::round(corner.y()))};
}

void PDFView::Private::wantSoon(int milliseconds)
{
    if (!theWantTimer.isActive() || milliseconds > theWantTimer.remainingTime())
        theWantTimer.start(milliseconds);
}

QList<TileKey> PDFView::Private::tilesToWant(const PageGeometry::PageRange& shown) const
{
    struct Candidate
    {
        double distance;
        TileKey key;
    };
    const double ratio = q->viewport()->devicePixelRatioF();
    const QSize view = (viewSize() * ratio).toSize();
    // Half a view more on both sides, where a scroll would lead next.
    const QRect wanted
        = QRect(QPoint(0, 0), view).adjusted(0, -view.height() / 2, 0, view.height() / 2);
    const QPointF middle = QRectF(QPoint(0, 0), view).center();
    std::vector<Candidate> candidates;
    for (int page = std::max(0, shown.first - 1);
         page <= std::min(theGeometry.pageCount() - 1, shown.last + 1); ++page) {
        const QPoint origin = deviceOrigin(page);
        const TileGrid grid(TileLoader::pixelSize(
            theGeometry.pageSize(page), theGeometry.rotation(), deviceScale()));
        const QRect cells = grid.tilesIn(wanted.translated(-origin));
        for (int row = cells.top(); row <= cells.bottom(); ++row) {
            for (int column = cells.left(); column <= cells.right(); ++column) {
                const QRect area = grid.area(column, row).translated(origin);
                const QPointF away = QRectF(area).center() - middle;
                const bool shows = area.intersects(QRect(QPoint(0, 0), view));
                candidates.push_back({away.manhattanLength() + (shows ? 0 : 1e6),
                    {page, theGeometry.rotation(), deviceScale(), column, row}});
            }
        }
    }
    std::stable_sort(
        candidates.begin(), candidates.end(), [](const Candidate& left, const Candidate& right) {
            return left.distance < right.distance;
        });
    QList<TileKey> keys;
    for (const Candidate& candidate : candidates)
        keys.append(candidate.key);
    return keys;
}

void PDFView::Private::wantTiles()
{
    if (!q->isVisible() || !theDocument)
        return;
    const PageGeometry::PageRange shown = shownPages();
    theTiles.want(tilesToWant(shown), shown, theGeometry.rotation(), deviceScale());
}

void PDFView::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    painter.fillRect(event->rect(), surround(palette()));
    d->paint(painter, event->rect());
}

void PDFView::Private::paint(QPainter& painter, const QRect& exposed)
{
    const double ratio = q->viewport()->devicePixelRatioF();
    const QRectF clip(QPointF(exposed.topLeft()) * ratio, QSizeF(exposed.size()) * ratio);
    painter.setFont(q->font());
    const PageGeometry::PageRange shown = theGeometry.pagesBetween(
        theOrigin.y() + exposed.top(), theOrigin.y() + exposed.bottom() + 1);
    for (int page = shown.first; page <= shown.last; ++page) {
        painter.save();
        painter.scale(1 / ratio, 1 / ratio);
        PagePainter::paint(painter,
            {page, theGeometry.pageSize(page), theGeometry.rotation(), deviceScale(),
                theTiles.failure(page), ratio},
            deviceOrigin(page), clip.toAlignedRect(), theTiles.cache());
        painter.restore();
        paintOverlays(painter, page, exposed);
    }
    if (q->hasFocus()) {
        painter.setPen(q->palette().color(QPalette::Highlight));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(q->viewport()->rect().adjusted(0, 0, -1, -1));
    }
}

QPolygonF PDFView::Private::polygonInView(int page, const QPolygonF& polygon) const
{
    QPolygonF shown;
    for (const QPointF& point : polygon)
        shown.append(inView(theGeometry.contentPoint({page, point})));
    return shown;
}

void PDFView::Private::paintOverlays(QPainter& painter, int page, const QRect& exposed)
{
    const PDFPageText* const text = theDetails.text(page);
    if (!text || (theHighlights.isEmpty() && theSelection.isEmpty()))
        return;
    TextMarker marker(painter, *text,
        theGeometry.pageArea(page, QRectF(exposed).translated(theOrigin)),
        [this, page](const QPolygonF& polygon) { return polygonInView(page, polygon); });
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(QPainter::CompositionMode_Multiply);
    painter.setPen(Qt::NoPen);
    marker.fillMatches(theHighlights, page, highlightColour);
    // Ranges are in document order: a whole book may be selected.
    const auto& ranges = theSelection.ranges();
    auto range = std::lower_bound(ranges.begin(), ranges.end(), page,
        [](const PDFSelection::Range& one, int wanted) { return one.page < wanted; });
    const bool isPulsing = thePulse.state() == QAbstractAnimation::Running;
    for (; range != ranges.end() && range->page == page; ++range) {
        marker.fill(*range, selectionColour(q->palette()));
        if (!isPulsing)
            continue;
        const double strength = thePulse.currentValue().toDouble();
        painter.setPen(
            QPen(pulseColour, 14 * strength, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        marker.fill(*range, pulseColour);
        painter.setPen(Qt::NoPen);
    }
    painter.restore();
}

void PDFView::showEvent(QShowEvent* event)
{
    QAbstractScrollArea::showEvent(event);
    d->wantSoon();
}

/// A window that nobody sees holds no images.
void PDFView::hideEvent(QHideEvent* event)
{
    QAbstractScrollArea::hideEvent(event);
    d->theTiles.clear();
}

void PDFView::changeEvent(QEvent* event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange)
        viewport()->update();
}

} // namespace tarnwick
