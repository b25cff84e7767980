#pragma once

#include "protocol/EngineLimits.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>

namespace tarnwick {

/// How the program and its PDF engine talk: frames over the engine's standard input and output.
///
/// A frame is a header (EngineFrame) and a payload of values one after another, in the machine's
/// own byte order: both ends are of the same build. The program asks, one request at a time; the
/// engine answers with any number of isProgress frames (isFlat and isPrint alone) and one other.
/// Both sides check every size, by the limits that they share, and the program every value as well:
/// a hostile file may have taken the engine over.

/// What the program asks for. The payload follows in brackets.
enum class EngineRequest : std::uint8_t
{
    isOpen = 1, ///< [] answered by isOpened, isLocked or isRefused
    isUnlock, ///< [text password, UTF-8] answered likewise
    isMeasure, ///< [int first, int count] sizes and labels of pages
    isTile, ///< [int page, double scale, int rotation, int x, y, width, height]
    isText, ///< [int page, byte detail: 0 plain, 1 quads, 2 attributes]
    isLinks, ///< [int page]
    isOutline, ///< []
    isFlat, ///< [] the bytes go to the shared memory that the engine was given for them; the result
            ///< tells their number and what is missing (EngineServer)
    isPrint, ///< [double paper width, height, left, top, unsigned count, for each sheet int page,
             ///< double x, y, width, height, scale] likewise
};

/// What the engine answers.
enum class EngineAnswer : std::uint8_t
{
    isOpened = 1, ///< [int pages, major, minor, info entries or -1, catalog entries or -1,
                  ///< float width, height of the first page]
    isLocked, ///< [byte a password was tried and is wrong]
    isRefused, ///< [text reason]
    isDone, ///< [the request's result]
    isFailed, ///< [byte EngineFault]
    isProgress, ///< [int done, int total]
};

enum class EngineFault : std::uint8_t
{
    isDamaged,
    isOutOfMemory,
};

/// What is missing from a page that the engine has read, drawn or written, as results tell it.
enum class EngineLoss : std::uint8_t
{
    isNone,
    isDamaged, ///< all of it
    isDamagedInPart,
    isCut, ///< what goes beyond a limit
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

/// The most bytes that the result of a request has.
constexpr std::uint32_t largestResult(EngineRequest kind)
{
    constexpr std::size_t rest = 64; // counts and what else stands at the head of an answer
    constexpr std::size_t target = sizeof(int) + 2 * sizeof(float) + sizeof(std::uint32_t);
    std::size_t size = 0;
    switch (kind) {
    case EngineRequest::isOpen:
    case EngineRequest::isUnlock:
        break; // these have no result, but facts
    case EngineRequest::isMeasure:
        size
            = maximumMeasuredPages * (2 * sizeof(float) + 1 + sizeof(std::uint32_t) + longestLabel);
        break;
    case EngineRequest::isTile:
        size = std::size_t{maximumTileSide} * maximumTileSide * 4;
        break;
    case EngineRequest::isText: // quads take more than attributes do
        size = maximumPageCharacters * (sizeof(char32_t) + 8 * sizeof(float));
        break;
    case EngineRequest::isLinks:
        size = maximumLinks * (4 * sizeof(float) + target) + maximumTargetTexts;
        break;
    case EngineRequest::isOutline:
        size = maximumOutlineEntries * (sizeof(int) + sizeof(std::uint32_t) + target)
            + maximumTargetTexts;
        break;
    case EngineRequest::isFlat:
    case EngineRequest::isPrint:
        size = maximumPageCount * std::size_t{8};
        break;
    }
    return static_cast<std::uint32_t>(size + rest);
}
static_assert(largestResult(EngineRequest::isText) < maximumAnswerSize);

/// The most bytes of payload that a frame of an answer has. @param result what isDone may have.
constexpr std::uint32_t largestPayload(EngineAnswer kind, std::uint32_t result)
{
    switch (kind) {
    case EngineAnswer::isOpened:
        return 5 * sizeof(int) + 2 * sizeof(float);
    case EngineAnswer::isRefused:
        return sizeof(std::uint32_t) + longestReason;
    case EngineAnswer::isDone:
        return result;
    case EngineAnswer::isLocked:
    case EngineAnswer::isFailed:
        return 1;
    case EngineAnswer::isProgress:
        return 2 * sizeof(int);
    }
    return 0;
}

/// Puts a payload together.
class PayloadWriter
{
public:
    template<typename Number> void put(Number number)
    {
        static_assert(std::is_arithmetic_v<Number>);
        theBytes.append(reinterpret_cast<const char*>(&number), sizeof number);
    }
    void putText(std::string_view text)
    {
        put(static_cast<std::uint32_t>(text.size()));
        theBytes.append(text);
    }
    /// Makes room for so many bytes more.
    void reserve(std::size_t size) { theBytes.reserve(theBytes.size() + size); }
    void putBytes(const void* bytes, std::size_t size)
    {
        theBytes.append(static_cast<const char*>(bytes), size);
    }
    const std::string& bytes() const { return theBytes; }

private:
    std::string theBytes;
};

/// Takes a payload apart. Reading past the end gives zeros and makes isGood() false for good.
class PayloadReader
{
public:
    explicit PayloadReader(std::string_view bytes)
        : theRest(bytes)
    {
    }
    template<typename Number> Number take()
    {
        static_assert(std::is_arithmetic_v<Number>);
        Number number = 0;
        const std::string_view bytes = takeBytes(sizeof number);
        if (!bytes.empty())
            std::memcpy(&number, bytes.data(), sizeof number);
        return number;
    }
    std::string_view takeText() { return takeBytes(take<std::uint32_t>()); }
    std::string_view takeBytes(std::size_t size)
    {
        if (size > theRest.size()) {
            theGood = false;
            theRest = {};
            return {};
        }
        const std::string_view bytes = theRest.substr(0, size);
        theRest.remove_prefix(size);
        return bytes;
    }
    /// Whether count items of size bytes each can still follow; without it, isGood() becomes false.
    /// To be asked before room is made for the items.
    bool holds(std::uint32_t count, std::size_t size)
    {
        if (count > theRest.size() / size)
            theGood = false;
        return theGood;
    }
    bool isGood() const { return theGood; }
    /// Everything was read, and nothing beyond.
    bool isDone() const { return theGood && theRest.empty(); }

private:
    std::string_view theRest;
    bool theGood = true;
};

} // namespace tarnwick
