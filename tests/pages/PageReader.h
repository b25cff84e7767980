#pragma once

#include "PageScrollBars.h"
#include "PageScroller.h"
#include "PageViewport.h"
#include "PageZoom.h"

#include <QScrollBar>

namespace tarnwick {

/// Pages in a frame of 400 x 500 pixels, with all that moves them and without a window.
struct PageReader : private ViewFrame
{
    explicit PageReader(const QList<QSizeF>& sizes)
    {
        viewport.pages().setPages(sizes);
        scroller.scrollTo({});
    }

    QSizeF size() const override { return {400, 500}; }
    double pixelRatio() const override { return ratio; }
    double actualScale() const override { return 1; }

    double ratio = 1;
    PageViewport viewport{*this};
    QScrollBar vertical{Qt::Vertical};
    QScrollBar horizontal{Qt::Horizontal};
    PageScrollBars bars{&vertical, &horizontal, viewport};
    PageScroller scroller{viewport, bars, nullptr};
    PageZoom zoom{viewport, scroller, nullptr};
};

} // namespace tarnwick
