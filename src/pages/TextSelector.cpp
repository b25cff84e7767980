#include "TextSelector.h"

#include "SelectableText.h"

#include <QApplication>
#include <QClipboard>

namespace tarnwick {

namespace {

constexpr int gathering = 100; ///< milliseconds

} // namespace

TextSelector::TextSelector(SelectableText& text, QObject* parent)
    : QObject(parent)
    , theText(text)
{
    theTimer.setSingleShot(true);
    connect(&theTimer, &QTimer::timeout, this, &TextSelector::selectBetweenEnds);
}

bool TextSelector::isPossible() const
{
    return theText.isThere();
}

/// Whether every page between the ends has its text; the last page alone may be one whose text was
/// read for its quads.
bool TextSelector::isWhole() const
{
    return !theEnds || !theText.isThere() || theText.arrivedCount() > theEnds->lastPage();
}

void TextSelector::select(const PDFSelection& selection)
{
    theEnds.reset();
    isCopyWaiting = false;
    if (!selection.isEmpty())
        theAnchor = {selection.ranges().first().page, selection.ranges().first().start};
    take(selection);
}

void TextSelector::selectBetween(const PDFTextPosition& anchor, const PDFTextPosition& focus)
{
    theAnchor = anchor;
    theEnds = Ends{anchor, focus};
    if (!isWhole())
        theText.fetch();
    selectBetweenEnds();
}

void TextSelector::selectBetweenEnds()
{
    if (!theEnds)
        return;
    take(PageTextGeometry::selectionBetween(
        theEnds->anchor, theEnds->focus, [this](int page) { return theText.lengthOf(page); }));
    if (isCopyWaiting && isWhole())
        finishCopy();
}

void TextSelector::take(const PDFSelection& selection)
{
    if (selection == theSelection)
        return;
    theSelection = selection;
    emit changed();
}

void TextSelector::clear()
{
    select({});
}

void TextSelector::copy()
{
    if (!theText.isThere() || theSelection.isEmpty())
        return;
    isCopyWaiting = true;
    if (theText.arrivedCount() > theSelection.ranges().last().page && isWhole())
        finishCopy();
    else
        theText.fetch();
}

void TextSelector::finishCopy()
{
    isCopyWaiting = false;
    QApplication::clipboard()->setText(theText.string(theSelection));
}

void TextSelector::offerPrimarySelection()
{
    QClipboard* const clipboard = QApplication::clipboard();
    if (!clipboard->supportsSelection() || theSelection.isEmpty() || !theText.isThere())
        return;
    if (isWhole())
        clipboard->setText(theText.string(theSelection), QClipboard::Selection);
}

void TextSelector::pageArrived(int page)
{
    const bool isSelected = theEnds && page >= theEnds->firstPage() && page <= theEnds->lastPage();
    if (isSelected && !theTimer.isActive())
        theTimer.start(gathering);
}

void TextSelector::textCompleted()
{
    selectBetweenEnds();
    textStopped();
}

/// What has come until then is what there is to copy.
void TextSelector::textStopped()
{
    if (isCopyWaiting)
        finishCopy();
}

} // namespace tarnwick
