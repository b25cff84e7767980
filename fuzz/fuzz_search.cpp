// Searching and counting in any text, and what users type for a page or a magnification. The input:
// a byte for the comparison, a byte for the pattern's length, and UTF-16.

#include "FuzzTarget.h"

#include "CountLine.h"
#include "PageInput.h"
#include "TextSearch.h"

#include <algorithm>

using namespace tarnwick;

namespace {

void checkMatches(const std::vector<TextMatch>& matches, std::size_t length)
{
    std::size_t free = 0;
    for (const TextMatch& match : matches) {
        require(match.length > 0 && match.start >= free, "matches that overlap");
        require(match.start <= length && match.length <= length - match.start, "beyond the text");
        free = match.start + match.length;
    }
}

/// Letters and digits of the basic plane, which no rule but equality touches.
bool isPlain(char16_t unit)
{
    return (unit >= u'a' && unit <= u'z') || (unit >= u'0' && unit <= u'9');
}

void checkInput(std::u16string_view typed, std::u16string_view label)
{
    constexpr int pages = 3;
    const auto page
        = pageForInput(typed, pages, [&](int index) -> std::optional<std::u16string_view> {
              return index == 0 ? std::nullopt : std::optional(label);
          });
    require(!page || (*page >= 0 && *page < pages), "a page outside the document");
    const auto scale = scaleForInput(typed);
    require(!scale || (*scale >= 0.01 && *scale <= 100), "a magnification");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2)
        return 0;
    std::u16string text;
    for (std::size_t at = 2; at + 1 < size; at += 2)
        text += static_cast<char16_t>(data[at] | data[at + 1] << 8);
    const auto options = static_cast<SearchOptions>(data[0] % 3);
    const std::u16string pattern = text.substr(0, data[1]);
    const std::u16string page = text.substr(pattern.size());

    const std::vector<TextMatch> matches = TextSearch(pattern, options).matches(page);
    checkMatches(matches, page.size());
    if (std::all_of(text.begin(), text.end(), isPlain) && !pattern.empty())
        require(matches.empty() == (page.find(pattern) == page.npos), "a plain text not found");

    const TextCounts counts = countText(page, "en");
    const auto units = static_cast<std::int64_t>(page.size());
    require(counts.words >= 0 && counts.words <= units, "more words than units");
    require(counts.characters >= 0 && counts.characters <= units, "more characters than units");
    checkInput(pattern, page);
    return 0;
}
