// The part of PlainTextView that follows keyboard and mouse.
#include "text/PlainTextView.h"

#include "LinkPointer.h"
#include "ScrollAxis.h"
#include "TextExtract.h"
#include "TextWords.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleHints>
#include <QWheelEvent>

#include <algorithm>
#include <array>
#include <cmath>

namespace tarnwick {

namespace {

constexpr int autoScrollPeriod = 30; ///< milliseconds
/// What is gone to stands below this part of the view: one wants to see what comes before.
constexpr int contextShare = 4;

/// A key for moving the caret, and its companion that takes the selection along.
struct Movement
{
    QKeySequence::StandardKey move;
    QKeySequence::StandardKey select;
    TextPosition (*target)(const PlainTextView&, const TextViewLayout&);
};

TextPosition sideways(const PlainTextView& view, const TextViewLayout& layout, bool right)
{
    const bool isForward = right != layout.isRightToLeft(view.caret());
    return isForward ? layout.nextCharacter(view.caret()) : layout.previousCharacter(view.caret());
}

TextPosition wordSideways(const PlainTextView& view, const TextViewLayout& layout, bool right)
{
    const bool isForward = right != layout.isRightToLeft(view.caret());
    return isForward ? nextWord(layout.storage(), view.caret())
                     : previousWord(layout.storage(), view.caret());
}

TextPosition textEnd(const TextViewLayout& layout)
{
    const qsizetype last = layout.storage().lineCount() - 1;
    return {last, layout.storage().lineLength(last)};
}

using View = const PlainTextView&;
using Layout = const TextViewLayout&;

const std::array movements{
    Movement{QKeySequence::MoveToNextChar, QKeySequence::SelectNextChar,
        [](View view, Layout layout) { return sideways(view, layout, true); }},
    Movement{QKeySequence::MoveToPreviousChar, QKeySequence::SelectPreviousChar,
        [](View view, Layout layout) { return sideways(view, layout, false); }},
    Movement{QKeySequence::MoveToNextWord, QKeySequence::SelectNextWord,
        [](View view, Layout layout) { return wordSideways(view, layout, true); }},
    Movement{QKeySequence::MoveToPreviousWord, QKeySequence::SelectPreviousWord,
        [](View view, Layout layout) { return wordSideways(view, layout, false); }},
    Movement{QKeySequence::MoveToStartOfLine, QKeySequence::SelectStartOfLine,
        [](View view, Layout layout) { return layout.rowStart(view.caret()); }},
    Movement{QKeySequence::MoveToEndOfLine, QKeySequence::SelectEndOfLine,
        [](View view, Layout layout) { return layout.rowEnd(view.caret()); }},
    Movement{QKeySequence::MoveToStartOfDocument, QKeySequence::SelectStartOfDocument,
        [](View, Layout) { return TextPosition{}; }},
    Movement{QKeySequence::MoveToEndOfDocument, QKeySequence::SelectEndOfDocument,
        [](View, Layout layout) { return textEnd(layout); }},
};

/// What a modifier key itself adds: an event tells those that were held before it.
Qt::KeyboardModifiers keyOf(const QKeyEvent& event)
{
    return event.key() == Qt::Key_Control ? Qt::ControlModifier : Qt::NoModifier;
}

} // namespace

// --- Caret and selection -------------------------------------------------------------------------

void PlainTextView::setSelection(TextPosition anchor, TextPosition caret)
{
    select(clampedToText(*theStorage, anchor), clampedToText(*theStorage, caret));
    theLayout.reveal(theCaret);
    updateView();
}

void PlainTextView::goTo(TextRange range)
{
    const TextPosition begin = clampedToText(*theStorage, range.begin);
    if (!theLayout.caretAt(begin)) {
        theLayout.showAtTop(begin);
        theLayout.scrollBy(-std::floor(theLayout.size().height() / contextShare));
    }
    setSelection(range.end, begin);
    offerPrimarySelection();
}

QString PlainTextView::selectedText(qsizetype limit) const
{
    return textOf(theStorage, selection(), limit);
}

/// Changes the selection without scrolling. Whoever goes elsewhere waits for no match any longer.
void PlainTextView::select(TextPosition anchor, TextPosition caret)
{
    endSeek();
    settle(anchor, caret);
    const bool isChange = anchor != theAnchor || caret != theCaret;
    theAnchor = anchor;
    theCaret = caret;
    theGoal = -1;
    restartBlinking();
    viewport()->update();
    if (!isChange)
        return;
    tellAccessibility(false);
    emit selectionChanged();
}

void PlainTextView::settle(TextPosition& anchor, TextPosition& caret) const
{
    Q_UNUSED(anchor)
    Q_UNUSED(caret)
}

void PlainTextView::moveCaret(TextPosition caret, bool extend)
{
    select(extend ? theAnchor : caret, caret);
    theLayout.reveal(theCaret);
    updateView();
    if (extend)
        offerPrimarySelection();
}

void PlainTextView::moveRows(int rows, bool extend)
{
    const qreal goal = theGoal >= 0 ? theGoal : theLayout.distanceFromLineStart(theCaret);
    moveCaret(theLayout.rowsBelow(theCaret, rows, goal), extend);
    theGoal = goal;
}

void PlainTextView::movePage(int direction, bool extend)
{
    const qreal row = theLayout.rowHeight();
    const int rows = std::max(1, static_cast<int>(theLayout.size().height() / row) - 1);
    // The text moves by as much as the caret, which so stays where it is on the screen.
    theLayout.scrollBy(direction * rows * row);
    moveRows(direction * rows, extend);
}

void PlainTextView::keyPressEvent(QKeyEvent* event)
{
    if (theLinkPointer->setKeys(event->modifiers() | keyOf(*event)))
        viewport()->update();
    if (handleMovement(event) || handleCommandKey(event) || followCaret(*event))
        event->accept();
    else
        QAbstractScrollArea::keyPressEvent(event);
}

void PlainTextView::keyReleaseEvent(QKeyEvent* event)
{
    if (theLinkPointer->setKeys(event->modifiers() & ~keyOf(*event)))
        viewport()->update();
    QAbstractScrollArea::keyReleaseEvent(event);
}

/// Enter with the caret on a link.
bool PlainTextView::followCaret(const QKeyEvent& event)
{
    const bool isEnter = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    if (!isEnter || (event.modifiers() & ~Qt::KeypadModifier))
        return false;
    const std::optional<TextRange> link = linkAt(theCaret);
    if (link)
        emit linkFollowed(*link);
    return link.has_value();
}

bool PlainTextView::handleMovement(QKeyEvent* event)
{
    for (const Movement& movement : movements) {
        const bool isSelect = event->matches(movement.select);
        if (!isSelect && !event->matches(movement.move))
            continue;
        moveCaret(movement.target(*this, theLayout), isSelect);
        return true;
    }
    const auto either = [&](QKeySequence::StandardKey move, QKeySequence::StandardKey extend) {
        return event->matches(move) || event->matches(extend);
    };
    const bool extend = event->modifiers().testFlag(Qt::ShiftModifier);
    if (either(QKeySequence::MoveToNextLine, QKeySequence::SelectNextLine))
        moveRows(1, extend);
    else if (either(QKeySequence::MoveToPreviousLine, QKeySequence::SelectPreviousLine))
        moveRows(-1, extend);
    else if (either(QKeySequence::MoveToNextPage, QKeySequence::SelectNextPage))
        movePage(1, extend);
    else if (either(QKeySequence::MoveToPreviousPage, QKeySequence::SelectPreviousPage))
        movePage(-1, extend);
    else
        return false;
    return true;
}

bool PlainTextView::handleCommandKey(QKeyEvent* event)
{
    const bool isControl = event->modifiers().testFlag(Qt::ControlModifier);
    if (event->matches(QKeySequence::Copy))
        copy();
    else if (event->matches(QKeySequence::SelectAll))
        selectAll();
    else if (theIsFindBarEnabled && event->matches(QKeySequence::Find))
        performFind();
    else if (theIsFindBarEnabled && event->matches(QKeySequence::FindNext))
        doFindNext();
    else if (theIsFindBarEnabled && event->matches(QKeySequence::FindPrevious))
        doFindPrev();
    else if (isFindBarOpen() && event->key() == Qt::Key_Escape)
        closeFindBar();
    else if (event->matches(QKeySequence::ZoomIn) || (isControl && event->key() == Qt::Key_Equal))
        zoomIn();
    else if (event->matches(QKeySequence::ZoomOut))
        zoomOut();
    else if (isControl && event->key() == Qt::Key_0)
        actualSize();
    else
        return false;
    return true;
}

// --- Mouse ---------------------------------------------------------------------------------------

TextRange PlainTextView::unitAt(TextPosition position, SelectBy by) const
{
    switch (by) {
    case SelectBy::isWord:
        return wordAt(*theStorage, position);
    case SelectBy::isLine: {
        const bool isLast = position.line + 1 == theStorage->lineCount();
        return {{position.line, 0},
            isLast ? TextPosition{position.line, theStorage->lineLength(position.line)}
                   : TextPosition{position.line + 1, 0}};
    }
    case SelectBy::isCharacter:
        break;
    }
    return {position, position};
}

void PlainTextView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    const QPointF point = event->position();
    theLinkPointer->move(point, event->modifiers());
    if (theLinkPointer->press())
        return;
    const bool isTriple = theTripleClickTimer.isActive()
        && (point - theTripleClickPoint).manhattanLength() < QApplication::startDragDistance();
    theTripleClickTimer.stop();
    beginDrag(point, isTriple ? SelectBy::isLine : SelectBy::isCharacter,
        event->modifiers().testFlag(Qt::ShiftModifier));
}

