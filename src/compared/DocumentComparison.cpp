#include "compared/DocumentComparison.h"

#include "PageComparing.h"
#include "pdf/PDFDocument.h"
#include "pdf/PDFPageDigests.h"

#include <algorithm>
#include <cstring>

namespace tarnwick {

namespace {

/// Changes of words that are kept for all pages: 40 MB at most.
constexpr std::size_t mostTold = 200'000;

/// Whether one of two files is the beginning of the other.
bool isBeginning(std::string_view one, std::string_view other, const std::stop_token& stop)
{
    constexpr std::size_t portion = 16u << 20;
    const std::size_t shared = std::min(one.size(), other.size());
    if (one.data() == other.data())
        return true;
    for (std::size_t place = 0; place < shared; place += portion) {
        const std::size_t size = std::min(portion, shared - place);
        if (stop.stop_requested()
            || std::memcmp(one.data() + place, other.data() + place, size) != 0)
            return false;
    }
    return true;
}

std::vector<PageSign> signsOf(const QList<PDFPageDigest>& digests)
{
    std::vector<PageSign> signs;
    signs.reserve(static_cast<std::size_t>(digests.size()));
    for (const PDFPageDigest& digest : digests)
        signs.push_back({digest.object, digest.isKnown, digest.digest});
    return signs;
}

} // namespace

DocumentComparison::DocumentComparison(const Subject& before, const Subject& after, QObject* parent)
    : QObject(parent)
    , theSides{Side{before, {}, {}}, Side{after, {}, {}}}
    , theComparing(new PageComparing(before.document, after.document, this))
{
    connect(theComparing, &PageComparing::finished, this, [this](const ComparedPage& page) {
        take(page.isRemoved() ? pairOf(ComparedSide::isBefore, page.pair.before)
                              : pairOf(ComparedSide::isAfter, page.pair.after),
            page);
    });
    for (const ComparedSide which : {ComparedSide::isBefore, ComparedSide::isAfter}) {
        connect(document(which), &PDFDocument::pagesMeasured, this,
            [this, which](int first, int count) { compareAgain(which, first, count); });
    }
}

DocumentComparison::~DocumentComparison() = default;

PDFDocument* DocumentComparison::document(ComparedSide side) const
{
    return theSides[static_cast<std::size_t>(side)].subject.document;
}

int DocumentComparison::pairOf(ComparedSide which, int page) const
{
    const std::vector<int>& pairs = theSides[static_cast<std::size_t>(which)].pairs;
    return page >= 0 && page < std::ssize(pairs) ? pairs[static_cast<std::size_t>(page)] : -1;
}

void DocumentComparison::start()
{
    if (theIsRunning || !thePages.empty())
        return;
    theIsRunning = true;
    theWork.start(
        [one = theSides[0].subject.bytes, other = theSides[1].subject.bytes](
            const std::stop_token& stop) { return isBeginning(one.view(), other.view(), stop); },
        [this](bool areOfOneFile) {
            theKinship = areOfOneFile ? PageKinship::isOfOneFile : PageKinship::isOfTwoFiles;
            askForDigests(ComparedSide::isBefore);
            askForDigests(ComparedSide::isAfter);
        });
}

void DocumentComparison::askForDigests(ComparedSide which)
{
    Side& asked = side(which);
    const PDFDocument* const document = asked.subject.document;
    asked.digests = std::make_unique<PDFPageDigests>(asked.subject.bytes, document->password(),
        document->pageCount(),
        areVersionsOfOneFile() ? PDFPageDigests::Form::isOfPlace
                               : PDFPageDigests::Form::isOfContent);
    connect(asked.digests.get(), &PDFPageDigests::progressed, this, [this] {
        int done = 0;
        for (const Side& one : theSides)
            done += one.digests ? static_cast<int>(one.digests->digests().size()) : 0;
        emit progressed(done,
            theSides[0].subject.document->pageCount() + theSides[1].subject.document->pageCount());
    });
    connect(
        asked.digests.get(), &PDFPageDigests::finished, this, &DocumentComparison::oneIsDigested);
}

void DocumentComparison::oneIsDigested()
{
    if (++theDigested < 2)
        return;
    theWork.start(
        [before = signsOf(theSides[0].digests->digests()),
            after = signsOf(theSides[1].digests->digests()), kinship = theKinship](
            const std::stop_token& stop) { return pairPages(before, after, kinship, stop); },
        [this](const std::vector<PagePair>& pairs) { takePairs(pairs); });
}

void DocumentComparison::takePairs(const std::vector<PagePair>& pairs)
{
    for (Side& one : theSides) {
        one.digests.reset(); // its engine has nothing more to do
        one.pairs.assign(static_cast<std::size_t>(one.subject.document->pageCount()), -1);
    }
    thePages.resize(pairs.size());
    for (std::size_t index = 0; index < pairs.size(); ++index) {
        const PagePair& pair = pairs[index];
        thePages[index].pair = pair;
        thePages[index].isCompared = pair.isSame;
        theToCompare += pair.isSame ? 0 : 1;
        if (pair.before >= 0)
            theSides[0].pairs[static_cast<std::size_t>(pair.before)] = static_cast<int>(index);
        if (pair.after >= 0)
            theSides[1].pairs[static_cast<std::size_t>(pair.after)] = static_cast<int>(index);
    }
    theWaiting = theToCompare;
    emit paired();
    compareNext();
}

void DocumentComparison::prefer(int pair)
{
    thePreferred = pair;
}

int DocumentComparison::nextPair()
{
    const auto isWaiting = [this](std::size_t index) { return !thePages[index].isCompared; };
    if (thePreferred >= 0 && isWaiting(static_cast<std::size_t>(thePreferred)))
        return thePreferred;
    while (theNext < thePages.size() && !isWaiting(theNext))
        ++theNext;
    return theNext < thePages.size() ? static_cast<int>(theNext) : -1;
}

void DocumentComparison::compareNext()
{
    if (!theIsRunning)
        return;
    const int next = nextPair();
    if (next < 0)
        return finish();
    theComparing->start(thePages[static_cast<std::size_t>(next)].pair);
}

/// Sizes of pages arrive behind the document: what was drawn in one that stood in is drawn anew.
void DocumentComparison::compareAgain(ComparedSide which, int first, int count)
{
    for (int page = first; page < first + count; ++page) {
        const int index = pairOf(which, page);
        if (index < 0 || !theIsRunning)
            continue;
        ComparedPage& compared = thePages[static_cast<std::size_t>(index)];
        if (compared.pair.isSame || !compared.isCompared)
            continue;
        compared.isCompared = false;
        ++theWaiting;
        theNext = std::min(theNext, static_cast<std::size_t>(index));
    }
}

void DocumentComparison::take(int index, const ComparedPage& page)
{
    if (!theIsRunning || index < 0)
        return;
    ComparedPage& compared = thePages[static_cast<std::size_t>(index)];
    theTold -= compared.words.size();
    compared = page;
    if (theTold + compared.words.size() > mostTold)
        compared.words = {}; // they are counted all the same
    theTold += compared.words.size();
    --theWaiting;
    emit pairCompared(index);
    emit progressed(theToCompare - theWaiting, theToCompare);
    compareNext();
}

void DocumentComparison::cancel()
{
    if (!theIsRunning)
        return;
    theWasCancelled = true;
    theWork.abandon();
    for (Side& one : theSides)
        one.digests.reset();
    theComparing->cancel();
    finish();
}

void DocumentComparison::finish()
{
    theIsRunning = false;
    emit finished();
}

bool DocumentComparison::hasLosses() const
{
    return std::any_of(thePages.begin(), thePages.end(),
        [](const ComparedPage& page) { return page.isLost() || !page.isCompared; });
}

bool DocumentComparison::isEqual() const
{
    return !theWasCancelled && std::none_of(thePages.begin(), thePages.end(), [](const auto& page) {
        return page.isTold() || page.readsDifferent() || !page.isCompared;
    });
}

} // namespace tarnwick
