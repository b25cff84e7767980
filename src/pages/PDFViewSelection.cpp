#include "PDFViewPrivate.h"

#include "work/ReleaseElsewhere.h"

#include <QApplication>
#include <QClipboard>
#include <QStyle>

#include <algorithm>
#include <utility>

namespace tarnwick {

qsizetype PDFView::Private::lengthOfPage(int page) const
{
    if (theText && page < theText->arrivedCount())
        return theText->pageLength(page);
    const PDFPageText* const text = theDetails.text(page);
    return text ? text->string.size() : 0;
}

/// Whether every page between the ends has its text; the last page alone may be one whose text was
/// read for its quads.
bool PDFView::Private::selectionIsWhole() const
{
    return !theEndsAreSet || !theText
        || theText->arrivedCount() > std::max(theAnchor, theFocus).page;
}

void PDFView::Private::setEnds(const PDFTextPosition& anchor, const PDFTextPosition& focus)
{
    theAnchor = anchor;
    theFocus = focus;
    theEndsAreSet = true;
    if (!selectionIsWhole())
        theText->fetch();
    selectBetweenEnds();
}

void PDFView::Private::selectBetweenEnds()
{
    if (!theEndsAreSet)
        return;
    takeSelection(PageTextGeometry::selectionBetween(
        theAnchor, theFocus, [this](int page) { return lengthOfPage(page); }));
    if (theCopyWaits && selectionIsWhole())
        finishCopy();
}

void PDFView::Private::takeSelection(const PDFSelection& selection)
{
    if (selection == theSelection)
        return;
    theSelection = selection;
    q->viewport()->update();
    emit q->selectionChanged();
}

const PDFSelection& PDFView::currentSelection() const
{
    return d->theSelection;
}

void PDFView::setCurrentSelection(const PDFSelection& selection, bool animate)
{
    d->theEndsAreSet = false;
    d->theCopyWaits = false;
    if (!selection.isEmpty()) {
        const PDFSelection::Range& first = selection.ranges().first();
        const PDFSelection::Range& last = selection.ranges().last();
        d->theAnchor = {first.page, first.start};
        d->theFocus = {last.page, last.start + last.length};
    }
    d->takeSelection(selection);
    if (animate && !selection.isEmpty())
        d->animateSelection();
}

void PDFView::Private::animateSelection()
{
    thePulse.stop();
    if (q->style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, q) > 0)
        thePulse.start();
}

void PDFView::setHighlights(const QList<PDFSelection>& matches)
{
    releaseElsewhere(std::exchange(d->theHighlights, matches));
    viewport()->update();
}

void PDFView::scrollSelectionToVisible()
{
    d->theRevealWaits = false;
    if (!d->theSelection.isEmpty())
        d->reveal();
}

/// Where a text stands is known once its quads are there; until then its page is shown.
void PDFView::Private::reveal()
{
    theRevealWaits = false;
    if (theSelection.isEmpty())
        return;
    const PDFSelection::Range& range = theSelection.ranges().first();
    if (range.page < 0 || range.page >= theGeometry.pageCount())
        return;
    const PDFPageText* const text = theDetails.text(range.page);
    if (!text) {
        theRevealWaits = true;
        if (!shownPages().contains(range.page))
            showPage(range.page);
        theDetails.want(shownPages());
        return;
    }
    const QList<QPolygonF> outlines = PageTextGeometry::outlines(
        *text, range.start, std::min<qsizetype>(range.length, PDFPageText::quadBlock));
    if (outlines.isEmpty())
        return showPage(range.page);
    const QRectF target = polygonInView(range.page, outlines.first()).boundingRect();
    const QRectF view(QPointF(0, 0), viewSize());
    if (view.adjusted(0, 20, 0, -20).contains(target))
        return;
    // A third from above there is room to read on, and what led there shows as well.
    QPointF by(0, target.center().y() - view.height() / 3);
    if (target.left() < 0 || target.right() > view.width())
        by.setX(target.center().x() - view.width() / 2);
    scrollTo(theOrigin + by);
}

std::optional<PDFTextPosition> PDFView::Private::positionAt(const QPointF& inView) const
{
    const PagePlace place = theGeometry.placeAt(content(inView));
    const PDFPageText* const text
        = theGeometry.pageCount() > 0 ? theDetails.text(place.page) : nullptr;
    if (!text)
        return std::nullopt;
    return PDFTextPosition{place.page, PageTextGeometry::nearestPosition(*text, place.point)};
}

