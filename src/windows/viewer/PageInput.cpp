#include "PageInput.h"

#include <unicode/uchar.h>
#include <unicode/ustring.h>

#include <charconv>

namespace tarnwick {

namespace {

std::u16string_view trimmed(std::u16string_view text)
{
    while (!text.empty() && u_isUWhiteSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && u_isUWhiteSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

char16_t lowerAscii(char16_t unit)
{
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
}

/// Letters of ASCII are folded to themselves: two that differ settle it.
bool differ(char16_t one, char16_t other)
{
    return one < 0x80 && other < 0x80 && lowerAscii(one) != lowerAscii(other);
}

/// Millions of labels may have to be looked at for one input.
bool areEqual(std::u16string_view label, std::u16string_view wanted)
{
    label = trimmed(label);
    if (label.empty() || differ(label.front(), wanted.front())
        || differ(label.back(), wanted.back()))
        return false;
    UErrorCode status = U_ZERO_ERROR;
    const int order = u_strCaseCompare(label.data(), static_cast<std::int32_t>(label.size()),
        wanted.data(), static_cast<std::int32_t>(wanted.size()), U_FOLD_CASE_DEFAULT, &status);
    return U_SUCCESS(status) && order == 0;
}

/// Decimal digits of any script; nothing for other texts and for numbers beyond int.
std::optional<int> wholeNumber(std::u16string_view text)
{
    std::string digits;
    for (const char16_t unit : text) {
        const std::int32_t digit = u_charDigitValue(unit);
        if (digit < 0)
            return std::nullopt;
        digits += static_cast<char>('0' + digit);
    }
    int value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (digits.empty() || error != std::errc())
        return std::nullopt;
    return value;
}

} // namespace

namespace {

std::u16string decimal(int number)
{
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}

} // namespace

std::optional<int> pageForInput(std::u16string_view input, int pageCount,
    const std::function<std::optional<std::u16string_view>(int)>& ownLabel)
{
    const std::u16string_view wanted = trimmed(input);
    if (wanted.empty())
        return std::nullopt;
    const std::optional<int> number = wholeNumber(wanted);
    const bool isPage = number && *number >= 1 && *number <= pageCount;
    // The label of a page without one of its own, to which "05" is no page 5.
    const bool isLabel = isPage && areEqual(decimal(*number), wanted);
    for (int page = 0; page < pageCount; ++page) {
        const std::optional<std::u16string_view> label = ownLabel(page);
        if (label ? areEqual(*label, wanted) : isLabel && page == *number - 1)
            return page;
    }
    return isPage ? std::optional<int>(*number - 1) : std::nullopt;
}

std::optional<double> scaleForInput(std::u16string_view input)
{
    std::u16string_view number = trimmed(input);
    if (number.ends_with(u'%'))
        number = trimmed(number.substr(0, number.size() - 1));
    const std::optional<int> percent = wholeNumber(number);
    if (!percent || *percent < 1 || *percent > 10'000)
        return std::nullopt;
    return *percent / 100.;
}

} // namespace tarnwick
