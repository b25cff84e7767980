#include "PageDetails.h"

#include <algorithm>

namespace tarnwick {

namespace {

/// A character with its quad takes 38 bytes. Beyond these the pages that do not show are forgotten.
constexpr qsizetype mostCharacters = 400'000;
constexpr qsizetype mostPagesOfLinks = 200;
constexpr qsizetype mostLinks = 40'000;
/// Beyond these nothing more is fetched, even for pages that show: at the smallest scale hundreds
/// may, and each may hold all that a page can.
constexpr qsizetype mostShownCharacters = 6'000'000;
constexpr qsizetype mostShownLinks = 200'000;

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
    forgetFarTexts();
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
    if (page < 0 || theTextRequest || !theDocument || characters() > mostShownCharacters)
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

qsizetype PageDetails::characters() const
{
    qsizetype total = 0;
    for (const PDFPageText& text : theTexts)
        total += text.string.size();
    return total;
}

void PageDetails::forgetFarTexts()
{
    if (characters() < mostCharacters && theTexts.size() < mostPagesOfLinks)
        return;
    theTexts.removeIf([this](const auto& entry) { return !theWanted.contains(entry.key()); });
}

void PageDetails::fetchLinks()
{
    const int page = firstMissing(false);
    if (page < 0 || theLinksRequest || !theDocument)
        return;
    qsizetype total = 0;
    for (const QList<PDFLink>& links : std::as_const(theLinks))
        total += links.size();
    if (theLinks.size() >= mostPagesOfLinks || total >= mostLinks)
        theLinks.removeIf([this](const auto& entry) { return !theWanted.contains(entry.key()); });
    if (total > mostShownLinks)
        return;
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

} // namespace tarnwick
