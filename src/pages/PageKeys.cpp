#include "PageKeys.h"

#include "PageScrollBars.h"
#include "PageScroller.h"
#include "pages/PDFView.h"

#include <QKeyEvent>
#include <QScrollBar>

#include <array>

namespace tarnwick {

namespace {

struct Command
{
    QKeySequence::StandardKey key;
    void (PDFView::*slot)();
};

constexpr std::array commands{
    Command{QKeySequence::Copy, &PDFView::copy},
    Command{QKeySequence::SelectAll, &PDFView::selectAll},
    Command{QKeySequence::ZoomIn, &PDFView::zoomIn},
    Command{QKeySequence::ZoomOut, &PDFView::zoomOut},
    Command{QKeySequence::Back, &PDFView::goBack},
    Command{QKeySequence::Forward, &PDFView::goForward},
};

bool pressCommandKey(const QKeyEvent& event, PDFView& view)
{
    for (const Command& command : commands) {
        if (event.matches(command.key)) {
            (view.*command.slot)();
            return true;
        }
    }
    return false;
}

void goSideways(int direction, PDFView& view, PageScroller& scroller)
{
    if (view.horizontalScrollBar()->maximum() > 0)
        scroller.glide({double(direction * PageScrollBars::lineStep), 0});
    else if (direction < 0)
        view.goToPreviousPage();
    else
        view.goToNextPage();
}

bool pressScrollKey(const QKeyEvent& event, PDFView& view, PageScroller& scroller)
{
    switch (event.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
        scroller.glide(
            {0, double(PageScrollBars::lineStep) * (event.key() == Qt::Key_Up ? -1 : 1)});
        return true;
    case Qt::Key_Left:
    case Qt::Key_Right:
        goSideways(event.key() == Qt::Key_Left ? -1 : 1, view, scroller);
        return true;
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        scroller.goView(event.key() == Qt::Key_PageUp ? -1 : 1);
        return true;
    case Qt::Key_Space:
        scroller.goView(event.modifiers().testFlag(Qt::ShiftModifier) ? -1 : 1);
        return true;
    default:
        return false;
    }
}

bool pressOtherKey(const QKeyEvent& event, PDFView& view)
{
    const bool isControl = event.modifiers().testFlag(Qt::ControlModifier);
    if (event.key() == Qt::Key_Home)
        view.goToFirstPage();
    else if (event.key() == Qt::Key_End)
        view.goToLastPage();
    else if (event.key() == Qt::Key_0 && isControl)
        view.actualSize();
    else if (event.key() == Qt::Key_Escape && !view.currentSelection().isEmpty())
        view.setCurrentSelection({}, false);
    else
        return false;
    return true;
}

} // namespace

bool pressPageKey(const QKeyEvent& event, PDFView& view, PageScroller& scroller)
{
    return pressCommandKey(event, view) || pressScrollKey(event, view, scroller)
        || pressOtherKey(event, view);
}

} // namespace tarnwick
