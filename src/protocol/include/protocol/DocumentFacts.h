#pragma once

#include <optional>

namespace tarnwick {

/// What the engine knows of a document that it has opened, as the program believes it.
struct DocumentFacts
{
    int majorVersion = 0; ///< PDF version as the library reports it; 0.0 when it reports none
    int minorVersion = 0;
    int pageCount = 0;
    std::optional<int> infoEntryCount; ///< entries of the Info dictionary; absent without one
    std::optional<int> catalogEntryCount; ///< entries of the Catalog; absent without one
};

} // namespace tarnwick
