#pragma once

#include "protocol/EngineMessages.h"

#include <optional>
#include <string>

namespace tarnwick {

/// The engine's end of the pipes to the program: blocking reads of requests, writes of answers.
class EnginePipe
{
public:
    struct Request
    {
        std::uint32_t number = 0;
        EngineRequest kind = EngineRequest::isOpen;
        std::string payload;
    };

    /// The next request. @returns nothing when the program has gone or sends nonsense: the engine
    /// has nothing left to do then.
    std::optional<Request> read();

    /// Answers a request; ends the process when nobody listens any more.
    void answer(std::uint32_t number, EngineAnswer kind, std::string_view payload);
};

} // namespace tarnwick
