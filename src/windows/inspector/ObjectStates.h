#pragma once

#include "analysis/pdfObjectCatalog.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

namespace tarnwick {

/// What has become of an object in the rest of the file, as far as it is known.
enum class ObjectStanding : unsigned char
{
    isCurrent,
    isUnreachable, ///< in use, but nothing leads to it from the trailer
    isUnreadable, ///< the file's table leads to what is no object
    isDuplicate, ///< another object of its number follows in its version
    isFreed, ///< by a later version, or its own
    isReplaced, ///< by a later version
};

/// What objectState() says of each object of a catalog, for all of them in one pass: 4 bytes an
/// object.
class ObjectStates
{
public:
    /// @param catalog borrowed for the call.
    /// @returns null when it was stopped. Throws std::bad_alloc.
    static std::shared_ptr<const ObjectStates> of(
        const pdfObjectCatalog& catalog, const std::stop_token& stop = {});

    /// Whether a record has the lines of an earlier one: the same object once more.
    /// @param index in the order of the scan, as below.
    bool isRepetition(std::size_t index) const { return theNextVersions[index] == repetition; }
    /// The version that has the next object of that number, which may be the object's own; 0 for
    /// none. Precondition: !isRepetition(index).
    std::uint32_t nextVersion(std::size_t index) const { return theNextVersions[index]; }
    /// How many objects there are, repetitions not counted.
    std::size_t count() const { return theCount; }

private:
    static constexpr std::uint32_t repetition = 0xFFFF'FFFF;

    explicit ObjectStates(std::size_t size)
        : theNextVersions(size)
        , theCount(size)
    {
    }
    void link(const pdfObjectCatalog& catalog, std::size_t index, std::size_t next);

    std::vector<std::uint32_t> theNextVersions;
    std::size_t theCount;
};

} // namespace tarnwick
