#pragma once

#include "protocol/EngineLimits.h"
#include "protocol/EngineProtocol.h"
#include "protocol/MessageFields.h"

namespace tarnwick {

/// Messages on the opening of a document, and answers that any request may have.

struct NoResult
{
    static constexpr void describe(auto&, auto&) { }
};

struct OpenRequest
{
    static constexpr EngineRequest kind = EngineRequest::isOpen;
    using Result = NoResult; ///< but facts

    static constexpr void describe(auto&, auto&) { }
};

struct UnlockRequest
{
    static constexpr EngineRequest kind = EngineRequest::isUnlock;
    using Result = NoResult; ///< but facts

    std::string password; ///< UTF-8

    static constexpr void describe(auto& fields, auto& message)
    {
        fields.text(message.password, longestPassword);
    }
};

/// The document is open.
struct OpenedAnswer
{
    static constexpr EngineAnswer kind = EngineAnswer::isOpened;

    int pageCount = 0;
    int majorVersion = 0;
    int minorVersion = 0;
    int infoEntries = -1; ///< -1 without an Info dictionary
    int catalogEntries = -1; ///< likewise
    float firstWidth = 0; ///< of the first page, in points
    float firstHeight = 0;

    static constexpr void describe(auto& fields, auto& message)
    {
        fields.number(message.pageCount, 0, maximumPageCount);
        fields.number(message.majorVersion);
        fields.number(message.minorVersion);
        fields.number(message.infoEntries);
        fields.number(message.catalogEntries);
        fields.number(message.firstWidth);
        fields.number(message.firstHeight);
    }
};

/// It wants a password.
struct LockedAnswer
{
    static constexpr EngineAnswer kind = EngineAnswer::isLocked;

    bool wasTried = false; ///< one was sent, and is not it

    static constexpr void describe(auto& fields, auto& message) { fields.flag(message.wasTried); }
};

/// It cannot be opened.
struct RefusedAnswer
{
    static constexpr EngineAnswer kind = EngineAnswer::isRefused;

    std::string reason; ///< a sentence for the user

    static constexpr void describe(auto& fields, auto& message)
    {
        fields.text(message.reason, longestReason);
    }
};

enum class EngineFault : std::uint8_t
{
    isDamaged,
    isOutOfMemory,
};

/// The request brings nothing.
struct FailedAnswer
{
    static constexpr EngineAnswer kind = EngineAnswer::isFailed;

    EngineFault fault = EngineFault::isDamaged;

    static constexpr void describe(auto& fields, auto& message)
    {
        fields.choice(message.fault, EngineFault::isOutOfMemory);
    }
};

/// How far the writing of a file is.
struct ProgressAnswer
{
    static constexpr EngineAnswer kind = EngineAnswer::isProgress;

    int done = 0;
    int total = 0; ///< 0 while it is unknown

    static constexpr void describe(auto& fields, auto& message)
    {
        fields.number(message.done, 0, std::numeric_limits<int>::max());
        fields.number(message.total, 0, std::numeric_limits<int>::max());
    }
};

} // namespace tarnwick
