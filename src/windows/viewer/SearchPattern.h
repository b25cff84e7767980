#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

/// A text that is searched for, as a machine that reads another text unit by unit (Knuth, Morris,
/// Pratt). Its state is how many units of the pattern the units read last agree with.
class SearchPattern
{
public:
    explicit SearchPattern(std::u16string_view units);

    std::size_t size() const { return theUnits.size(); }
    bool isEmpty() const { return theUnits.empty(); }
    char16_t front() const { return theUnits.front(); }

    /// The state after one more unit; size() when a match ends with it.
    /// @param state less than size().
    std::size_t next(std::size_t state, char16_t unit) const
    {
        while (state > 0 && unit != theUnits[state])
            state = theFallbacks[state];
        return unit == theUnits[state] ? state + 1 : 0;
    }

    /// The longest state below that agrees as well: where to go on from a match that was refused.
    std::size_t fallback(std::size_t state) const { return theFallbacks[state]; }

private:
    std::u16string theUnits;
    std::vector<std::size_t> theFallbacks;
};

} // namespace tarnwick
