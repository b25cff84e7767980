#pragma once

#include "ObjectTable.h"

#include <functional>
#include <vector>

namespace tarnwick {

/// The cross-references from one startxref back to the first save.
struct ChainWalk
{
    using Find = std::function<const CrossReferenceSection*(std::uint64_t said)>;

    std::vector<ObjectTable::Layer> layers; ///< the latest first; none when there is no first
    bool isWhole = false; ///< all that Prev and XRefStm name were found before the end
    bool isLoop = false; ///< Prev leads to where it was before

    /// @param find a section by what is said of its place; null where there is none.
    /// @param end of the version: what lies behind is not there.
    static ChainWalk from(std::uint64_t startxref, const Find& find, std::size_t end);
};

} // namespace tarnwick
