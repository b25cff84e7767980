#include "SmoothScroll.h"

namespace tarnwick {

namespace {

constexpr int period = 12; ///< milliseconds
constexpr double share = 0.35; ///< of what is left that a step takes
constexpr double shortest = 2; ///< pixels that are gone in one

} // namespace

SmoothScroll::SmoothScroll(QObject* parent)
    : QObject(parent)
{
    connect(&theTimer, &QTimer::timeout, this, &SmoothScroll::step);
}

void SmoothScroll::add(const QPointF& way)
{
    theLeft += way;
    if (!isMoving())
        theTimer.start(period);
    step();
}

void SmoothScroll::stop()
{
    theTimer.stop();
    theLeft = {};
}

void SmoothScroll::step()
{
    const QPointF step = theLeft.manhattanLength() < shortest ? theLeft : theLeft * share;
    theLeft -= step;
    if (theLeft.isNull())
        stop();
    emit moved(step);
}

} // namespace tarnwick
