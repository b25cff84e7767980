#pragma once

#include "compare/ObjectComparison.h"

#include <optional>
#include <unordered_map>
#include <vector>

namespace tarnwick {

/// Finds the objects of two documents that belong together.
class ObjectPairing
{
public:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    /// Both borrowed for this object's life.
    ObjectPairing(const ObjectSigns& before, const ObjectSigns& after);
    void pair(const std::stop_token& stop);

    /// Index of the other's object, or none.
    std::size_t partnerOf(std::size_t before) const { return theBefore.partners[before]; }
    bool isPaired(std::size_t after) const { return theAfter.partners[after] != none; }
    /// Whether both say the same, and each reference leads to the other's partner.
    bool isSame(std::size_t before, std::size_t after) const;

private:
    using Key = std::uint64_t;
    struct Side
    {
        explicit Side(const ObjectSigns& signs);
        std::size_t find(std::uint32_t number) const;
        void mix(); ///< what neighbours say into the keys

        const std::vector<ObjectSign>& list;
        std::unordered_map<std::uint32_t, std::size_t> places; ///< by number
        std::vector<std::size_t> partners;
        std::vector<Key> keys; ///< what stands for each object
    };

    void join(std::size_t before, std::size_t after);
    void pairByKeys(bool isUniqueOnly);
    void pairFrom(std::size_t before, std::size_t after);
    void pairByWays(std::uint32_t before, std::uint32_t after);
    void pairByNumbers();

    Side theBefore;
    Side theAfter;
    std::uint32_t theRoots[4]; ///< catalogs, Info dictionaries
    std::vector<std::size_t> theJoined; ///< of the first side, whose ways are not followed yet
};

} // namespace tarnwick
