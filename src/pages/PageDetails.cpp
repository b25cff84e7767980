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

} // namespace

PageDetails::PageDetails(QObject* parent)
    : QObject(parent)
{
}

void PageDetails::setSource(std::unique_ptr<PageSource> source)
{
    theTextErrand.reset();
    theLinksErrand.reset();
    theTexts.clear();
    theLinks.clear();
    theWanted = {};
    theSource = std::move(source);
}

void PageDetails::want(const PageGeometry::PageRange& pages)
{
    theWanted = pages;
    forgetFarTexts();
    if (!pages.contains(theTextPage))
        theTextErrand.reset();
    if (!pages.contains(theLinksPage))
        theLinksErrand.reset();
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
    if (page < 0 || theTextErrand || !theSource || !theSource->isThere()
        || characters() > mostShownCharacters)
        return;
    theTextPage = page;
    theTextErrand = theSource->requestText(
        page, [this, page](const PDFPageText& text) { takeText(page, text); });
}

void PageDetails::takeText(int page, const PDFPageText& text)
{
    theTextErrand.reset();
    forgetFarTexts();
    theTexts.insert(page, text);
    emit pageChanged(page);
    fetchText();
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

qsizetype PageDetails::linkCount() const
{
    qsizetype total = 0;
    for (const QList<PDFLink>& links : theLinks)
        total += links.size();
    return total;
}

void PageDetails::forgetFarLinks()
{
    if (linkCount() < mostLinks && theLinks.size() < mostPagesOfLinks)
        return;
    theLinks.removeIf([this](const auto& entry) { return !theWanted.contains(entry.key()); });
}

void PageDetails::fetchLinks()
{
    const int page = firstMissing(false);
    if (page < 0 || theLinksErrand || !theSource || !theSource->isThere())
        return;
    forgetFarLinks();
    if (linkCount() > mostShownLinks)
        return;
    theLinksPage = page;
    theLinksErrand = theSource->requestLinks(
        page, [this, page](const QList<PDFLink>& links) { takeLinks(page, links); });
}

void PageDetails::takeLinks(int page, const QList<PDFLink>& links)
{
    theLinksErrand.reset();
    theLinks.insert(page, links);
    emit pageChanged(page);
    fetchLinks();
}

} // namespace tarnwick
