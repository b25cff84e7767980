#include "platform/PageDetails.h"

#include <algorithm>

namespace {

/// A character with its quad takes about 150 bytes: 30 MB.
constexpr qsizetype mostCharacters = 200'000;
constexpr qsizetype mostPagesOfLinks = 200;

template<class Request> void giveUp(QPointer<Request>& request)
{
    if (!request)
        return;
    request->cancel();
    request->deleteLater();
    request.clear();
}

} // namespace

PageDetails::PageDetails(QObject* parent)
    : QObject(parent)
{
}

void PageDetails::setDocument(PDFDocument* document)
{
    giveUp(theTextRequest);
    giveUp(theLinksRequest);
    theTexts.clear();
    theLinks.clear();
    theWanted = {};
    theDocument = document;
}

void PageDetails::want(const PageGeometry::PageRange& pages)
{
    theWanted = pages;
    if (theTextRequest && !pages.contains(theTextPage))
        giveUp(theTextRequest);
    if (theLinksRequest && !pages.contains(theLinksPage))
        giveUp(theLinksRequest);
    fetchText();
    fetchLinks();
}

const PDFPageText* PageDetails::text(int page) const
{
    const auto place = theTexts.constFind(page);
    return place == theTexts.constEnd() ? nullptr : &place.value();
}

int PageDetails::firstMissing(bool ofText) const
{
    for (int page = theWanted.first; page <= theWanted.last; ++page) {
        if (ofText ? !theTexts.contains(page) : !theLinks.contains(page))
            return page;
    }
    return -1;
}

void PageDetails::fetchText()
{
    const int page = firstMissing(true);
    if (page < 0 || theTextRequest || !theDocument)
        return;
    theTextPage = page;
    theTextRequest = theDocument->requestText(page, page, PDFTextDetail::isWithQuads, this);
    connect(theTextRequest, &PDFTextRequest::pageReady, this, &PageDetails::takeText);
    connect(theTextRequest, &PDFRequest::finished, this, [this, page] {
        theTextRequest->deleteLater();
        theTextRequest.clear();
        if (!theTexts.contains(page))
            takeText(page, {});
        fetchText();
    });
}

void PageDetails::takeText(int page, const PDFPageText& text)
{
    forgetFarTexts();
    theTexts.insert(page, text);
    emit pageChanged(page);
}

void PageDetails::forgetFarTexts()
{
    qsizetype total = 0;
    for (const PDFPageText& text : std::as_const(theTexts))
        total += text.string.size();
    if (total < mostCharacters && theTexts.size() < mostPagesOfLinks)
        return;
    theTexts.removeIf([this](const auto& entry) { return !theWanted.contains(entry.key()); });
}

void PageDetails::fetchLinks()
{
    const int page = firstMissing(false);
    if (page < 0 || theLinksRequest || !theDocument)
        return;
    if (theLinks.size() >= mostPagesOfLinks)
        theLinks.removeIf([this](const auto& entry) { return !theWanted.contains(entry.key()); });
    theLinksPage = page;
    theLinksRequest = theDocument->requestLinks(page, this);
    connect(theLinksRequest, &PDFRequest::finished, this, [this, page] {
        theLinks.insert(page, theLinksRequest->links());
        theLinksRequest->deleteLater();
        theLinksRequest.clear();
        emit pageChanged(page);
        fetchLinks();
    });
}
