#include "ByteMatches.h"

#include <algorithm>
#include <utility>

namespace tarnwick {

namespace {

constexpr std::size_t npos = BytePattern::npos;

/// What a match may lie in that begins before an offset.
std::string_view reachOf(
    std::string_view bytes, const BytePattern& pattern, std::size_t beginsBefore)
{
    return bytes.substr(0, std::min(bytes.size(), beginsBefore + pattern.size() - 1));
}

} // namespace

ByteMatches::Block ByteMatches::search(
    std::string_view bytes, const BytePattern& pattern, std::size_t begin)
{
    Block block{std::min(bytes.size(), begin + blockSize), 0};
    if (pattern.isEmpty())
        return block;
    const std::string_view within = reachOf(bytes, pattern, block.end);
    for (std::size_t at = pattern.findIn(within, begin); at != npos;
         at = pattern.findIn(within, at + pattern.size())) {
        ++block.count;
        block.end = std::max(block.end, at + pattern.size());
    }
    return block;
}

ByteMatches::ByteMatches(std::string_view bytes, BytePattern pattern)
    : theBytes(bytes)
    , thePattern(std::move(pattern))
{
}

void ByteMatches::add(Block block)
{
    theBlocks.push_back({searchedTo(), block.end, block.count, theCount});
    theCount += block.count;
}

template<class Take> void ByteMatches::forEach(const Counted& block, Take take) const
{
    const std::string_view within = reachOf(theBytes, thePattern, block.end);
    std::size_t at = block.begin;
    for (std::uint64_t left = block.count; left > 0; --left) {
        at = thePattern.findIn(within, at);
        if (at == npos || !take(at))
            return;
        at += thePattern.size();
    }
}

/// The block that an offset lies in, or the number of blocks.
std::size_t ByteMatches::blockAt(std::size_t offset) const
{
    const auto found = std::upper_bound(theBlocks.begin(), theBlocks.end(), offset,
        [](std::size_t wanted, const Counted& block) { return wanted < block.end; });
    return static_cast<std::size_t>(found - theBlocks.begin());
}

/// Of what has been searched, or npos.
std::size_t ByteMatches::firstFrom(std::size_t from) const
{
    std::size_t first = npos;
    for (std::size_t block = blockAt(from); first == npos && block < theBlocks.size(); ++block) {
        forEach(theBlocks[block], [&](std::size_t at) {
            first = at >= from ? at : npos;
            return at < from;
        });
    }
    return first;
}

std::size_t ByteMatches::lastBefore(std::size_t before) const
{
    std::size_t last = npos;
    std::size_t block = std::min(blockAt(before) + 1, theBlocks.size());
    while (last == npos && block > 0) {
        forEach(theBlocks[--block], [&](std::size_t at) {
            last = at < before ? at : last;
            return at < before;
        });
    }
    return last;
}

ByteMatches::Answer ByteMatches::next(std::size_t from) const
{
    if (const std::size_t first = firstFrom(from); first != npos)
        return {Answer::Kind::isFound, first, false};
    if (!isComplete())
        return {};
    if (const std::size_t first = firstFrom(0); first != npos)
        return {Answer::Kind::isFound, first, true};
    return {Answer::Kind::isNone};
}

ByteMatches::Answer ByteMatches::previous(std::size_t before) const
{
    if (!isComplete() && searchedTo() < before)
        return {};
    if (const std::size_t last = lastBefore(before); last != npos)
        return {Answer::Kind::isFound, last, false};
    if (!isComplete())
        return {};
    if (const std::size_t last = lastBefore(theBytes.size()); last != npos)
        return {Answer::Kind::isFound, last, true};
    return {Answer::Kind::isNone};
}

std::vector<std::size_t> ByteMatches::within(std::size_t begin, std::size_t end) const
{
    std::vector<std::size_t> found;
    if (thePattern.isEmpty())
        return found;
    const std::size_t from = begin - std::min(begin, thePattern.size() - 1);
    bool goesOn = true;
    for (std::size_t block = blockAt(from); goesOn && block < theBlocks.size(); ++block) {
        goesOn = theBlocks[block].begin < end;
        forEach(theBlocks[block], [&](std::size_t at) {
            if (at >= from && at < end)
                found.push_back(at);
            return at < end;
        });
    }
    return found;
}

std::uint64_t ByteMatches::number(std::size_t offset) const
{
    const std::size_t index = blockAt(offset);
    if (index == theBlocks.size())
        return theCount;
    std::uint64_t number = theBlocks[index].before + 1;
    forEach(theBlocks[index], [&](std::size_t at) {
        number += at < offset ? 1 : 0;
        return at < offset;
    });
    return number;
}

} // namespace tarnwick
