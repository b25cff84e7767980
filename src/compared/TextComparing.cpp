#include "compared/TextComparing.h"

#include "ToldWords.h"
#include "pdf/PDFDocument.h"

#include <algorithm>

namespace tarnwick {

namespace {

int pageAt(const std::vector<qsizetype>& starts, int firstPage, std::size_t place)
{
    const auto next = std::upper_bound(starts.begin(), starts.end(), static_cast<qsizetype>(place));
    return next == starts.begin() ? -1 : firstPage + static_cast<int>(next - starts.begin()) - 1;
}

} // namespace

TextComparing::TextComparing(PDFDocument* before, PDFDocument* after, QObject* parent)
    : QObject(parent)
    , theDocuments{before, after}
{
}

TextComparing::~TextComparing() = default;

void TextComparing::start(const PageStretch& before, const PageStretch& after)
{
    cancel();
    theRequests = std::make_unique<QObject>();
    theTotal = before.count + after.count;
    theOpenCount = 1; // until both are asked for
    ask(0, before);
    ask(1, after);
    oneIsDone();
}

void TextComparing::ask(std::size_t side, const PageStretch& pages)
{
    theSides[side].firstPage = pages.first;
    if (pages.count <= 0)
        return;
    const int last = pages.first + pages.count - 1;
    auto* const request = theDocuments[side]->requestText(
        pages.first, last, PDFTextDetail::isPlain, theRequests.get());
    ++theOpenCount;
    connect(request, &PDFTextRequest::pageReady, this,
        [this, side](int page, const PDFPageText& text) { take(side, page, text); });
    connect(request, &PDFRequest::finished, this, [this, side, request, last] {
        Side& read = theSides[side];
        if (!request->succeeded())
            read.losses.add({read.firstPage + static_cast<int>(read.starts.size()), last,
                lossOf(request->failure())});
        oneIsDone();
    });
}

void TextComparing::take(std::size_t side, int page, const PDFPageText& text)
{
    Side& read = theSides[side];
    if (!read.text.isEmpty() && !read.text.endsWith(u'\n'))
        read.text += u'\n';
    read.starts.push_back(read.text.size());
    read.text += text.string;
    read.losses.add(page, text.loss);
    emit progressed(++theDone, theTotal);
}

void TextComparing::oneIsDone()
{
    if (--theOpenCount > 0)
        return;
    theWork.start(
        [sides = theSides](const std::stop_token& stop) -> std::shared_ptr<const ComparedText> {
            const auto result = std::make_shared<ComparedText>();
            const QString& before = sides[0].text;
            const QString& after = sides[1].text;
            const WordDiff diff = compareWords(unitsOf(before), unitsOf(after), stop);
            result->merged = mergedText(unitsOf(before), unitsOf(after), diff);
            result->isRewritten = diff.isRewritten;
            result->losses = {sides[0].losses, sides[1].losses};
            for (const WordChange& change : diff.changes) {
                result->words.push_back(toldWords(before, after, change));
                result->pages.push_back(
                    {pageAt(sides[0].starts, sides[0].firstPage, change.before.begin),
                        pageAt(sides[1].starts, sides[1].firstPage, change.after.begin)});
            }
            return result;
        },
        [this](const std::shared_ptr<const ComparedText>& text) {
            theSides = {};
            emit finished(text);
        });
}

void TextComparing::cancel()
{
    theWork.abandon();
    theRequests.reset();
    theSides = {};
    theOpenCount = 0;
    theDone = 0;
}

} // namespace tarnwick
