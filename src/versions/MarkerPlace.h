#pragma once

#include "versions/CrossReference.h"
#include "versions/SavedVersion.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace tarnwick {

/// Tells whether markers stand within the objects of a version.
class MarkerPlace
{
public:
    /// @param bytes borrowed. @param rows of the version's objects (VersionChain::rowsOf()).
    MarkerPlace(std::string_view bytes, std::vector<CrossReferenceRow> rows);

    /// @param marker its offset; ask in ascending order.
    /// @returns isInStream or isInObject; nothing for one between objects.
    std::optional<VersionFlag> flagOf(std::size_t marker);

private:
    std::optional<std::int64_t> numberOf(std::uint64_t object) const;
    void look(std::size_t begin, std::size_t marker);

    std::string_view theBytes;
    std::vector<CrossReferenceRow> theRows; ///< of plain objects, by place
    std::size_t theObjectEnd = 0; ///< of the object last looked into
    std::size_t theStreamBegin = 0; ///< of its stream's data
    std::size_t theStreamEnd = 0;
    std::optional<std::size_t> theObject; ///< where it begins
};

} // namespace tarnwick
