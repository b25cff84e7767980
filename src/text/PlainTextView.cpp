#include "text/PlainTextView.h"

#include "LinkPointer.h"
#include "ScrollAxis.h"
#include "TextExtract.h"
#include "TextFinder.h"
#include "TextViewAccessible.h"
#include "text/FindBar.h"
#include "text/PlainTextStorage.h"

#include <QApplication>
#include <QFontDatabase>
#include <QPaintEvent>
#include <QStyle>
#include <QStyleHints>

#include <algorithm>
#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace tarnwick {

namespace {

constexpr int leastZoom = 25;
constexpr int mostZoom = 800;
/// Reading line lengths takes so much of the event loop's time at once, and pauses as long.
constexpr auto estimateSlice = 4ms;
constexpr int estimatePeriod = 8; ///< milliseconds

} // namespace

PlainTextView::PlainTextView(QWidget* parent)
    : QAbstractScrollArea(parent)
    , theStorage(std::make_shared<PlainTextStorage>())
    , theTextFont(QApplication::font())
    , theLinkPointer(std::make_unique<LinkPointer>(
          viewport(), [this](const QPointF& point) { return linkAt(positionAt(point)); }))
    , theVertical(std::make_unique<ScrollAxis>(verticalScrollBar()))
    , theHorizontal(std::make_unique<ScrollAxis>(horizontalScrollBar()))
    , theFinder(new TextFinder(this))
{
    TextViewAccessible::install();
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setCursor(Qt::IBeamCursor);
    viewport()->setMouseTracking(true);
    viewport()->setBackgroundRole(QPalette::Base);
    connect(theVertical.get(), &ScrollAxis::moved, this, &PlainTextView::scrollVertically);
    connect(theHorizontal.get(), &ScrollAxis::moved, this, [this](double, double to) {
        theLayout.setLeft(to);
        viewport()->update();
    });
    connect(theFinder, &TextFinder::advanced, this, [this] {
        resolveSeek();
        updateFindStatus();
    });
    applyPalette();
    applyFont();
}

PlainTextView::~PlainTextView() = default;

void PlainTextView::setTextStorage(std::shared_ptr<const TextStorage> storage)
{
    theStorage = storage ? std::move(storage) : std::make_shared<PlainTextStorage>();
    theLayout.setStorage(theStorage);
    theGaps.clear();
    theMissing.clear();
    isDragging = false;
    theAutoScrollTimer.stop();
    theAnchor = theCaret = {};
    theLinkPointer->leave();
    theGoal = -1;
    theMatch = {};
    theGutterDigits = 0;
    if (theFinder->isActive())
        startSearch({});
    relayout();
    tellAccessibility(true);
    emit selectionChanged();
}

void PlainTextView::growTextStorage(std::shared_ptr<const TextStorage> storage)
{
    const TextPosition top = theLayout.topPosition();
    const TextPosition anchor = theAnchor;
    const TextPosition caret = theCaret;
    setTextStorage(std::move(storage));
    setSelection(anchor, caret);
    theLayout.showAtTop(top);
    updateView();
    viewport()->update();
}

void PlainTextView::setPlainText(const QString& text)
{
    setTextStorage(std::make_shared<PlainTextStorage>(text));
}

void PlainTextView::clear()
{
    setTextStorage(nullptr);
}

void PlainTextView::setTextFont(const QFont& font)
{
    theTextFont = font;
    isFontOwn = true;
    applyFont();
}

void PlainTextView::useFixedPitchFont()
{
    setTextFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
}

void PlainTextView::setWrapping(bool wrap)
{
    if (wrap == isWrapping())
        return;
    theLayout.setWrapping(wrap);
    theGoal = -1;
    relayout();
    emit wrappingChanged(wrap);
}

void PlainTextView::setZoomPercent(int percent)
{
    const int bounded = std::clamp(percent, leastZoom, mostZoom);
    if (bounded == theZoomPercent)
        return;
    theZoomPercent = bounded;
    applyFont();
}

void PlainTextView::applyFont()
{
    QFont font = theTextFont;
    const double factor = theZoomPercent / 100.0;
    if (font.pixelSize() > 0)
        font.setPixelSize(std::max(1, qRound(font.pixelSize() * factor)));
    else
        font.setPointSizeF(std::max(1.0, font.pointSizeF() * factor));
    theLayout.setFont(font);
    theGoal = -1;
    relayout();
}

void PlainTextView::applyPalette()
{
    theColours = TextPalette(palette());
    viewport()->update();
}

/// Shows anew what the layout has come to.
void PlainTextView::relayout()
{
    theLayout.refineEstimate(QDeadlineTimer(estimateSlice));
    theEstimateTimer.start(estimatePeriod, this);
    updateView();
    viewport()->update();
}

