#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tarnwick {

/// Bytes that referenceLetters() looks at.
constexpr std::size_t letterBlock = 64;

/// A bit for each byte from an offset on that is an "R" behind white space, where every reference
/// ends; what is no white space but below the space may count as such.
/// Precondition: 0 < offset < text.size().
std::uint64_t referenceLetters(std::string_view text, std::size_t offset);

} // namespace tarnwick
