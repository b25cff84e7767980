#include "pdf/PDFDocumentText.h"

#include "pdf/PDFDocument.h"

#include <algorithm>
#include <utility>

namespace tarnwick {

PDFDocumentText::PDFDocumentText(PDFDocument* document)
    : theDocument(document)
{
}

void PDFDocumentText::fetch()
{
    if (theRequest)
        return;
    theRequest
        = theDocument->requestText(arrivedCount(), pageCount() - 1, PDFTextDetail::isPlain, this);
    connect(
        theRequest, &PDFTextRequest::pageReady, this, [this](int page, const PDFPageText& text) {
            theText.pages.append(text.string);
            theText.losses.add(page, text.loss);
            emit pageArrived(page);
        });
    connect(theRequest, &PDFRequest::finished, this, &PDFDocumentText::endFetch);
}

void PDFDocumentText::endFetch()
{
    const PDFFailure failure = theRequest->failure();
    theRequest->deleteLater();
    theRequest = nullptr;
    if (!isWhole())
        emit stopped(failure);
    else if (!std::exchange(hasToldEnd, true))
        emit completed();
}

void PDFDocumentText::cancel()
{
    if (!theRequest)
        return;
    theRequest->cancel();
    theRequest->deleteLater();
    theRequest = nullptr;
    emit stopped(PDFFailure::isCancelled);
}

int PDFDocumentText::pageCount() const
{
    return theDocument->pageCount();
}

PDFPagesText PDFDocumentText::text() const
{
    PDFPagesText text = theText;
    text.losses.add({arrivedCount(), pageCount() - 1, PDFLoss::isNotRead});
    return text;
}

QString PDFDocumentText::string(const PDFSelection& selection) const
{
    QString text;
    for (const PDFSelection::Range& range : selection.ranges()) {
        if (range.page < 0 || range.page >= arrivedCount())
            continue;
        if (!text.isEmpty() && !text.endsWith(u'\n'))
            text += u'\n';
        text += QStringView(theText.pages.at(range.page))
                    .mid(std::max<qsizetype>(range.start, 0), range.length);
    }
    return text;
}

} // namespace tarnwick