/// Follows what the layout shows now.
void PlainTextView::updateView()
{
    const QSizeF size = theLayout.size();
    const qreal row = theLayout.rowHeight();
    theVertical->show(theLayout.heightAbove(), theLayout.height(), size.height(), row);
    if (isWrapping())
        theHorizontal->show(0, 0, size.width(), row);
    else
        theHorizontal->show(theLayout.left(), std::max(theLayout.width(), theLayout.left()),
            size.width(), theLayout.characterWidth() * 4);
    updateGutter();
    theVisibleMatches = visibleMatches();
}

QList<TextRange> PlainTextView::visibleMatches() const
{
    QList<TextRange> found;
    if (!isFindBarOpen() || !theFinder->isActive())
        return found;
    theLayout.forEachVisible([this, &found](const TextSegment& segment, QPointF) {
        constexpr qsizetype mostPerSegment = 2000;
        const qsizetype before = theFinder->wanted().size();
        found += theFinder->matches({{segment.line, std::max<qsizetype>(0, segment.start - before)},
                                        {segment.line, segment.start + segment.length}},
            mostPerSegment);
    });
    return found;
}

void PlainTextView::updateMatches()
{
    theVisibleMatches = visibleMatches();
    viewport()->update();
}

void PlainTextView::scrollVertically(double from, double to, bool isDragged)
{
    const double distance = to - from;
    // Short ways are gone row by row, so that nothing is skipped where heights are estimates.
    const bool isShort = !isDragged && std::abs(distance) <= 2 * theLayout.size().height();
    if (isShort && to > 0)
        theLayout.scrollBy(distance);
    else
        theLayout.scrollToHeight(to);
    updateView();
    viewport()->update();
}

std::optional<QRectF> PlainTextView::caretRect(TextPosition position) const
{
    return theLayout.caretAt(clampedToText(*theStorage, position));
}

TextPosition PlainTextView::positionAt(const QPointF& viewportPoint) const
{
    return theLayout.positionAt(viewportPoint);
}

std::optional<TextRange> PlainTextView::linkAt(TextPosition position) const
{
    return theStorage->linkAt(clampedToText(*theStorage, position));
}

void PlainTextView::scrollTo(TextPosition position)
{
    theLayout.reveal(clampedToText(*theStorage, position));
    updateView();
    viewport()->update();
}

void PlainTextView::tellAccessibility(bool textIsNew)
{
    TextViewAccessible::tell(this, textIsNew);
}

// --- Events ------------------------------------------------------------------------------------

void PlainTextView::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    placeMargins();
    theLayout.setSize(viewport()->size());
    theGoal = -1;
    relayout();
}

void PlainTextView::changeEvent(QEvent* event)
{
    QAbstractScrollArea::changeEvent(event);
    switch (event->type()) {
    case QEvent::PaletteChange:
    case QEvent::StyleChange:
        applyPalette();
        break;
    case QEvent::ApplicationFontChange:
    case QEvent::FontChange:
        if (!isFontOwn) {
            theTextFont = font();
            applyFont();
        }
        break;
    case QEvent::LayoutDirectionChange: // the scroll bar has changed sides
        placeMargins();
        break;
    case QEvent::ActivationChange:
        viewport()->update();
        break;
    default:
        break;
    }
}

void PlainTextView::focusInEvent(QFocusEvent* event)
{
    QAbstractScrollArea::focusInEvent(event);
    restartBlinking();
    update(); // the frame
    viewport()->update();
}

void PlainTextView::focusOutEvent(QFocusEvent* event)
{
    QAbstractScrollArea::focusOutEvent(event);
    theBlinkTimer.stop();
    update(); // the frame
    viewport()->update();
}

void PlainTextView::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == theEstimateTimer.timerId()) {
        if (!theLayout.refineEstimate(QDeadlineTimer(estimateSlice)))
            theEstimateTimer.stop();
        updateView();
    } else if (event->timerId() == theBlinkTimer.timerId()) {
        isCaretVisible = !isCaretVisible;
        viewport()->update();
    } else if (event->timerId() == theAutoScrollTimer.timerId()) {
        autoScroll();
    } else if (event->timerId() == theTripleClickTimer.timerId()) {
        theTripleClickTimer.stop();
    } else {
        QAbstractScrollArea::timerEvent(event);
    }
}

void PlainTextView::restartBlinking()
{
    isCaretVisible = true;
    const int period = QGuiApplication::styleHints()->cursorFlashTime();
    if (period > 1 && hasFocus())
        theBlinkTimer.start(period / 2, this);
    else
        theBlinkTimer.stop();
}

} // namespace tarnwick
