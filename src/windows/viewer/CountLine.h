#pragma once

#include <cstddef>
#include <cstdint>
#include <stop_token>
#include <string>
#include <string_view>

namespace tarnwick {

/// What the count line tells of a text.
struct TextCounts
{
    std::int64_t words = 0;
    std::int64_t characters = 0;

    bool operator==(const TextCounts&) const = default;
};

/// Counts words and user-perceived characters, for texts of any size; any thread.
///
/// A word is a segment between two Unicode word boundaries (UAX #29, with ICU's dictionaries for
/// scripts that put no spaces between words) that holds a letter, digit, kana or ideograph. A
/// character is an extended grapheme cluster: CR LF is one, and so is an emoji of several code
/// points. Lone surrogates are characters of their own.
/// @param text UTF-16.
/// @param locale whose word rules apply ("th", "de_AT"); empty for the user's.
/// @param stop ends the counting early: the counts are then those of the text's beginning.
TextCounts countText(
    std::u16string_view text, const std::string& locale = {}, std::stop_token stop = {});

/// The count line: "12  words  345  chars". A negative count of words counts as 0.
std::string countLine(std::int64_t words, std::int64_t characters);

} // namespace tarnwick
