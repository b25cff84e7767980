#pragma once

#include "PDFEngineJob.h"
#include "pdf/PDFRequest.h"

#include <map>
#include <optional>
#include <utility>

namespace tarnwick {

class PDFEngineClient;

/// Hands the requests of a document to its engines, and remembers what ended one of them: an engine
/// is not asked again for what it, or another, ended on.
class PDFPageWork
{
public:
    /// Hands a job to an engine on behalf of a request. The request hears of its end, unless the
    /// job has a finish of its own.
    static void submit(PDFEngineClient* client, PDFRequest* request, PDFEngineJob job);
    /// Likewise for work on one page, with its time limit. @param pageCount of the document; a page
    /// out of range is damaged.
    void submit(
        PDFEngineClient* client, PDFRequest* request, PDFEngineJob job, int page, int pageCount);

    static void finish(PDFRequest* request, PDFFailure failure);
    /// From the event loop.
    static void finishLater(PDFRequest* request, PDFFailure failure);

    /// What work on a page failed with when it ended an engine.
    std::optional<PDFFailure> endOf(EngineRequest kind, int page) const;
    /// @param failure of a job that has come to its end; other failures than an engine's end are
    ///   nothing to remember.
    void remember(EngineRequest kind, int page, PDFFailure failure);

    int timeLimit() const { return theTimeLimit; }
    void setTimeLimit(int milliseconds) { theTimeLimit = milliseconds; }

private:
    int theTimeLimit = pdfPageTimeLimit;
    std::map<std::pair<EngineRequest, int>, PDFFailure> theEnds;
};

} // namespace tarnwick
