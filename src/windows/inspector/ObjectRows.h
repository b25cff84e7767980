#pragma once

#include "ObjectConnections.h"
#include "ObjectFilter.h"
#include "ObjectKinds.h"
#include "ObjectStates.h"
#include "TabledObjects.h"
#include "analysis/SourceText.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <stop_token>
#include <vector>

namespace tarnwick {

/// What is known of the objects of a scanned source. Copies share it; any thread may read.
///
/// A row is an object's place in the order of the scan; those behind all of them are the objects
/// that the listing does not have, in the order of TabledObjects::unlisted().
struct ObjectFacts
{
    std::shared_ptr<const SourceText> source; ///< keeps the catalog alive
    std::shared_ptr<const ObjectStates> states;
    std::shared_ptr<const ObjectKinds> kinds; ///< null until somebody needs them all

    std::shared_ptr<const TabledObjects> tabled; ///< null where the file's table is not known
    std::shared_ptr<const ObjectConnections> connections; ///< null until somebody needs them

    const pdfObjectCatalog& catalog() const { return source->theCatalog(); }
    /// How many rows there are, those of repetitions included.
    std::size_t rowCount() const;
    bool isListed(std::size_t row) const { return row < catalog().size(); }
    /// Precondition: !isListed(row).
    const TabledObjects::Unlisted& unlisted(std::size_t row) const
    {
        return tabled->unlisted()[row - catalog().size()];
    }
    std::int64_t number(std::size_t row) const;
    std::string kind(std::size_t row) const; ///< precondition: kinds

    /// What becomes of an object, and its columns as numbers: of a kind its place in their order,
    /// of an object in an object stream containerValue(), of a state current ones first, then those
    /// that nobody uses, those that cannot be read, duplicates, then what versions have freed or
    /// replaced. Preconditions: source and states are there; for a kind, kinds.
    /// @{
    ObjectStanding standing(std::size_t row) const;
    std::int64_t value(std::size_t row, ObjectColumn column) const;
    /// The version that has replaced or freed an object, or holds its duplicate; 0 if unknown.
    std::int64_t endingVersion(std::size_t row) const;
    /// @}

private:
    std::int64_t kindOrder(std::size_t row) const;
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
