#pragma once

#include <QObject>
#include <QPointF>
#include <QTimer>

namespace tarnwick {

/// Takes a view along a way in steps that grow smaller, so that the eye can follow.
class SmoothScroll : public QObject
{
    Q_OBJECT

public:
    explicit SmoothScroll(QObject* parent);

    /// Adds to what is left of the way and goes a step at once; the others follow by the event
    /// loop. @param way in device-independent pixels.
    void add(const QPointF& way);
    /// Ends the way where it is: what was left of it is forgotten.
    void stop();
    bool isMoving() const { return theTimer.isActive(); }

signals:
    /// A step is to be gone. All steps of a way that is not stopped add up to it.
    void moved(const QPointF& step);

private:
    void step();

    QTimer theTimer;
    QPointF theLeft;
};

} // namespace tarnwick
