#include "text/LineIndex.h"

#include <algorithm>
#include <iterator>

namespace tarnwick {

LineIndex::Start LineIndex::before(std::size_t line) const
{
    const auto after = std::upper_bound(theStarts.begin(), theStarts.end(), line,
        [](std::size_t wanted, const Start& start) { return wanted < start.line; });
    return *std::prev(after);
}

std::optional<std::size_t> LineIndex::kept(std::size_t line) const
{
    if (line >= lineCount())
        return std::nullopt;
    const Start start = before(line);
    return start.line == line ? std::optional(start.offset) : std::nullopt;
}

} // namespace tarnwick
