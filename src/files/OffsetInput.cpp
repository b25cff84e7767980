#include "files/OffsetInput.h"

#include <algorithm>
#include <charconv>
#include <string>

namespace tarnwick {

namespace {

using Problem = OffsetInput::Problem;

bool isBlank(char16_t unit)
{
    return unit == u' ' || (unit >= u'\t' && unit <= u'\r') || unit == u'\u00A0'
        || unit == u'\u202F';
}

std::u16string_view withoutBlanks(std::u16string_view text)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

bool isDigit(char16_t unit)
{
    return unit >= u'0' && unit <= u'9';
}

bool isHexDigit(char16_t unit)
{
    return isDigit(unit) || (unit >= u'A' && unit <= u'F') || (unit >= u'a' && unit <= u'f');
}

/// Signs that languages put between groups of three digits.
bool isGroupSign(char16_t unit)
{
    return unit == u',' || unit == u'.' || unit == u'\'' || unit == u'\u2019' || isBlank(unit);
}

/// The digits alone; empty where anything else is among them, or groups are not of three.
std::string decimalDigits(std::u16string_view text)
{
    std::string digits;
    std::optional<std::size_t> group; // digits since a sign
    for (const char16_t unit : text) {
        if (isDigit(unit)) {
            digits += static_cast<char>(unit);
            if (group)
                ++*group;
        } else if (isGroupSign(unit) && !digits.empty() && group.value_or(3) == 3) {
            group = 0;
        } else {
            return {};
        }
    }
    return group.value_or(3) == 3 ? digits : std::string();
}

std::string hexDigits(std::u16string_view text)
{
    const bool isHex = std::all_of(text.begin(), text.end(), isHexDigit);
    return isHex ? std::string(text.begin(), text.end()) : std::string();
}

} // namespace

OffsetInput readOffset(std::u16string_view text, std::uint64_t size)
{
    std::u16string_view rest = withoutBlanks(text);
    if (!rest.empty() && rest.front() == u'@')
        rest = withoutBlanks(rest.substr(1));
    if (rest.empty())
        return {std::nullopt, Problem::isEmpty};
    const bool isHex = rest.size() >= 2 && rest[0] == u'0' && (rest[1] == u'x' || rest[1] == u'X');
    const std::string digits
        = isHex ? hexDigits(withoutBlanks(rest.substr(2))) : decimalDigits(rest);
    if (digits.empty()) {
        const bool wouldBeHex = !isHex && !hexDigits(rest).empty();
        return {std::nullopt, wouldBeHex ? Problem::isHexWithoutSign : Problem::isNoNumber};
    }
    std::uint64_t offset = 0;
    const auto read
        = std::from_chars(digits.data(), digits.data() + digits.size(), offset, isHex ? 16 : 10);
    if (read.ec != std::errc() || offset > size)
        return {std::nullopt, Problem::isBehindEnd};
    return {offset, Problem::isNone};
}

} // namespace tarnwick
