#pragma once

#include "versions/CrossReference.h"
#include "versions/SavedVersion.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <stop_token>
#include <string_view>
#include <vector>

namespace tarnwick {

/// Finds out what each save of a file has changed, from the cross-reference that its startxref
/// leads to and those before it (ISO 32000-2, 7.5.4 to 7.5.8).
///
/// Whoever uses it reads the cross-references, which may be compressed:
///
///     VersionChain chain(bytes);
///     for (auto wanted = chain.wanted(); !wanted.empty(); wanted = chain.wanted())
///         for (const std::uint64_t offset : wanted)
///             chain.take(read(offset));
///     chain.resolve();
///
/// Each version is followed from its own startxref, so that those are known as well which the last
/// version does not lead back to. Has an answer for any bytes whatever: rings end, and there is a
/// limit to everything that is followed. Usable from any thread, by one at a time.
class VersionChain
{
public:
    static constexpr std::size_t mostVersions = 10'000; ///< more are counted
    static constexpr std::size_t mostSections = 40'000; ///< that are read
    static constexpr std::size_t mostRows = 20'000'000; ///< of all sections together

    /// Finds markers and startxrefs. @param bytes the file, borrowed for this object's life.
    explicit VersionChain(std::string_view bytes, const std::stop_token& stop = {});

    /// Offsets at which cross-references are to be read next, ascending; none when all are known.
    std::vector<std::uint64_t> wanted() const;
    /// Takes what stands at an offset that was wanted. What is beyond the limits is left out.
    void take(CrossReferenceSection section);
    /// Fills the versions' facts in, once nothing is wanted.
    void resolve(const std::stop_token& stop = {});

    /// In the order of the file, the first mostVersions. Before resolve() they have places and
    /// startxrefs alone.
    const std::vector<SavedVersion>& versions() const { return theVersions; }
    /// Markers of the whole file.
    std::size_t markerCount() const { return theMarkerCount; }
    /// Versions of their own among versions().
    std::size_t ownCount() const;

    /// What differs between the objects of two versions, of which the later goes on from the
    /// earlier. Nothing where that cannot be known, or where it does not.
    std::optional<ObjectChanges> changesBetween(std::size_t earlier, std::size_t later) const;
    /// The rows that a version's cross-references have for the objects in use, by number. Empty
    /// for one whose cross-references cannot be read. @param version index into versions().
    std::vector<CrossReferenceRow> rowsOf(std::size_t version) const;

private:
    friend class VersionResolver;

    void want(std::uint64_t offset, bool isShifted);
    /// What stands where a startxref, Prev or XRefStm says; null where that is none.
    const CrossReferenceSection* sectionAt(std::uint64_t said) const;

    std::string_view theBytes;
    std::size_t theHeader = 0; ///< where %PDF- stands: many count from there
    std::size_t theMarkerCount = 0;
    std::vector<SavedVersion> theVersions;
    std::map<std::uint64_t, CrossReferenceSection> theSections; ///< by where they were looked for
    std::map<std::uint64_t, bool> theWanted; ///< offsets, and whether counted from the header
    std::size_t theRows = 0;
    bool theIsBeyondLimits = false;
};

} // namespace tarnwick
