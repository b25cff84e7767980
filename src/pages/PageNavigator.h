#pragma once

#include "ViewHistory.h"

#include <QObject>

namespace tarnwick {

class PageScroller;
class PageViewport;

/// Jumps to places in a document and back to where they were made from.
class PageNavigator : public QObject
{
    Q_OBJECT

public:
    /// Both borrowed.
    PageNavigator(const PageViewport& viewport, PageScroller& scroller, QObject* parent);

    /// Shows a point of a page at the view's upper edge, or the page from its own when the point is
    /// null, and remembers where from. Nothing happens for a page out of range.
    void goTo(int page, const QPointF& point);
    void goBack();
    void goForward();
    /// Forgets every jump; historyChanged() is the caller's to tell.
    void clear() { theHistory.clear(); }

    const ViewHistory& history() const { return theHistory; }

signals:
    void historyChanged();

private:
    void show(const std::optional<PagePlace>& place);

    const PageViewport& theViewport;
    PageScroller& theScroller;
    ViewHistory theHistory;
};

} // namespace tarnwick
