#include "PDFSignReading.h"

#include "PDFEngineClient.h"
#include "PDFPageWork.h"
#include "PDFSignAnswers.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tarnwick {

namespace {

/// Milliseconds for a portion, of which the first goes through all objects of the document.
constexpr int portionLimit = 60'000;

} // namespace

PDFSignReading::PDFSignReading(
    PDFSignRequest* request, PDFEngineClient* client, std::vector<std::uint32_t> numbers)
    : QObject(request)
    , theRequest(request)
    , theClient(client)
    , theNumbers(std::move(numbers))
    , theIsOfAll(theNumbers.empty())
{
}

void PDFSignReading::ask(std::uint32_t first)
{
    SignRequest request;
    request.first = first;
    const auto begin = std::lower_bound(theNumbers.begin(), theNumbers.end(), first);
    const auto count = std::min<std::ptrdiff_t>(theNumbers.end() - begin, maximumSigns);
    request.numbers = std::vector<std::uint32_t>(begin, begin + count);
    // The engine knows of no more than it was told.
    const std::uint32_t behind = begin + count == theNumbers.end() ? 0 : *(begin + count);
    PDFEngineJob job = jobFor(request);
    job.timeLimit = portionLimit;
    job.onResult([first](std::string_view payload) { return readSignAnswer(payload, first); },
        [self = QPointer(this), behind](PDFSigns answer) {
            if (!self)
                return;
            ObjectSigns& signs = self->theRequest->theSigns;
            std::move(
                answer.signs.list.begin(), answer.signs.list.end(), std::back_inserter(signs.list));
            signs.root = answer.signs.root;
            signs.info = answer.signs.info;
            self->theNext = answer.next != 0 ? answer.next : behind;
        });
    job.finish = [self = QPointer(this)](PDFFailure failure) {
        if (self)
            self->goOn(failure);
    };
    PDFPageWork::submit(theClient, theRequest, std::move(job));
}

void PDFSignReading::goOn(PDFFailure failure)
{
    const bool isDone = failure != PDFFailure::isNone || theNext == 0 || !theClient;
    if (isDone)
        return PDFPageWork::finish(theRequest, failure);
    const QPointer<PDFSignReading> self(this);
    emit theRequest->progressed(static_cast<int>(theRequest->theSigns.list.size()),
        theIsOfAll ? 0 : static_cast<int>(theNumbers.size()));
    if (self && !theRequest->isFinished())
        ask(theNext);
}

} // namespace tarnwick
