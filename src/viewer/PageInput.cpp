#include "viewer/PageInput.h"

#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <charconv>

namespace {

std::u16string_view trimmed(std::u16string_view text)
{
    while (!text.empty() && u_isUWhiteSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && u_isUWhiteSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

icu::UnicodeString caseFolded(std::u16string_view text)
{
    return icu::UnicodeString(text.data(), static_cast<std::int32_t>(text.size())).foldCase();
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

std::optional<int> pageForInput(
    std::u16string_view input, int pageCount, const std::function<std::u16string(int)>& label)
{
    const std::u16string_view wanted = trimmed(input);
    if (wanted.empty())
        return std::nullopt;
    const icu::UnicodeString folded = caseFolded(wanted);
    for (int page = 0; page < pageCount; ++page) {
        if (caseFolded(trimmed(label(page))) == folded)
            return page;
    }
    const std::optional<int> number = wholeNumber(wanted);
    if (!number || *number < 1 || *number > pageCount)
        return std::nullopt;
    return *number - 1;
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
