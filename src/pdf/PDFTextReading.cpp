#include "PDFTextReading.h"

#include "PDFEngineAnswers.h"
#include "PDFEngineClient.h"
#include "PDFPageWork.h"

#include <QTimer>

#include <utility>

namespace tarnwick {

namespace {

/// A document whose pages keep ending the engine is given up, rather than waited for page by page:
/// when so many are lost, or when they have taken as long as so many that reach their time limit.
constexpr int maximumLostPages = 100;
constexpr int maximumSlowPages = 8;

} // namespace

PDFTextReading::PDFTextReading(PDFTextRequest* request, PDFEngineClient* client,
    std::shared_ptr<PDFPageWork> work, const Pages& pages, PDFTextDetail detail,
    std::uint64_t mostCharacters)
    : QObject(request)
    , theRequest(request)
    , theClient(client)
    , theWork(std::move(work))
    , thePages(pages)
    , theDetail(detail)
    , theMostCharacters(mostCharacters)
{
}

void PDFTextReading::start()
{
    ask(thePages.first);
}

void PDFTextReading::ask(int page)
{
    if (const auto end = theWork->endOf(EngineRequest::isText, page)) {
        const PDFPageText lost = PDFPageText::lost(*end);
        QTimer::singleShot(
            0, this, [this, page, lost] { deliver(page, lost, PDFFailure::isNone); });
        return;
    }
    theAge.start();
    const auto text = std::make_shared<PDFPageText>();
    PDFEngineJob job = jobFor(TextRequest{page, theDetail});
    job.timeLimit = theWork->timeLimit();
    job.onResult(
        [detail = theDetail](std::string_view payload) { return readTextAnswer(payload, detail); },
        [text](PDFPageText answer) { *text = std::move(answer); });
    job.finish = [self = QPointer(this), work = theWork, page, text](PDFFailure failure) {
        work->remember(EngineRequest::isText, page, failure);
        if (failure != PDFFailure::isNone)
            *text = PDFPageText::lost(failure);
        if (self)
            self->deliver(page, *text, failure);
    };
    PDFPageWork::submit(theClient, theRequest, std::move(job));
}

/// Whether the rest of the pages is not worth waiting for, now that one has failed.
bool PDFTextReading::isGivenUp(PDFFailure failure)
{
    if (failure == PDFFailure::isNone || failure == PDFFailure::isDamaged)
        return false;
    theLostPages += 1;
    theLostTime += theAge.elapsed();
    return !theClient || theClient->isBroken() || theLostPages > maximumLostPages
        || theLostTime > qint64{maximumSlowPages} * pdfPageTimeLimit;
}

void PDFTextReading::deliver(int page, const PDFPageText& text, PDFFailure failure)
{
    const QPointer<PDFTextRequest> request(theRequest);
    if (request->isFinished() || !theClient)
        return;
    if (isGivenUp(failure))
        return PDFPageWork::finish(request, failure);
    theCharacters += static_cast<std::uint64_t>(text.string.size());
    if (theCharacters > theMostCharacters)
        return PDFPageWork::finish(request, PDFFailure::isOutOfMemory);
    const Pages pages = thePages;
    // The next page is read while this one is being looked at.
    if (page < pages.last)
        ask(page + 1);
    emit request->pageReady(page, text); // which may destroy the request, and this with it
    if (request && !request->isFinished())
        emit request->progressed(page - pages.first + 1, pages.last - pages.first + 1);
    if (request && page == pages.last)
        PDFPageWork::finish(request, PDFFailure::isNone);
}

} // namespace tarnwick
