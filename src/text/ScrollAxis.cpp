#include "ScrollAxis.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <cmath>

namespace tarnwick {

namespace {

constexpr double mostSteps = 1 << 30;

} // namespace

ScrollAxis::ScrollAxis(QScrollBar* bar)
    : theBar(bar)
{
    // The distance is from the left, whichever way the desktop is laid out.
    bar->setLayoutDirection(Qt::LeftToRight);
    connect(bar, &QScrollBar::valueChanged, this, &ScrollAxis::takeValue);
}

void ScrollAxis::show(double position, double extent, double visible, double step)
{
    const double range = std::max(0.0, std::ceil(extent - visible));
    theScale = std::max(1.0, range / mostSteps);
    thePosition = std::clamp(position, 0.0, range);
    const auto steps
        = [this](double pixels) { return static_cast<int>(std::lround(pixels / theScale)); };
    const QScopedValueRollback showing(isShowing, true);
    theBar->setPageStep(std::max(1, steps(visible)));
    theBar->setSingleStep(std::max(1, steps(step)));
    // While the handle is held it stays under the pointer, however the estimate changes.
    if (!theBar->isSliderDown()) {
        theBar->setRange(0, steps(range));
        theBar->setValue(steps(thePosition));
    }
}

void ScrollAxis::takeValue(int value)
{
    if (isShowing)
        return;
    const double from = thePosition;
    thePosition = value * theScale;
    emit moved(from, thePosition, theBar->isSliderDown());
}

} // namespace tarnwick
