#pragma once

#include "analysis/pdfObjectCatalog.h"
#include "protocol/CrossReference.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace tarnwick {

/// What the file's table says of objects beside the listing: which there are that the listing does
/// not have, those in object streams above all, and which of its own are not in use.
class TabledObjects
{
public:
    /// An object that the table leads to and that no record of the scan is: of its number there may
    /// be records that it has replaced.
    struct Unlisted
    {
        std::uint64_t offset = 0; ///< in the file; of one in an object stream the stream's
        std::uint32_t number = 0;
        std::uint32_t container = 0; ///< number of its object stream; 0 outside of them
        std::uint32_t index = 0; ///< place in it, from 0
        std::uint32_t generation = 0;
        std::uint32_t version = 0; ///< saved version in which that offset lies
        std::uint32_t kind = 0; ///< place among kinds()
        std::uint32_t firstReference = 0;
        std::uint32_t referenceCount = 0;
        bool isReadable = true;
    };
    enum class Entry
    {
        isMissing,
        isFreed,
        isInFile, ///< at an object that the listing has, as far as it was looked at
        isUnlisted,
    };

    /// @param catalog borrowed for the call. @param table as the engine tells it.
    /// @returns null when it was stopped. Throws std::bad_alloc.
    static std::shared_ptr<const TabledObjects> of(
        const pdfObjectCatalog& catalog, CrossReference table, const std::stop_token& stop = {});

    /// In the order of their numbers.
    const std::vector<Unlisted>& unlisted() const { return theUnlisted; }
    /// The place of a number among them.
    std::optional<std::size_t> find(std::int64_t number) const;
    /// Sorted.
    const std::vector<std::string>& kinds() const { return theKinds; }
    const std::string& kindOf(std::size_t unlisted) const
    {
        return theKinds[theUnlisted[unlisted].kind];
    }
    /// The numbers of objects that one of them refers to.
    std::span<const std::uint32_t> references(std::size_t unlisted) const
    {
        const Unlisted& object = theUnlisted[unlisted];
        return std::span(theReferences).subspan(object.firstReference, object.referenceCount);
    }
    /// The numbers of objects that the trailer refers to.
    const std::vector<std::uint32_t>& roots() const { return theRoots; }

    /// What a number leads to. @param number any.
    Entry entry(std::int64_t number) const;
    /// The saved version that has freed a number; 0 where it is not known, or is not free.
    std::int64_t freedIn(std::int64_t number) const;
    /// Whether the engine has made the table, since the file's own is of no use.
    bool wasRepaired() const { return theWasRepaired; }
    /// Whether some references are left out.
    bool isCut() const { return theIsCut; }

private:
    struct Freed
    {
        std::uint32_t number = 0;
        std::uint32_t version = 0;
    };
    TabledObjects() = default;
    void addMembers(const pdfObjectCatalog& catalog, const CrossReference& table);
    void addPlaced(const pdfObjectCatalog& catalog, const CrossReference& table,
        const std::vector<std::uint32_t>& latest);
    void sortKinds();
    void addReferences(const pdfObjectCatalog& catalog, Unlisted& object);

    std::vector<Unlisted> theUnlisted;
    std::vector<std::string> theKinds;
    std::vector<std::uint32_t> theReferences;
    std::vector<std::uint32_t> theRoots;
    std::vector<bool> theIsInFile; ///< by number
    std::vector<Freed> theFreed;
    bool theWasRepaired = false;
    bool theIsCut = false;
};

} // namespace tarnwick
