#pragma once

#include "ObjectFilter.h"
#include "ObjectKinds.h"
#include "ObjectStates.h"
#include "analysis/SourceText.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <stop_token>
#include <vector>

namespace tarnwick {

/// What is known of the objects of a scanned source. Copies share it; any thread may read.
struct ObjectFacts
{
    std::shared_ptr<const SourceText> source; ///< keeps the catalog alive
    std::shared_ptr<const ObjectStates> states;
    std::shared_ptr<const ObjectKinds> kinds; ///< null until somebody needs them all

    const pdfObjectCatalog& catalog() const { return source->theCatalog(); }
    /// What becomes of an object, and its columns as numbers: of a kind its place among the kinds,
    /// of a state current ones first, duplicates, then those replaced by the version that did.
    /// Preconditions: source and states are there; for a kind, kinds.
    /// @param index in the order of the scan.
    /// @{
    ObjectStanding standing(std::size_t index) const;
    std::int64_t value(std::size_t index, ObjectColumn column) const;
    /// @}
};

struct ObjectOrder
{
    ObjectColumn column = ObjectColumn::isOffset;
    bool isDescending = false;

    bool operator==(const ObjectOrder&) const = default;
};

/// Rows of the table of objects.
struct ObjectRows
{
    /// A view of more would hold up the event loop.
    static constexpr std::size_t mostShown = 500'000;

    std::vector<std::uint32_t> shown; ///< objects in the order of the scan, at most mostShown
    std::size_t matching = 0; ///< how many match the filter
    std::size_t total = 0; ///< how many there are
};

/// Chooses and sorts rows. Objects with the same value come in the order of the file. Takes little
/// memory, and time in proportion to the number of objects.
/// Precondition: facts has what the filter and the order ask for.
/// @param progress gets how many objects have been looked at; may be empty.
/// @returns what has been found when it was stopped. Throws std::bad_alloc.
ObjectRows makeObjectRows(const ObjectFacts& facts, const ObjectFilter& filter, ObjectOrder order,
    const std::function<void(std::size_t)>& progress = {}, const std::stop_token& stop = {});

} // namespace tarnwick
