#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

/// The value of a text that is a decimal integer as a whole: an optional "+" or "-" and one or more
/// ASCII digits, within the signed 64-bit range.
/// @returns nothing for any other text, white space at its ends included.
std::optional<std::int64_t> decimalInteger(std::string_view text);

/// Number of characters of a number in decimal, the sign of a negative one included.
std::size_t decimalLength(std::int64_t number);

/// Appends a number in decimal: "-" before a negative one, no leading zeros, no grouping.
void appendDecimal(std::int64_t number, std::string& text);

} // namespace tarnwick
