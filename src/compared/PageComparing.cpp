#include "PageComparing.h"

#include "ToldWords.h"
#include "compare/WordDiff.h"
#include "pdf/PDFDocument.h"

#include <algorithm>
#include <cmath>

namespace tarnwick {

namespace {

constexpr double pixelsForPoint = 1; ///< 72 to the inch
constexpr double mostPixels = 4000; ///< of a picture's side

double scaleFor(const QSizeF& one, const QSizeF& other)
{
    const double side = std::max({1.0, one.width(), one.height(), other.width(), other.height()});
    return std::min(pixelsForPoint, mostPixels / side);
}

QSizeF sizeOf(const PDFDocument* document, int page)
{
    return page >= 0 ? document->pageSize(page) : QSizeF();
}

Picture pictureOf(const QImage& image)
{
    if (image.isNull() || image.bytesPerLine() != qsizetype{4} * image.width())
        return {};
    return {image.width(), image.height(),
        {reinterpret_cast<const std::uint32_t*>(image.constBits()),
            static_cast<std::size_t>(image.width()) * static_cast<std::size_t>(image.height())}};
}

void compareTexts(
    ComparedPage& page, const QString& before, const QString& after, const std::stop_token& stop)
{
    const WordDiff diff = compareWords(unitsOf(before), unitsOf(after), stop);
    page.isRewritten = diff.isRewritten;
    page.changes = diff.changes.size();
    for (const WordChange& change : diff.changes) {
        if (page.words.size() == ComparedPage::mostTold)
            break;
        page.words.push_back(toldWords(before, after, change));
    }
}

} // namespace

PageComparing::PageComparing(PDFDocument* before, PDFDocument* after, QObject* parent)
    : QObject(parent)
    , theDocuments{before, after}
{
}

std::array<QSizeF, 2> PageComparing::presentSizes(const PagePair& pair) const
{
    return {sizeOf(theDocuments[0], pair.before), sizeOf(theDocuments[1], pair.after)};
}

void PageComparing::start(const PagePair& pair)
{
    cancel();
    thePage = {};
    thePage.pair = pair;
    theMaterial = {};
    theRequests = std::make_unique<QObject>();
    theMaterial.sizes = presentSizes(pair);
    const auto& sizes = theMaterial.sizes;
    theMaterial.scale = scaleFor(sizes[0], sizes[1]);
    const bool areBoth = pair.before >= 0 && pair.after >= 0;
    thePage.isResized = areBoth && sizes[0] != sizes[1];
    theOpenCount = 1; // until all are asked for
    const int pages[] = {pair.before, pair.after};
    for (std::size_t side = 0; side < 2; ++side) {
        if (pages[side] < 0)
            continue;
        askForText(side, pages[side]);
        if (areBoth)
            ask(side, pages[side]);
    }
    oneIsDone();
}

void PageComparing::ask(std::size_t side, int page)
{
    const QSizeF size = theDocuments[side]->pageSize(page) * theMaterial.scale;
    const QRect area(0, 0, std::max(1, static_cast<int>(std::ceil(size.width()))),
        std::max(1, static_cast<int>(std::ceil(size.height()))));
    const auto* const request
        = theDocuments[side]->requestTile(page, theMaterial.scale, 0, area, theRequests.get());
    ++theOpenCount;
    connect(request, &PDFRequest::finished, this, [this, side, request] {
        theMaterial.images[side] = request->image();
        thePage.failures[side] = request->failure();
        oneIsDone();
    });
}

void PageComparing::askForText(std::size_t side, int page)
{
    auto* const request
        = theDocuments[side]->requestText(page, page, PDFTextDetail::isPlain, theRequests.get());
    ++theOpenCount;
    connect(request, &PDFTextRequest::pageReady, this, [this, side](int, const PDFPageText& text) {
        theMaterial.texts[side] = text.string;
        thePage.losses[side] = text.loss;
    });
    connect(request, &PDFRequest::finished, this, [this, side, request] {
        if (!request->succeeded() && thePage.losses[side] == PDFLoss::isNone)
            thePage.losses[side] = lossOf(request->failure());
        oneIsDone();
    });
}

void PageComparing::oneIsDone()
{
    // Later: what has been answered may be asked for anew, and goes then.
    if (--theOpenCount == 0)
        QMetaObject::invokeMethod(this, &PageComparing::compare, Qt::QueuedConnection);
}

void PageComparing::compare()
{
    if (theOpenCount > 0 || !theRequests)
        return; // another pair has been started, or none is wanted any more
    if (presentSizes(thePage.pair) != theMaterial.sizes)
        return start(PagePair(thePage.pair)); // they have arrived meanwhile
    theWork.start(
        [page = thePage, material = theMaterial](const std::stop_token& stop) {
            ComparedPage result = page;
            const auto& [before, after] = material.images;
            if (!before.isNull() && !after.isNull())
                result.areas = differingAreas(pictureOf(before), pictureOf(after));
            for (PictureArea& area : result.areas)
                area = {area.left / material.scale, area.top / material.scale,
                    area.right / material.scale, area.bottom / material.scale};
            const auto isThere = [&page](std::size_t side) {
                return page.losses[side] == PDFLoss::isNone || isPartial(page.losses[side]);
            };
            if (isThere(0) && isThere(1))
                compareTexts(result, material.texts[0], material.texts[1], stop);
            result.isCompared = true;
            return result;
        },
        [this](const ComparedPage& page) {
            theMaterial = {};
            theRequests.reset();
            emit finished(page);
        });
}

void PageComparing::cancel()
{
    theWork.abandon();
    theRequests.reset();
    theMaterial = {};
}

} // namespace tarnwick
