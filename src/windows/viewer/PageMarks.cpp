#include "viewer/PageMarks.h"

#include <algorithm>

namespace tarnwick {

bool PageMarks::mark(int page)
{
    if (page < 0 || std::find(thePages.begin(), thePages.end(), page) != thePages.end())
        return false;
    thePages.insert(thePages.begin(), page);
    if (thePages.size() > limit)
        thePages.pop_back();
    return true;
}

std::optional<int> PageMarks::entry(int index) const
{
    if (index < 0 || static_cast<std::size_t>(index) >= thePages.size())
        return std::nullopt;
    return index;
}

std::optional<int> PageMarks::page(int index) const
{
    const std::optional<int> known = entry(index);
    return known ? std::optional(thePages[static_cast<std::size_t>(*known)]) : std::nullopt;
}

} // namespace tarnwick
