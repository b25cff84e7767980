#include "TextOverlay.h"

#include "PageViewport.h"
#include "TextMarker.h"
#include "work/ReleaseElsewhere.h"

#include <QPainter>
#include <QPalette>

#include <algorithm>
#include <utility>

namespace tarnwick {

namespace {

constexpr int pulseDuration = 450; ///< milliseconds
constexpr double pulseWidth = 14; ///< pixels of its outline at first

/// Pages are white under every palette; what marks their text multiplies with it.
const QColor matchColour(255, 232, 120);
const QColor pulseColour(255, 196, 0);

/// A colour light enough to leave black text legible when it is multiplied with the page.
QColor selectionColour(const QPalette& palette)
{
    const QColor colour = palette.color(QPalette::Active, QPalette::Highlight);
    return QColor::fromHslF(colour.hslHueF() < 0 ? 0.58F : colour.hslHueF(),
        std::max(0.5F, colour.hslSaturationF()), 0.78F);
}

/// The range of a page. Ranges are in document order: a whole book may be selected.
const PDFSelection::Range* rangeOn(int page, const PDFSelection& selection)
{
    const auto& ranges = selection.ranges();
    const auto range = std::lower_bound(ranges.begin(), ranges.end(), page,
        [](const PDFSelection::Range& one, int wanted) { return one.page < wanted; });
    return range == ranges.end() || range->page != page ? nullptr : &*range;
}

} // namespace

TextOverlay::TextOverlay(const PageViewport& viewport, QObject* parent)
    : QObject(parent)
    , theViewport(viewport)
{
    thePulse.setStartValue(1.0);
    thePulse.setEndValue(0.0);
    thePulse.setDuration(pulseDuration);
    connect(&thePulse, &QVariantAnimation::valueChanged, this, &TextOverlay::changed);
}

TextOverlay::~TextOverlay()
{
    releaseElsewhere(std::exchange(theMatches, {}));
}

void TextOverlay::setMatches(const QList<PDFSelection>& matches)
{
    releaseElsewhere(std::exchange(theMatches, matches));
    emit changed();
}

void TextOverlay::paint(QPainter& painter, int page, const PDFPageText& text,
    const PDFSelection& selection, const QRect& exposed, const QPalette& palette) const
{
    if (theMatches.isEmpty() && selection.isEmpty())
        return;
    TextMarker marker(painter, text, theViewport.pageArea(page, QRectF(exposed)),
        [this, page](const QPolygonF& polygon) { return theViewport.inView(page, polygon); });
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(QPainter::CompositionMode_Multiply);
    painter.setPen(Qt::NoPen);
    marker.fillMatches(theMatches, page, matchColour);
    if (const PDFSelection::Range* const range = rangeOn(page, selection)) {
        marker.fill(*range, selectionColour(palette));
        if (thePulse.state() == QAbstractAnimation::Running) {
            const double width = pulseWidth * thePulse.currentValue().toDouble();
            painter.setPen(QPen(pulseColour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
            marker.fill(*range, pulseColour);
        }
    }
    painter.restore();
}

} // namespace tarnwick
