#pragma once

#include <cstdint>

namespace tarnwick {

/// How the program and its PDF engine talk: frames over the engine's standard input and output.
///
/// A frame is a head (EngineFrame) and the payload of one message, in the machine's own byte order:
/// both ends are of the same build. The program asks, one request at a time; the engine answers
/// with any number of isProgress frames, where the request writes a file, and one other. What the
/// messages say, and how much of it, stands once for both ends (EngineMessages.h).

/// What the program asks for.
enum class EngineRequest : std::uint8_t
{
    isOpen = 1, ///< answered by isOpened, isLocked or isRefused
    isUnlock, ///< answered likewise
    isMeasure,
    isDigest,
    isTile,
    isText,
    isLinks,
    isOutline,
    isFlat,
    isPrint,
    isObject,
    isStream,
    isSign,
    isCrossReference, ///< of a document that need not be open
    isCheck,
    isFacts,
    isPicture,
    isTable,
};

/// What the engine answers.
enum class EngineAnswer : std::uint8_t
{
    isOpened = 1,
    isLocked,
    isRefused,
    isDone, ///< its message is the request's result
    isFailed,
    isProgress,
};

/// The head of a frame: 12 bytes.
struct EngineFrame
{
    std::uint32_t size = 0; ///< bytes of payload that follow
    std::uint32_t request = 0; ///< the number that the program gave the request
    std::uint8_t kind = 0; ///< EngineRequest or EngineAnswer
    std::uint8_t reserved[3] = {};
};
static_assert(sizeof(EngineFrame) == 12);

} // namespace tarnwick
