#include "TextPrinter.h"

#include <QPagedPaintDevice>

#include <algorithm>
#include <utility>

namespace tarnwick {

TextPrinter::TextPrinter(std::shared_ptr<const TextStorage> storage, const QFont& font,
    QPagedPaintDevice& device, Choice choice)
    : theDevice(device)
    , theChoice(std::move(choice))
{
    const QSize page = device.pageLayout().paintRectPixels(device.logicalDpiX()).size();
    thePageHeight = page.height();
    theSegments.setStorage(std::move(storage));
    theSegments.setStyle({font, static_cast<qreal>(std::max(1, page.width())), &device});
}

double TextPrinter::progress() const
{
    const TextStorage& text = theSegments.storage();
    if (theIsDone)
        return 1;
    const double inLine
        = static_cast<double>(theSegment) / static_cast<double>(theSegments.count(theLine));
    return (static_cast<double>(theLine) + inLine) / static_cast<double>(text.lineCount());
}

bool TextPrinter::advance(QDeadlineTimer deadline)
{
    while (!theIsDone) {
        printSegment(*theSegments.segment(theLine, theSegment), deadline);
        if (deadline.hasExpired())
            break;
    }
    if (theIsDone && thePainter.isActive())
        thePainter.end();
    return !theIsDone;
}

/// Prints the rest of a segment's rows and goes on to the next one.
void TextPrinter::printSegment(const TextSegment& segment, QDeadlineTimer deadline)
{
    const qreal height = theSegments.rowHeight();
    for (; theRow < segment.rows(); ++theRow) {
        if (!beginRow())
            return;
        if (isOnPaper) {
            thePainter.setPen(theColours.colour(segment.role));
            segment.layout.lineAt(theRow).draw(&thePainter, {0, theY - theRow * height});
        }
        theY += height;
        if (deadline.hasExpired()) {
            ++theRow;
            return;
        }
    }
    theRow = 0;
    if (!segment.endsLine) {
        ++theSegment;
        return;
    }
    theSegment = 0;
    if (++theLine == theSegments.storage().lineCount())
        endCopy();
}

void TextPrinter::endCopy()
{
    theIsDone = --theChoice.copies < 1;
    if (theIsDone)
        return;
    theLine = theSegment = 0;
    theRow = 0;
    thePage = 1;
    theY = 0;
}

/// Makes room for a row, on the next page where this one is full. @returns false at the end.
bool TextPrinter::beginRow()
{
    // A page that is lower than a row still takes one: the text must come to an end.
    if (theY > 0 && theY + theSegments.rowHeight() > thePageHeight) {
        if (thePage == theChoice.lastPage) {
            endCopy();
            return false;
        }
        ++thePage;
        theY = 0;
    }
    if (theY == 0)
        beginPage();
    return !theIsDone;
}

void TextPrinter::beginPage()
{
    isOnPaper = !theChoice.isWanted || theChoice.isWanted(thePage);
    if (!isOnPaper)
        return;
    const bool isReady = thePainter.isActive() ? theDevice.newPage() : thePainter.begin(&theDevice);
    if (!isReady)
        theHasFailed = theIsDone = true;
}

} // namespace tarnwick
