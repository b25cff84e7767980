#include "SearchPattern.h"

namespace tarnwick {

/// For each beginning of the pattern, the fallback is the length of the longest shorter beginning
/// that also ends it.
SearchPattern::SearchPattern(std::u16string_view units)
    : theUnits(units)
    , theFallbacks(units.size() + 1, 0)
{
    std::size_t matched = 0;
    for (std::size_t i = 1; i < theUnits.size(); ++i) {
        while (matched > 0 && theUnits[i] != theUnits[matched])
            matched = theFallbacks[matched];
        if (theUnits[i] == theUnits[matched])
            ++matched;
        theFallbacks[i + 1] = matched;
    }
}

} // namespace tarnwick
