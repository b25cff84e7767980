#pragma once

#include "protocol/CheckMessages.h"
#include "protocol/CrossReferenceMessages.h"
#include "protocol/DigestMessages.h"
#include "protocol/FileMessages.h"
#include "protocol/ObjectMessages.h"
#include "protocol/OpeningMessages.h"
#include "protocol/PageMessages.h"
#include "protocol/SignMessages.h"
#include "protocol/TableMessages.h"

namespace tarnwick {

/// Every request, and what follows for all of them from what they say of themselves.

template<typename... Requests> struct RequestList
{
    /// Calls visit with an empty request of a kind. @returns false when there is no such kind.
    template<typename Visit> static constexpr bool visit(EngineRequest kind, Visit&& visit)
    {
        return ((Requests::kind == kind && (visit(Requests()), true)) || ...);
    }
    static constexpr int count = sizeof...(Requests);
    /// Bytes.
    static constexpr std::size_t largestRequest() { return std::max({mostSize<Requests>()...}); }
    static constexpr std::size_t largestResult()
    {
        return std::max({mostSize<typename Requests::Result>()...});
    }
};

using EngineRequests = RequestList<OpenRequest, UnlockRequest, MeasureRequest, DigestRequest,
    TileRequest, TextRequest, LinksRequest, OutlineRequest, FlatRequest, PrintRequest,
    ObjectRequest, StreamRequest, FactsRequest, PictureRequest, SignRequest, CrossReferenceRequest,
    CheckRequest, TableRequest>;

/// Whether a request has the engine write a file, and report how far it is.
template<typename Request> constexpr bool writesFile = requires
{
    requires Request::writesFile;
};

/// Whether a request is for the open document; else the file's bytes alone are read.
template<typename Request> constexpr bool needsDocument = !requires
{
    requires !Request::needsDocument;
};

/// The most bytes that the result of a request has.
template<typename Request> constexpr std::uint32_t largestResult(const Request& request)
{
    if constexpr (requires { request.largestResult(); })
        return static_cast<std::uint32_t>(request.largestResult());
    else
        return static_cast<std::uint32_t>(mostSize<typename Request::Result>());
}

/// The most bytes of payload that a frame of an answer has. @param result what isDone may have.
constexpr std::uint32_t largestPayload(EngineAnswer kind, std::uint32_t result)
{
    switch (kind) {
    case EngineAnswer::isOpened:
        return static_cast<std::uint32_t>(mostSize<OpenedAnswer>());
    case EngineAnswer::isLocked:
        return static_cast<std::uint32_t>(mostSize<LockedAnswer>());
    case EngineAnswer::isRefused:
        return static_cast<std::uint32_t>(mostSize<RefusedAnswer>());
    case EngineAnswer::isDone:
        return result;
    case EngineAnswer::isFailed:
        return static_cast<std::uint32_t>(mostSize<FailedAnswer>());
    case EngineAnswer::isProgress:
        return static_cast<std::uint32_t>(mostSize<ProgressAnswer>());
    }
    return 0;
}

} // namespace tarnwick
