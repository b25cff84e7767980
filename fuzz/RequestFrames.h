#pragma once

#include "protocol/EngineProtocol.h"

namespace tarnwick {

/// Appends a request as the program sends it.
inline void appendRequest(std::string& requests, EngineRequest kind, std::string_view payload = {})
{
    EngineFrame frame;
    frame.size = static_cast<std::uint32_t>(payload.size());
    frame.kind = static_cast<std::uint8_t>(kind);
    requests.append(reinterpret_cast<const char*>(&frame), sizeof frame);
    requests.append(payload);
}

} // namespace tarnwick
