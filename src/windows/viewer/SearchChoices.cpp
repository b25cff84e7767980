#include "SearchChoices.h"

#include <algorithm>

namespace tarnwick {

namespace {

bool isHighSurrogate(char16_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

std::u16string cutToMenu(const std::u16string& text)
{
    if (text.size() <= RecentSearches::longestText)
        return text;
    const std::size_t length = RecentSearches::longestText
        - (isHighSurrogate(text[RecentSearches::longestText - 1]) ? 1 : 0);
    return text.substr(0, length);
}

} // namespace

SearchOptions searchOptions(bool isCaseSensitiveOn, bool isLiteralOn)
{
    if (isLiteralOn)
        return SearchOptions::isLiteral;
    return isCaseSensitiveOn ? SearchOptions::isRespectingCase : SearchOptions::isIgnoringCase;
}

std::optional<std::int64_t> ringIndex(std::int64_t value, std::int64_t count)
{
    if (count <= 0)
        return std::nullopt;
    if (value < 0)
        return count - 1;
    return value > count - 1 ? 0 : value;
}

bool RecentSearches::add(const std::u16string& text)
{
    const std::u16string shown = cutToMenu(text);
    if (shown.empty() || (!theTexts.empty() && theTexts.front() == shown))
        return false;
    std::erase(theTexts, shown);
    theTexts.insert(theTexts.begin(), shown);
    if (theTexts.size() > limit)
        theTexts.pop_back();
    return true;
}

void RecentSearches::restore(const std::vector<std::u16string>& texts)
{
    clear();
    for (auto text = texts.rbegin(); text != texts.rend(); ++text)
        add(*text);
}

} // namespace tarnwick