void PlainTextView::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    theTripleClickPoint = event->position();
    theTripleClickTimer.start(QApplication::doubleClickInterval(), this);
    beginDrag(event->position(), SelectBy::isWord, false);
}

void PlainTextView::beginDrag(const QPointF& point, SelectBy by, bool extend)
{
    theSelectBy = by;
    isDragging = true;
    theDragPoint = point;
    const TextPosition position = theLayout.positionAt(point);
    if (extend) {
        theFirstUnit = {theAnchor, theAnchor};
        extendTo(position);
        return;
    }
    theFirstUnit = unitAt(position, by);
    select(theFirstUnit.begin, by == SelectBy::isCharacter ? theFirstUnit.begin : theFirstUnit.end);
}

/// Selects from what the drag began with to what is at a place, both included.
void PlainTextView::extendTo(TextPosition position)
{
    const TextRange last = unitAt(position, theSelectBy);
    if (last.begin < theFirstUnit.begin)
        select(theFirstUnit.end, last.begin);
    else
        select(theFirstUnit.begin, std::max(last.end, theFirstUnit.end));
}

void PlainTextView::mouseMoveEvent(QMouseEvent* event)
{
    if (!isDragging) {
        if (theLinkPointer->move(event->position(), event->modifiers()))
            viewport()->update();
        return;
    }
    theDragPoint = event->position();
    extendTo(theLayout.positionAt(theDragPoint));
    const bool isOutside = !QRectF(viewport()->rect()).contains(theDragPoint);
    if (!isOutside)
        theAutoScrollTimer.stop();
    else if (!theAutoScrollTimer.isActive())
        theAutoScrollTimer.start(autoScrollPeriod, this);
}

