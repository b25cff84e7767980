#pragma once

#include "ChainWalk.h"
#include "versions/VersionChain.h"

#include <memory>
#include <unordered_set>

namespace tarnwick {

/// Fills in what a chain's cross-references say of its versions.
class VersionResolver
{
public:
    explicit VersionResolver(VersionChain& chain);
    void resolve(const std::stop_token& stop);

private:
    /// Rows and sections that are gone through at most, all versions together.
    static constexpr std::size_t mostWork = 200'000'000;

    void findTargets();
    void placeMarkers();
    void placeMarkers(std::size_t first, std::size_t behind);
    void findChanges(SavedVersion& version);
    void startAnew(SavedVersion& version, const CrossReferenceSection& section);
    bool goesOnFrom(const CrossReferenceSection& section) const;
    void goOn(SavedVersion& version, const CrossReferenceSection& section);
    void loseTable(SavedVersion& version, VersionFlag why);
    void flagAbandoned();
    void flagStrayBytes();

    VersionChain& theChain;
    std::vector<SavedVersion>& theVersions;
    std::unique_ptr<ObjectTable> theTable; ///< of the last version of its own; null if unknown
    const CrossReferenceSection* theStart = nullptr; ///< that its startxref leads to
    bool theIsLoop = false; ///< its cross-references are one
    bool theHasOwn = false; ///< one came before
    std::size_t theWork = 0;
};

} // namespace tarnwick
