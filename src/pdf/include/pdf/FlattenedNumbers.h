#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace tarnwick {

/// Which object of a flattened document was which in the document's own file: flattening numbers
/// objects anew, in the order in which they are met.
class FlattenedNumbers
{
public:
    FlattenedNumbers() = default;
    /// @param origins of each object of the flattened document, from 1 on, its number in the file;
    ///   0 for what had none.
    explicit FlattenedNumbers(std::vector<std::uint32_t> origins)
        : theOrigins(std::move(origins))
    {
    }

    /// The number that an object of the file has in the flattened document, of several the first;
    /// nothing for one that is left out. Looks through all of them: a few milliseconds for
    /// millions.
    std::optional<std::int64_t> flattened(std::int64_t stored) const
    {
        const auto found = std::find_if(theOrigins.begin(), theOrigins.end(),
            [stored](std::uint32_t origin) { return origin > 0 && origin == stored; });
        if (found == theOrigins.end())
            return std::nullopt;
        return found - theOrigins.begin() + 1;
    }
    /// The number in the file of an object of the flattened document; nothing where it had none.
    std::optional<std::int64_t> stored(std::int64_t flattened) const
    {
        const auto place = static_cast<std::uint64_t>(flattened) - 1;
        if (flattened < 1 || place >= theOrigins.size() || theOrigins[place] == 0)
            return std::nullopt;
        return theOrigins[place];
    }

private:
    std::vector<std::uint32_t> theOrigins;
};

} // namespace tarnwick
