// The part of SourceViewController that shows the source of a document that is not opened (yet).
#include "inspector/SourceViewController.h"

#include "SourceSummary.h"
#include "document/Document.h"
#include "text/PlainTextView.h"

#include <QLabel>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace tarnwick {

bool SourceViewController::isOpened() const
{
    return theRenderedDocument && theRenderedDocument->state() == PDFDocument::State::isOpen;
}

/// How far the opening is, or why there will be no flattened PDF.
void SourceViewController::tellOpening()
{
    const bool isUnderWay = theOwner->state() == FrameDocument::State::isOpening;
    theUpper.lastingNote = isUnderWay ? tr("The PDF engine is opening the file\u2026") : QString();
    setNote(theUpper, theUpper.lastingNote);
    theUpper.cancel->setVisible(isUnderWay);
    theUpper.view->clear();
    setBottomText(isUnderWay ? QString() : QString::fromUtf8(noDocumentText));
    if (isUnderWay)
        return;
    const QString reason = tr("There is no flattened PDF.") + u' ' + theOwner->whyNotOpened();
    theUpper.view->setGaps({{0, reason}}, {reason});
    theUpper.view->setAccessibleDescription(reason);
}

/// The opening has come to something.
void SourceViewController::takeOpening()
{
    if (!theOwner->isSourceEarly() || isHidden())
        return;
    theRenderedDocument = theOwner->thePDFDocument();
    theUpper.cancel->hide();
    theUpper.view->setAccessibleDescription({});
    if (isOpened())
        fillFromEngine();
    else
        tellOpening();
    tellTableLoader();
    tellObjectPanel();
}

void SourceViewController::showWantedPage(int page)
{
    if (isOpened())
        emit pageWanted(page);
    else
        say(theLower, tr("Pages show when the PDF engine has opened the file"));
}

} // namespace tarnwick
