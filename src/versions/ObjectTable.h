#pragma once

#include "versions/CrossReference.h"
#include "versions/SavedVersion.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_set>
#include <vector>

namespace tarnwick {

/// What a version's cross-references together say of each object. Takes memory for the numbers
/// that occur, not for the highest one.
class ObjectTable
{
public:
    /// One table or stream; streams that belong to tables are already known by them.
    struct Layer
    {
        const CrossReferenceSection* section = nullptr;
        const CrossReferenceSection* stream = nullptr; ///< of a table's XRefStm; may be null
    };

    /// Adds a layer below those that were added: what they say counts more.
    void addBelow(const Layer& layer);
    /// Puts a layer on top. @returns what that changes, but for the members of object streams that
    /// are replaced while the layer says nothing of them: memberChanges() knows those.
    ObjectChanges putOnTop(const Layer& layer);
    /// Members of the object streams among some objects, which have changed with them.
    std::vector<std::uint32_t> membersOf(const std::vector<std::uint32_t>& streams) const;

    /// What differs between a version's objects and those of another.
    static ObjectChanges changes(const ObjectTable& before, const ObjectTable& now);
    /// Objects in use, ascending.
    std::vector<CrossReferenceRow> rows() const;
    std::size_t size() const { return theSize; } ///< numbers that occur
    /// Whether a reader can find all objects in a file of so many bytes.
    bool isWithin(std::size_t fileSize) const;
    bool isWithin(const CrossReferenceRow& row, std::size_t fileSize) const;

private:
    struct Slot
    {
        std::uint64_t place = 0;
        std::uint32_t detail = 0;
        RowUse use = RowUse::isFree;
        bool isKnown = false;

        bool isUsed() const { return isKnown && use != RowUse::isFree; }
        bool operator==(const Slot&) const = default;
    };
    static constexpr std::size_t chunkSize = 1024;
    using Chunk = std::array<Slot, chunkSize>;

    Slot& slot(std::uint32_t number);
    Slot find(std::uint32_t number) const;
    bool isSame(const ObjectTable& other, const Slot& mine, const Slot& theirs) const;
    template<typename Visit> void forEach(Visit&& visit) const;

    std::vector<std::unique_ptr<Chunk>> theChunks;
    std::unordered_set<std::uint32_t> theStreams; ///< numbers of object streams that are named
    std::size_t theSize = 0;
};

/// The rows of a layer in the order in which they count: of two for one number, the first.
/// Objects that a table hides as free stand in its XRefStm (ISO 32000-2, 7.5.8.4).
template<typename Take> void forEachRow(const ObjectTable::Layer& layer, Take&& take)
{
    for (const CrossReferenceRow& row : layer.section->rows) {
        if (row.use != RowUse::isFree || !layer.stream)
            take(row);
    }
    if (!layer.stream)
        return;
    for (const CrossReferenceRow& row : layer.stream->rows)
        take(row);
    for (const CrossReferenceRow& row : layer.section->rows) {
        if (row.use == RowUse::isFree)
            take(row);
    }
}

} // namespace tarnwick
