#include "ChainWalk.h"

#include <unordered_set>

namespace tarnwick {

ChainWalk ChainWalk::from(std::uint64_t startxref, const Find& find, std::size_t end)
{
    const auto findBefore = [&](std::uint64_t said) {
        const CrossReferenceSection* const section = find(said);
        return section && section->offset < end ? section : nullptr;
    };
    ChainWalk walk;
    std::unordered_set<std::uint64_t> seen;
    std::optional<std::uint64_t> next = startxref;
    while (next) {
        const CrossReferenceSection* const section = findBefore(*next);
        if (!section)
            return walk;
        if (!seen.insert(section->offset).second) {
            walk.isLoop = true;
            break;
        }
        ObjectTable::Layer layer{section, nullptr};
        if (section->stream) {
            layer.stream = findBefore(*section->stream);
            if (!layer.stream)
                return walk;
        }
        walk.layers.push_back(layer);
        next = section->prev;
    }
    walk.isWhole = true;
    return walk;
}

} // namespace tarnwick
