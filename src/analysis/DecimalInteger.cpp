#include "DecimalInteger.h"

#include <array>
#include <charconv>
#include <system_error>

namespace tarnwick {

std::optional<std::int64_t> decimalInteger(std::string_view text)
{
    // from_chars reads "-5" but refuses "+5"; a sign behind the plus must not slip through.
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-'))
            return std::nullopt;
    }
    // Most texts that are asked about are words.
    if (text.empty() || text.front() > '9')
        return std::nullopt;
    std::int64_t value = 0;
    constexpr std::size_t digitsThatFit = 18;
    if (text.size() <= digitsThatFit) {
        // Nearly every number; what is none goes the long way below.
        std::size_t index = 0;
        for (; index < text.size() && text[index] >= '0' && text[index] <= '9'; ++index)
            value = value * 10 + (text[index] - '0');
        if (index == text.size())
            return value;
        value = 0;
    }
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end)
        return std::nullopt;
    return value;
}

namespace {

/// A number's characters: at most 19 digits and a sign.
struct Digits
{
    explicit Digits(std::int64_t number)
    {
        const char* end
            = std::to_chars(characters.data(), characters.data() + characters.size(), number).ptr;
        length = static_cast<std::size_t>(end - characters.data());
    }
    std::array<char, 24> characters;
    std::size_t length;
};

} // namespace

std::size_t decimalLength(std::int64_t number)
{
    return Digits(number).length;
}

void appendDecimal(std::int64_t number, std::string& text)
{
    const Digits digits(number);
    text.append(digits.characters.data(), digits.length);
}

} // namespace tarnwick
