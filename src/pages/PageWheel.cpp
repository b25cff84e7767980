#include "PageWheel.h"

#include "PageScroller.h"
#include "PageZoom.h"

#include <QApplication>
#include <QGestureEvent>
#include <QNativeGestureEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace tarnwick {

namespace {

constexpr double notch = 120; ///< eighths of a degree of one step of a wheel
constexpr double zoomOfNotch = 1.15;
constexpr double lineOfNotch = 32; ///< pixels
constexpr double smallestPinch = 0.1;

} // namespace

void PageWheel::turn(const QWheelEvent& event, PageScroller& scroller, PageZoom& zoom)
{
    const QPointF pixels = event.pixelDelta();
    const QPointF notches = QPointF(event.angleDelta()) / notch;
    if (event.modifiers().testFlag(Qt::ControlModifier))
        return zoom.zoomBy(std::pow(zoomOfNotch, notches.y()), event.position());
    if (!pixels.isNull() && event.source() != Qt::MouseEventSynthesizedBySystem)
        return scroller.scrollBy(-pixels);
    QPointF way = -notches * (QApplication::wheelScrollLines() * lineOfNotch);
    if (event.modifiers().testFlag(Qt::ShiftModifier) && way.x() == 0)
        way = way.transposed();
    scroller.glide(way);
}

bool PageWheel::pinch(QEvent* event, PageZoom& zoom, const QWidget& surface)
{
    if (event->type() == QEvent::NativeGesture) {
        const auto* const gesture = static_cast<QNativeGestureEvent*>(event);
        if (gesture->gestureType() != Qt::ZoomNativeGesture)
            return false;
        zoom.zoomBy(std::max(smallestPinch, 1 + gesture->value()), gesture->position());
        return true;
    }
    QGesture* const gesture = static_cast<QGestureEvent*>(event)->gesture(Qt::PinchGesture);
    const auto* const pinch = qobject_cast<QPinchGesture*>(gesture);
    if (!pinch)
        return false;
    zoom.zoomBy(std::max(smallestPinch, pinch->scaleFactor()),
        surface.mapFromGlobal(pinch->centerPoint().toPoint()));
    return true;
}

} // namespace tarnwick
