#pragma once

#include <QObject>
#include <QScrollBar>

namespace tarnwick {

/// A scroll bar over a distance in pixels, from the top or the left, that may be longer than its
/// integers reach.
class ScrollAxis : public QObject
{
    Q_OBJECT

public:
    /// @param bar borrowed.
    explicit ScrollAxis(QScrollBar* bar);

    /// Shows that so many of extent pixels are out of view before the visible ones, without telling
    /// anyone. At the very end the bar stands at its end, whatever estimates say.
    void show(double position, double extent, double visible, double step);

    double position() const { return thePosition; }

signals:
    /// The user moved the bar. @param isDragged by its handle, to anywhere.
    void moved(double from, double to, bool isDragged);

private:
    void takeValue(int value);

    QScrollBar* theBar;
    double theScale = 1; ///< pixels per step of the bar
    double thePosition = 0;
    bool isShowing = false;
};

} // namespace tarnwick
