#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <stop_token>
#include <vector>

namespace tarnwick {

/// A stretch that two sequences do not share: what stands there before, and what after.
struct SequenceChange
{
    std::size_t before = 0; ///< index of its first item
    std::size_t removed = 0; ///< items
    std::size_t after = 0;
    std::size_t added = 0;

    bool operator==(const SequenceChange&) const = default;
};

struct SequenceDiff
{
    /// In order; between two of them at least one item is shared.
    std::vector<SequenceChange> changes;
    /// The sequences have less in common than can be said: what lies between their common beginning
    /// and their common end is one change.
    bool isRewritten = false;
};

/// Edits (items removed, items added) beyond which nothing is gained by telling them apart. What is
/// tried grows with their square: 4,000 take some 16 ms.
constexpr std::size_t usualEdits = 4000;

/// What has to be removed from one sequence and added to it to make another, in as few edits as
/// possible (the greedy algorithm of E. W. Myers, from both ends, in linear memory).
/// @param mostEdits beyond which the sequences count as rewritten.
/// @param stop gives it up; the result is then rewritten.
SequenceDiff compareSequences(std::span<const std::uint32_t> before,
    std::span<const std::uint32_t> after, std::size_t mostEdits = usualEdits,
    const std::stop_token& stop = {});

} // namespace tarnwick
