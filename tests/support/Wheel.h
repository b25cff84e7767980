#pragma once

#include <QApplication>
#include <QWheelEvent>
#include <QWidget>

namespace tarnwick {

/// @param angle in eighths of a degree, 120 for a notch. @param pixels by a touchpad.
inline void turnWheel(QWidget& widget, const QPoint& angle, const QPoint& pixels = {},
    const QPoint& at = {9, 9}, Qt::KeyboardModifiers keys = {})
{
    QWheelEvent wheel(
        at, widget.mapToGlobal(at), pixels, angle, Qt::NoButton, keys, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &wheel);
}

} // namespace tarnwick
