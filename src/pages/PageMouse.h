#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointF>

class QMouseEvent;
class QWidget;

namespace tarnwick {

class LinkFollower;
class PageScroller;
class TextDrag;
class TextPlaces;
class TextSelector;

/// What the mouse's buttons do on pages: a press begins to select text, to follow a link or to move
/// the pages like paper under a hand.
class PageMouse : public QObject
{
public:
    /// What works with the mouse, all borrowed.
    struct Parts
    {
        PageScroller& scroller;
        const TextPlaces& places;
        TextSelector& selector;
        TextDrag& textDrag;
        LinkFollower& links;
        QWidget& surface; ///< that the pointer is over
    };

    PageMouse(const Parts& parts, QObject* parent);

    void press(const QMouseEvent& event);
    void doubleClick(const QMouseEvent& event);
    void move(const QMouseEvent& event);
    void release(const QMouseEvent& event);
    /// Forgets a button that is held: what it was held on is no longer there.
    void cancel();

    /// Gives the pointer the shape for what is under it.
    void showCursor(const QPointF& inView);

private:
    /// What the button that is held is doing.
    enum class Drag
    {
        isNone,
        isHand,
        isText,
        isLink, ///< pressed on a link and not moved away yet
    };

    void pressLeft(const QPointF& inView, bool extends);
    void beginText(bool hasBegun);
    bool isTripleClick() const;
    Qt::CursorShape cursor(const QPointF& inView) const;

    Parts the;
    Drag theDrag = Drag::isNone;
    QPointF theStart;
    QPointF theLast;
    QElapsedTimer theSinceDoubleClick;
};

} // namespace tarnwick
