#pragma once

#include "BytePattern.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tarnwick {

/// Where a pattern stands in bytes, as far as they have been searched.
///
/// Matches do not overlap: from the bytes' beginning on, the search goes on behind each. They are
/// counted for blocks, not listed, since a byte can be found a billion times in a gigabyte; a
/// single match is found again by searching its block, some milliseconds at most.
class ByteMatches
{
public:
    /// Searching a block again is quick enough for an event.
    static constexpr std::size_t blockSize = std::size_t{1} << 20;

    struct Block
    {
        std::size_t end
            = 0; ///< where the search goes on: behind the last match where that is later
        std::uint64_t count = 0;
    };
    /// Searches the block that begins at an offset. Any thread may.
    static Block search(std::string_view bytes, const BytePattern& pattern, std::size_t begin);

    ByteMatches() = default;
    /// Nothing searched yet. @param bytes borrowed.
    ByteMatches(std::string_view bytes, BytePattern pattern);

    const BytePattern& pattern() const { return thePattern; }

    /// The next block, in order.
    void add(Block block);
    bool isComplete() const { return searchedTo() >= theBytes.size(); }
    /// How much has been searched.
    std::size_t searchedTo() const { return theBlocks.empty() ? 0 : theBlocks.back().end; }
    /// Matches that begin before searchedTo().
    std::uint64_t count() const { return theCount; }

    struct Answer
    {
        enum class Kind
        {
            isFound,
            isNone,
            isUnknown, ///< not searched as far yet; ask again
        };
        Kind kind = Kind::isUnknown;
        std::size_t offset = 0; ///< of a match found
        bool isWrapped = false; ///< found by going on from the bytes' other end
    };
    /// The first match that begins at an offset or behind it, else the first of all.
    Answer next(std::size_t from) const;
    /// The last match that begins before an offset, else the last of all.
    Answer previous(std::size_t before) const;
    /// Matches found so far that have bytes in a stretch, in order.
    std::vector<std::size_t> within(std::size_t begin, std::size_t end) const;
    /// Number of a match, from 1: how many begin before it, and one. Precondition: it is searched.
    std::uint64_t number(std::size_t offset) const;

private:
    struct Counted
    {
        std::size_t begin = 0;
        std::size_t end = 0;
        std::uint64_t count = 0;
        std::uint64_t before = 0; ///< matches in all blocks before
    };
    /// Calls take(offset) for the block's matches in order until it says false.
    template<class Take> void forEach(const Counted& block, Take take) const;
    std::size_t blockAt(std::size_t offset) const;
    std::size_t firstFrom(std::size_t from) const;
    std::size_t lastBefore(std::size_t before) const;

    std::string_view theBytes;
    BytePattern thePattern;
    std::vector<Counted> theBlocks;
    std::uint64_t theCount = 0;
};

} // namespace tarnwick
