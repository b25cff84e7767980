#include "analysis/StrayBytes.h"

#include <algorithm>

namespace tarnwick {

namespace {

constexpr std::string_view headerWord = "%PDF-";
constexpr std::string_view endWord = "%%EOF";
/// Bytes between two looks at the stop token: some milliseconds.
constexpr std::size_t stretch = std::size_t{4} << 20;

std::optional<std::size_t> firstHeader(std::string_view bytes, const std::stop_token& stop)
{
    for (std::size_t at = 0; at < bytes.size() && !stop.stop_requested(); at += stretch) {
        const std::size_t found
            = bytes.substr(at, stretch + headerWord.size() - 1).find(headerWord);
        if (found != std::string_view::npos)
            return at + found;
    }
    return std::nullopt;
}

std::optional<std::size_t> lastEnd(std::string_view bytes, const std::stop_token& stop)
{
    // Searched forwards within a stretch: the standard library is many times faster at that.
    for (std::size_t end = bytes.size(); end > 0 && !stop.stop_requested();) {
        const std::size_t begin = end - std::min(end, stretch);
        const std::string_view part = bytes.substr(begin, end - begin + endWord.size() - 1);
        std::size_t last = std::string_view::npos;
        for (std::size_t at = part.find(endWord); at != std::string_view::npos;
             at = part.find(endWord, at + endWord.size()))
            last = at;
        if (last != std::string_view::npos)
            return begin + last;
        end = begin;
    }
    return std::nullopt;
}

/// Where the rest of a marker's line ends: it may have blanks and one line end.
std::size_t lineEnd(std::string_view bytes, std::size_t offset)
{
    while (offset < bytes.size() && (bytes[offset] == ' ' || bytes[offset] == '\t'))
        ++offset;
    if (bytes.substr(offset, 2) == "\r\n")
        return offset + 2;
    const bool isEnd = offset < bytes.size() && (bytes[offset] == '\r' || bytes[offset] == '\n');
    return offset + (isEnd ? 1 : 0);
}

} // namespace

StrayBytes findStrayBytes(std::string_view bytes, const std::stop_token& stop)
{
    StrayBytes stray;
    stray.header = firstHeader(bytes, stop);
    if (const std::optional<std::size_t> marker = lastEnd(bytes, stop))
        stray.end = lineEnd(bytes, *marker + endWord.size());
    return stray;
}

} // namespace tarnwick
