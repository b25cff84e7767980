#pragma once

#include "PageScrollBars.h"
#include "PageScroller.h"
#include "PageViewport.h"
#include "PageZoom.h"

#include <QScrollBar>

/// Pages in a frame of 400 x 500 pixels, with all that moves them and without a window.
struct PageReader : private tarnwick::ViewFrame
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
    tarnwick::PageViewport viewport{*this};
    QScrollBar vertical{Qt::Vertical};
    QScrollBar horizontal{Qt::Horizontal};
    tarnwick::PageScrollBars bars{&vertical, &horizontal, viewport};
    tarnwick::PageScroller scroller{viewport, bars, nullptr};
    tarnwick::PageZoom zoom{viewport, scroller, nullptr};
};
