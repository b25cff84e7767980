#pragma once

#include "pdf/PDFRequest.h"
#include "protocol/EngineMessages.h"

#include <QByteArray>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace tarnwick {

/// One piece of work for an engine.
struct PDFEngineJob
{
    /// Served in this order among the jobs that wait.
    enum class Priority
    {
        isPromptWork, ///< what the user waits for, first come first served
        isTile, ///< latest first: what came last is what shows now
        isBackground,
    };

    EngineRequest kind = EngineRequest::isMeasure;
    std::string payload;
    std::uint32_t largestResult = 0; ///< bytes
    bool writesFile = false; ///< for an engine that gets memory for it
    Priority priority = Priority::isPromptWork;
    int timeLimit = pdfPageTimeLimit; ///< milliseconds from when the engine starts on it
    /// Reads the result into values that this function and those below share. Long results are read
    /// in a thread of the pool. May be empty. @returns false when the result makes no sense, as
    /// accept does.
    std::function<bool(std::string_view payload)> decode;
    /// Takes the result in the main thread, behind decode. May be empty. @returns false when it
    /// makes no sense: the engine is then replaced and the job has failed.
    std::function<bool(const QByteArray& payload)> accept;
    std::function<void(int done, int total)> progress; ///< may be empty
    /// Takes what there is of a file when the engine is lost over it. May be empty. @returns
    /// whether that is a result.
    std::function<bool(PDFFailure)> salvage;
    std::function<void(PDFFailure)> finish; ///< called once, last of all; not after giveUp()

    /// Has the result read where decode is, and what it says taken in the main thread.
    /// @param read from a payload to a std::optional value, nothing when it makes no sense.
    template<typename Read, typename Take> void onResult(Read read, Take take)
    {
        using Value = std::invoke_result_t<Read, std::string_view>;
        const auto value = std::make_shared<Value>();
        decode = [value, read = std::move(read)](std::string_view bytes) {
            *value = read(bytes);
            return value->has_value();
        };
        accept = [value, take = std::move(take)](const QByteArray&) {
            take(std::move(**value));
            return true;
        };
    }
};

/// The work of a request (EngineMessages.h).
template<typename Request> PDFEngineJob jobFor(const Request& request)
{
    PDFEngineJob job;
    job.kind = Request::kind;
    job.payload = packed(request);
    job.largestResult = largestResult(request);
    job.writesFile = writesFile<Request>;
    return job;
}

} // namespace tarnwick
