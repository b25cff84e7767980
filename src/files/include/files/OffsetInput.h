#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tarnwick {

/// What somebody types to go to a byte, wherever that is: "2317", "0x90D", either with an "@" before
/// it, white space around it and behind the signs, and decimal digits in groups of three as they are
/// shown ("2,317").
struct OffsetInput
{
    enum class Problem
    {
        isNone,
        isEmpty,
        isNoNumber,
        isHexWithoutSign, ///< would be a hexadecimal number with "0x" before it
        isBehindEnd,
    };

    /// Nothing where there is a problem.
    std::optional<std::uint64_t> offset;
    Problem problem = Problem::isEmpty;
};

/// @param size number of bytes; to be behind the last one is possible, farther is not.
OffsetInput readOffset(std::u16string_view text, std::uint64_t size);

} // namespace tarnwick
