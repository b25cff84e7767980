#pragma once

class QPainter;
class QRect;
class QString;
class QWidget;

namespace tarnwick {

/// Paints what stands around a thumbnail. Each leaves the painter as it was.
namespace ThumbnailPainter {

/// A page's label in the middle of an area, elided to it, on a pill for the current page.
/// @param strip whose font and colours it has.
void paintLabel(QPainter& painter, const QWidget& strip, const QString& whole, const QRect& area,
    bool isCurrent);

/// The sign of a marked page: a ribbon that hangs over the upper edge of its paper.
void paintMark(QPainter& painter, const QRect& paper);

}

} // namespace tarnwick