bool PDFView::Private::textIsAt(const QPointF& inView) const
{
    const PagePlace place = theGeometry.placeAt(content(inView));
    const PDFPageText* const text
        = theGeometry.pageCount() > 0 ? theDetails.text(place.page) : nullptr;
    return text && PageTextGeometry::characterAt(*text, place.point) >= 0;
}

PDFSelection::Range PDFView::Private::unitAt(const PDFTextPosition& place) const
{
    const PDFPageText* const text = theDetails.text(place.page);
    if (!text || text->string.isEmpty() || theDrag == Drag::isCharacters)
        return {place.page, place.index, 0};
    const qsizetype index = std::min(place.index, text->string.size() - 1);
    return theDrag == Drag::isWords ? PageTextGeometry::wordAt(text->string, place.page, index)
                                    : PageTextGeometry::lineAt(text->string, place.page, index);
}

void PDFView::Private::startSelecting(const QPointF& inView, Drag unit, bool extends)
{
    const std::optional<PDFTextPosition> place = positionAt(inView);
    if (!place || !theText)
        return;
    theDrag = unit;
    if (extends && !theSelection.isEmpty()) {
        theDragUnit = {theAnchor.page, theAnchor.index, 0};
        return dragSelection(inView);
    }
    PDFTextPosition under = *place;
    // A double click means the character under the pointer, not the gap that is nearest to it.
    const PagePlace point = theGeometry.placeAt(content(inView));
    if (const PDFPageText* const text = theDetails.text(point.page);
        text && unit != Drag::isCharacters)
        under.index = std::max<qsizetype>(0, PageTextGeometry::characterAt(*text, point.point));
    if (unit != Drag::isCharacters && !textIsAt(inView))
        under = *place;
    theDragUnit = unitAt(under);
    setEnds({theDragUnit.page, theDragUnit.start},
        {theDragUnit.page, theDragUnit.start + theDragUnit.length});
}

void PDFView::Private::dragSelection(const QPointF& inView)
{
    theLastMouse = inView;
    const QRectF view(QPointF(0, 0), viewSize());
    const double above = std::min(0.0, inView.y());
    const double below = std::max(0.0, inView.y() - view.height());
    if (above + below != 0) {
        if (!theAutoScroll.isActive())
            theAutoScroll.start(30);
        moveTo(theOrigin + QPointF(0, std::clamp((above + below) / 2, -120.0, 120.0)));
    } else {
        theAutoScroll.stop();
    }
    // Texts come for what shows; while the view runs on, they are fetched without a pause.
    if (theAutoScroll.isActive())
        theDetails.want(shownPages());
    const QPointF inside(inView.x(), std::clamp(inView.y(), 1.0, view.height() - 2));
    const std::optional<PDFTextPosition> place = positionAt(inside);
    if (!place)
        return;
    const PDFSelection::Range unit = unitAt(*place);
    const PDFTextPosition start{theDragUnit.page, theDragUnit.start};
    const PDFTextPosition end{theDragUnit.page, theDragUnit.start + theDragUnit.length};
    const PDFTextPosition from{unit.page, unit.start};
    const PDFTextPosition to{unit.page, unit.start + unit.length};
    if (from < start)
        setEnds(end, from);
    else
        setEnds(start, std::max(end, to));
}

void PDFView::selectAll()
{
    if (!d->theText || d->theGeometry.pageCount() == 0)
        return;
    const int last = d->theGeometry.pageCount() - 1;
    d->setEnds({0, 0}, {last, std::numeric_limits<qsizetype>::max()});
    d->offerPrimarySelection();
}

void PDFView::copy()
{
    if (!d->theText || d->theSelection.isEmpty())
        return;
    d->theCopyWaits = true;
    const int last = d->theSelection.ranges().last().page;
    if (d->theText->arrivedCount() > last && d->selectionIsWhole())
        d->finishCopy();
    else
        d->theText->fetch();
}

void PDFView::Private::finishCopy()
{
    theCopyWaits = false;
    QApplication::clipboard()->setText(theText->string(theSelection));
}

void PDFView::Private::offerPrimarySelection()
{
    QClipboard* const clipboard = QApplication::clipboard();
    if (!clipboard->supportsSelection() || theSelection.isEmpty() || !theText)
        return;
    if (selectionIsWhole())
        clipboard->setText(theText->string(theSelection), QClipboard::Selection);
}

} // namespace tarnwick
