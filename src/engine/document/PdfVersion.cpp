#include "PdfVersion.h"

#include <algorithm>
#include <cstddef>

namespace tarnwick {

namespace {

constexpr std::size_t longestNumber = 2;

/// Takes the digits that text begins with. @returns nothing for none, or for too many.
std::optional<int> takeNumber(std::string_view& text)
{
    const std::size_t end = std::min(text.find_first_not_of("0123456789"), text.size());
    if (end == 0 || end > longestNumber)
        return std::nullopt;
    int number = 0;
    for (const char digit : text.substr(0, end))
        number = number * 10 + (digit - '0');
    text.remove_prefix(end);
    return number;
}

std::optional<PdfVersion> takeVersion(std::string_view& text)
{
    const std::optional<int> major = takeNumber(text);
    if (!major || !text.starts_with('.'))
        return std::nullopt;
    text.remove_prefix(1);
    const std::optional<int> minor = takeNumber(text);
    return minor ? std::optional<PdfVersion>({*major, *minor}) : std::nullopt;
}

} // namespace

std::optional<PdfVersion> parsePdfVersion(std::string_view text)
{
    const std::optional<PdfVersion> version = takeVersion(text);
    return text.empty() ? version : std::nullopt;
}

std::optional<PdfVersion> headerVersion(std::string_view file)
{
    constexpr std::string_view marker = "%PDF-";
    constexpr std::size_t farthest = 1024;
    const std::size_t place = file.substr(0, farthest).find(marker);
    if (place == std::string_view::npos)
        return std::nullopt;
    file.remove_prefix(place + marker.size());
    return takeVersion(file);
}

} // namespace tarnwick
