#include "PageMouse.h"

#include "LinkFollower.h"
#include "PageScroller.h"
#include "TextDrag.h"
#include "TextSelector.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>

#include <utility>

namespace tarnwick {

PageMouse::PageMouse(const Parts& parts, QObject* parent)
    : QObject(parent)
    , the(parts)
{
}

void PageMouse::press(const QMouseEvent& event)
{
    the.scroller.stop();
    theStart = event.position();
    theLast = event.position();
    if (event.button() == Qt::MiddleButton)
        theDrag = Drag::isHand;
    if (event.button() == Qt::LeftButton)
        pressLeft(event.position(), event.modifiers().testFlag(Qt::ShiftModifier));
    showCursor(event.position());
}

void PageMouse::pressLeft(const QPointF& inView, bool extends)
{
    if (isTripleClick())
        return beginText(the.textDrag.begin(inView, TextDrag::Unit::isLine));
    if (the.links.press(inView)) {
        theDrag = Drag::isLink;
        return;
    }
    beginText(extends ? the.textDrag.beginExtending(inView)
                      : the.textDrag.begin(inView, TextDrag::Unit::isCharacter));
    // A page without text, as a scan is, can only be meant to be moved.
    const PDFPageText* const text = the.places.textUnder(inView);
    if (theDrag == Drag::isNone || (text && text->string.trimmed().isEmpty()))
        theDrag = Drag::isHand;
}

void PageMouse::beginText(bool hasBegun)
{
    if (hasBegun)
        theDrag = Drag::isText;
}

bool PageMouse::isTripleClick() const
{
    return theSinceDoubleClick.isValid()
        && theSinceDoubleClick.elapsed() < QApplication::doubleClickInterval();
}

void PageMouse::doubleClick(const QMouseEvent& event)
{
    the.scroller.stop();
    theSinceDoubleClick.start();
    beginText(the.textDrag.begin(event.position(), TextDrag::Unit::isWord));
}

void PageMouse::move(const QMouseEvent& event)
{
    const QPointF moved = event.position() - std::exchange(theLast, event.position());
    const bool isFar
        = (event.position() - theStart).manhattanLength() >= QApplication::startDragDistance();
    if (theDrag == Drag::isHand)
        the.scroller.moveBy(-moved);
    else if (theDrag == Drag::isText)
        the.textDrag.dragTo(event.position());
    else if (theDrag == Drag::isLink && isFar)
        beginText(the.textDrag.begin(theStart, TextDrag::Unit::isCharacter));
    showCursor(event.position());
}

void PageMouse::release(const QMouseEvent& event)
{
    const Drag drag = std::exchange(theDrag, Drag::isNone);
    the.textDrag.end();
    showCursor(event.position());
    if (drag == Drag::isLink)
        the.links.release();
    if (drag == Drag::isText)
        the.selector.offerPrimarySelection();
}

void PageMouse::cancel()
{
    theDrag = Drag::isNone;
    theSinceDoubleClick.invalidate();
    the.textDrag.end();
    the.links.forgetPress();
}

void PageMouse::showCursor(const QPointF& inView)
{
    const Qt::CursorShape shape = cursor(inView);
    if (the.surface.cursor().shape() != shape)
        the.surface.setCursor(shape);
}

Qt::CursorShape PageMouse::cursor(const QPointF& inView) const
{
    if (theDrag == Drag::isHand)
        return Qt::ClosedHandCursor;
    if (theDrag == Drag::isLink || (theDrag == Drag::isNone && the.links.linkAt(inView)))
        return Qt::PointingHandCursor;
    return theDrag == Drag::isText || the.places.under(inView) ? Qt::IBeamCursor : Qt::ArrowCursor;
}

} // namespace tarnwick
