#include "PDFTableReading.h"

#include "PDFEngineClient.h"
#include "PDFPageWork.h"

namespace tarnwick {

namespace {

/// Milliseconds for the whole table: one of a million objects takes a few seconds.
constexpr qint64 mostTime = 120'000;

} // namespace

PDFTableReading::PDFTableReading(
    PDFTableRequest* request, PDFEngineClient* client, std::uint64_t fileSize)
    : QObject(request)
    , theRequest(request)
    , theClient(client)
    , theAnswers(std::make_shared<PDFTableAnswers>(fileSize))
{
}

void PDFTableReading::start()
{
    theAge.start();
    ask();
}

void PDFTableReading::ask()
{
    PDFEngineJob job = jobFor(TableRequest{theAnswers->next()});
    job.priority = PDFEngineJob::Priority::isBackground;
    job.decode
        = [answers = theAnswers](std::string_view payload) { return answers->take(payload); };
    job.finish = [self = QPointer(this)](PDFFailure failure) {
        if (self)
            self->take(failure);
    };
    PDFPageWork::submit(theClient, theRequest, std::move(job));
}

void PDFTableReading::take(PDFFailure failure)
{
    if (theRequest->isFinished() || !theClient)
        return;
    if (failure == PDFFailure::isNone && !theAnswers->isComplete() && theAge.elapsed() > mostTime)
        failure = PDFFailure::isTimedOut;
    if (failure == PDFFailure::isNone && !theAnswers->isComplete()) {
        ask();
        emit theRequest->progressed(theAnswers->next(), theAnswers->length());
        return;
    }
    if (failure == PDFFailure::isNone)
        theRequest->theTable = std::make_shared<const CrossReference>(theAnswers->takeTable());
    PDFPageWork::finish(theRequest, failure);
}

} // namespace tarnwick
