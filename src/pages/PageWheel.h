#pragma once

class QEvent;
class QWheelEvent;
class QWidget;

namespace tarnwick {

class PageScroller;
class PageZoom;

/// What wheels and touchpads do on pages.
namespace PageWheel {

/// Scrolls, or zooms while Control is held.
void turn(const QWheelEvent& event, PageScroller& scroller, PageZoom& zoom);

/// Zooms by the fingers. @param surface that the event is for.
/// @returns false for other gestures.
bool pinch(QEvent* event, PageZoom& zoom, const QWidget& surface);

}

} // namespace tarnwick
