#pragma once

#include "TextPlaces.h"

#include <QObject>
#include <QPointF>
#include <QTimer>

namespace tarnwick {

class PageScroller;
class TextSelector;

/// Selects text while a mouse button is held, and scrolls on where the pointer leaves the view.
class TextDrag : public QObject
{
    Q_OBJECT

public:
    using Unit = TextPlaces::Unit;

    /// All borrowed.
    TextDrag(const PageViewport& viewport, const TextPlaces& places, TextSelector& selector,
        PageScroller& scroller, QObject* parent);

    /// Selects the unit at a point.
    /// @returns false where no text is known: then nothing has begun.
    bool begin(const QPointF& inView, Unit unit);
    /// Goes on from where the present selection began, up to a point. Likewise.
    bool beginExtending(const QPointF& inView);
    /// Selects from what the drag began with to what lies at a point, both included.
    void dragTo(const QPointF& inView);
    /// The button is up.
    void end() { theAutoScroll.stop(); }

signals:
    /// The view runs on under the pointer: texts of what shows are wanted without a pause.
    void ranOn();

private:
    void scrollTowards(double height);

    const PageViewport& theViewport;
    const TextPlaces& thePlaces;
    TextSelector& theSelector;
    PageScroller& theScroller;
    Unit theUnit = Unit::isCharacter;
    PDFSelection::Range theFirst; ///< what the drag began with
    QPointF thePointer;
    QTimer theAutoScroll;
};

} // namespace tarnwick
