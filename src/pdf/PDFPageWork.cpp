#include "PDFPageWork.h"

#include "PDFEngineClient.h"

#include <QPointer>
#include <QTimer>

namespace tarnwick {

void PDFPageWork::submit(PDFEngineClient* client, PDFRequest* request, PDFEngineJob job)
{
    if (!job.finish) {
        job.finish = [waiting = QPointer<PDFRequest>(request)](PDFFailure failure) {
            if (waiting)
                waiting->finish(failure);
        };
    }
    request->theTimeLimit = job.timeLimit;
    const PDFEngineClient::Number number = client->submit(std::move(job));
    request->theGiveUp = [client = QPointer<PDFEngineClient>(client), number] {
        if (client)
            client->giveUp(number);
    };
}

void PDFPageWork::submit(
    PDFEngineClient* client, PDFRequest* request, PDFEngineJob job, int page, int pageCount)
{
    const EngineRequest kind = job.kind;
    if (page < 0 || page >= pageCount)
        return finishLater(request, PDFFailure::isDamaged);
    if (const std::optional<PDFFailure> end = endOf(kind, page))
        return finishLater(request, *end);
    job.timeLimit = theTimeLimit;
    job.finish = [this, waiting = QPointer<PDFRequest>(request), kind, page](PDFFailure failure) {
        remember(kind, page, failure);
        if (waiting)
            waiting->finish(failure);
    };
    submit(client, request, std::move(job));
}

void PDFPageWork::finish(PDFRequest* request, PDFFailure failure)
{
    request->finish(failure);
}

void PDFPageWork::finishLater(PDFRequest* request, PDFFailure failure)
{
    QTimer::singleShot(0, request, [request, failure] { request->finish(failure); });
}

std::optional<PDFFailure> PDFPageWork::endOf(EngineRequest kind, int page) const
{
    const auto end = theEnds.find({kind, page});
    return end != theEnds.end() ? std::optional(end->second) : std::nullopt;
}

void PDFPageWork::remember(EngineRequest kind, int page, PDFFailure failure)
{
    if (failure == PDFFailure::isEngineDead || failure == PDFFailure::isTimedOut)
        theEnds.emplace(std::pair(kind, page), failure);
}

} // namespace tarnwick
