#pragma once

#include "protocol/EngineMessages.h"

namespace tarnwick {

/// Appends a frame of a request, whatever its payload.
inline void appendRequest(std::string& requests, EngineRequest kind, std::string_view payload)
{
    EngineFrame frame;
    frame.size = static_cast<std::uint32_t>(payload.size());
    frame.kind = static_cast<std::uint8_t>(kind);
    requests.append(reinterpret_cast<const char*>(&frame), sizeof frame);
    requests.append(payload);
}

/// Appends a request as the program sends it.
template<typename Request> void appendRequest(std::string& requests, const Request& request)
{
    appendRequest(requests, Request::kind, packed(request));
}

} // namespace tarnwick
