#pragma once

#include "ObjectKinds.h"
#include "ObjectStates.h"
#include "TabledObjects.h"
#include "analysis/SourceText.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

namespace tarnwick {

/// How often objects are referred to, and which of those that are in use nothing leads to from the
/// trailer: one pass over the references of the file, then a walk over them.
///
/// Uses are what ObjectUsers counts, those in any saved version, and those in objects of object
/// streams as they are now. A walk begins at the trailer and takes each reference for the current
/// object of its number. What readers find in other ways counts as reached: trailers, cross-
/// reference streams, object streams that hold an object in use, and the dictionary of a linearized
/// file.
class ObjectConnections
{
public:
    /// What it is found out from. Rows are the places of the scan, and behind them those of
    /// TabledObjects::unlisted().
    struct Basis
    {
        std::shared_ptr<const SourceText> source;
        std::shared_ptr<const ObjectStates> states;
        std::shared_ptr<const ObjectKinds> kinds;
        std::shared_ptr<const TabledObjects> tabled; ///< null where the table is not known
    };
    /// @param progress gets how many bytes have been looked at; may be empty.
    /// @returns null when it was stopped. Throws std::bad_alloc.
    static std::shared_ptr<const ObjectConnections> of(const Basis& basis,
        const std::function<void(std::size_t)>& progress = {}, const std::stop_token& stop = {});

    /// How many references name an object. @param number any.
    std::size_t uses(std::int64_t number) const;
    /// Whether the row is of an object in use that the trailer leads to, or of no object in use.
    bool isReached(std::size_t row) const { return theIsReached[row]; }

private:
    class Walk;
    ObjectConnections() = default;

    /// An object of a number above all sensible ones.
    struct Other
    {
        std::int64_t number = 0;
        std::size_t row = 0;
        std::uint32_t uses = 0;

        bool operator<(const Other& other) const { return number < other.number; }
    };
    const Other* other(std::int64_t number) const;

    std::vector<std::uint32_t> theUses; ///< by number
    std::vector<Other> theOthers; ///< sorted
    std::vector<bool> theIsReached; ///< by row
};

} // namespace tarnwick
