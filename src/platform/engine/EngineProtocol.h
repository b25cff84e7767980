#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>

/// How the program and its PDF engine talk: frames over the engine's standard input and output.
///
/// A frame is a header (EngineFrame) and a payload of values one after another, in the machine's
/// own byte order: both ends are of the same build. The program asks, one request at a time; the
/// engine answers with any number of isProgress frames and one other. Both sides check every size,
/// and the program every value as well: a hostile file may have taken the engine over.

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
    isFlat, ///< [] the bytes go to the shared memory that the engine was given for them
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

/// The head of a frame: 12 bytes.
struct EngineFrame
{
    std::uint32_t size = 0; ///< bytes of payload that follow
    std::uint32_t request = 0; ///< the number that the program gave the request
    std::uint8_t kind = 0; ///< EngineRequest or EngineAnswer
    std::uint8_t reserved[3] = {};
};
static_assert(sizeof(EngineFrame) == 12);

constexpr std::uint32_t maximumRequestSize = 64u << 20; ///< a million sheets to print
constexpr std::uint32_t maximumAnswerSize = 160u << 20;
constexpr int maximumTileSide = 4096;
constexpr int maximumPageCount = 4'000'000;
/// Bytes of a sheet in isPrint.
constexpr std::size_t printSheetSize = sizeof(int) + 5 * sizeof(double);
/// Characters of one page's text; what follows is left out. The longest real pages have some
/// 50,000.
constexpr std::uint32_t maximumPageCharacters = 3'000'000;

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
