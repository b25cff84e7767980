#pragma once

#include <QScrollBar>
#include <QStyle>
#include <QStyleOptionSlider>

namespace tarnwick {

/// Whether the handle of a horizontal scroll bar is drawn in its left half.
inline bool isHandleAtTheLeft(const QScrollBar& bar)
{
    QStyleOptionSlider option;
    option.initFrom(&bar);
    option.orientation = bar.orientation();
    option.state |= QStyle::State_Horizontal;
    option.subControls = QStyle::SC_All;
    option.minimum = bar.minimum();
    option.maximum = bar.maximum();
    option.sliderPosition = option.sliderValue = bar.value();
    option.pageStep = bar.pageStep();
    option.singleStep = bar.singleStep();
    const QRect handle = bar.style()->subControlRect(
        QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, &bar);
    return handle.center().x() < bar.width() / 2;
}

} // namespace tarnwick
