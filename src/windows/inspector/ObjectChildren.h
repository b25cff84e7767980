#pragma once

#include "analysis/pdfObjectCatalog.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace tarnwick {

/// A reference in an object, as a tree of objects shows it.
struct ObjectChild
{
    std::string path; ///< where it stands: PlacedReference::path, of a long one the end, in ASCII
    std::int64_t objNo = 0; ///< that it names
    std::int64_t objGen = 0;
    std::optional<std::size_t> object; ///< place in the scan; nothing where there is none
    std::string kind; ///< of the object
    bool hasReferences = false; ///< whether the object may have some itself
};

/// The references in an object.
struct ObjectChildren
{
    static constexpr std::size_t mostShown = 10'000;
    /// So much of an object is read: more is hardly ever a dictionary.
    static constexpr std::size_t mostRead = 16 * 1024 * 1024;

    std::vector<ObjectChild> shown; ///< in their order
    std::size_t count = 0; ///< of all that was read
    bool isCut = false; ///< the object is longer than mostRead
};

/// Reads what an object refers to, as of a saved version. Takes time in proportion to the object.
/// @param object its place in the scan.
/// @returns nothing when it was stopped. Throws std::bad_alloc.
std::optional<ObjectChildren> objectChildren(const pdfObjectCatalog& catalog, std::size_t object,
    std::int64_t version, const std::stop_token& stop = {});

} // namespace tarnwick