/// Scrolls towards the pointer outside the view, faster the farther it is, and selects on.
void PlainTextView::autoScroll()
{
    const QSizeF size = theLayout.size();
    const auto beyond = [](qreal at, qreal limit) { return at - std::clamp(at, 0.0, limit); };
    const qreal down = beyond(theDragPoint.y(), size.height());
    const qreal right = beyond(theDragPoint.x(), size.width());
    if (down != 0)
        theLayout.scrollBy(std::round(down / 2 + std::copysign(2, down)));
    if (right != 0 && !isWrapping()) {
        const qreal most = std::max(0.0, theLayout.width() - size.width());
        theLayout.setLeft(std::min(theLayout.left() + right / 2, std::max(most, theLayout.left())));
    }
    updateView();
    extendTo(theLayout.positionAt(theDragPoint));
}

void PlainTextView::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    if (const std::optional<TextRange> link = theLinkPointer->release())
        emit linkFollowed(*link);
    if (!isDragging)
        return;
    isDragging = false;
    theAutoScrollTimer.stop();
    offerPrimarySelection();
}

void PlainTextView::wheelEvent(QWheelEvent* event)
{
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        theZoomDelta += event->angleDelta().y();
        for (; theZoomDelta >= 120; theZoomDelta -= 120)
            zoomIn();
        for (; theZoomDelta <= -120; theZoomDelta += 120)
            zoomOut();
        event->accept();
        return;
    }
    // Touchpads tell pixels; a wheel's notch moves as many rows as the desktop says.
    const qreal notch = QApplication::wheelScrollLines() * theLayout.rowHeight() / 120;
    QPointF delta = event->pixelDelta().isNull() ? QPointF(event->angleDelta()) * notch
                                                 : QPointF(event->pixelDelta());
    if (event->modifiers().testFlag(Qt::ShiftModifier))
        delta = delta.transposed();
    scrollByWheel(delta);
    event->accept();
}

void PlainTextView::scrollByWheel(QPointF delta)
{
    // Fine wheels turn by less than a pixel at a time: what is left of one is for the next.
    theWheelRest += delta.y();
    const qreal pixels = std::round(theWheelRest);
    theWheelRest -= pixels;
    if (pixels != 0)
        theLayout.scrollBy(-pixels);
    if (delta.x() != 0 && !isWrapping()) {
        const qreal most = std::max(0.0, theLayout.width() - theLayout.size().width());
        theLayout.setLeft(std::min(theLayout.left() - delta.x(), most));
    }
    updateView();
    viewport()->update();
}

} // namespace tarnwick
