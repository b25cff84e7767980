#include "PageScrollBars.h"

#include "PageViewport.h"

#include <QScrollBar>

#include <algorithm>
#include <cmath>

namespace tarnwick {

namespace {

/// Steps of a scroll bar; content that is higher in pixels has steps of more than a pixel.
constexpr double mostSteps = 1e9;

} // namespace

PageScrollBars::PageScrollBars(
    QScrollBar* vertical, QScrollBar* horizontal, const PageViewport& viewport)
    : theVertical(vertical)
    , theHorizontal(horizontal)
    , theViewport(viewport)
{
    // Whichever way the desktop is laid out, pages have their left edge at the left.
    horizontal->setLayoutDirection(Qt::LeftToRight);
}

void PageScrollBars::show()
{
    theyAreBeingSet = true;
    showHeight();
    showWidth();
    theyAreBeingSet = false;
}

void PageScrollBars::showHeight()
{
    const double content = theViewport.pages().contentHeight();
    const double view = theViewport.frame().size().height();
    theUnit = std::max(1.0, content / mostSteps);
    const auto steps = [this](double pixels) { return static_cast<int>(pixels / theUnit); };
    theVertical->setRange(0, std::max(0, steps(content - view + 0.99)));
    theVertical->setPageStep(std::max(1, steps(view)));
    theVertical->setSingleStep(std::max(1, steps(lineStep)));
    theVertical->setValue(steps(theViewport.origin().y() + 0.5));
}

void PageScrollBars::showWidth()
{
    const double width = theViewport.pages().widthOf(theViewport.shownPages());
    const double view = theViewport.frame().size().width();
    theHorizontal->setRange(0, std::max(0, static_cast<int>(width - view + 0.5)));
    theHorizontal->setPageStep(std::max(1, static_cast<int>(view)));
    theHorizontal->setSingleStep(lineStep);
    theHorizontal->setValue(static_cast<int>(std::round(theViewport.origin().x() + width / 2)));
}

std::optional<QPointF> PageScrollBars::origin() const
{
    if (theyAreBeingSet)
        return std::nullopt;
    const PageGeometry& pages = theViewport.pages();
    const double width = pages.widthOf(theViewport.shownPages());
    const bool isAtEnd = theVertical->value() == theVertical->maximum();
    return QPointF(theHorizontal->value() - width / 2,
        isAtEnd ? pages.contentHeight() : theVertical->value() * theUnit);
}

} // namespace tarnwick
