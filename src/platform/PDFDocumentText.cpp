#include "platform/PDFDocumentText.h"

#include "platform/PDFDocument.h"

#include <algorithm>
#include <utility>

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
            thePages.append(text.string);
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
    else if (!std::exchange(theEndWasTold, true))
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

QString PDFDocumentText::string() const
{
    qsizetype size = 0;
    for (const QString& page : thePages)
        size += page.size() + 1;
    QString whole;
    whole.reserve(size);
    for (const QString& page : thePages) {
        whole += page;
        if (!page.isEmpty() && !page.endsWith(u'\n'))
            whole += u'\n';
    }
    return whole;
}

QString PDFDocumentText::string(const PDFSelection& selection) const
{
    QString text;
    for (const PDFSelection::Range& range : selection.ranges()) {
        if (range.page < 0 || range.page >= arrivedCount())
            continue;
        if (!text.isEmpty() && !text.endsWith(u'\n'))
            text += u'\n';
        text += QStringView(thePages.at(range.page))
                    .mid(std::max<qsizetype>(range.start, 0), range.length);
    }
    return text;
}
