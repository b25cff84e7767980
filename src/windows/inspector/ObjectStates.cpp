#include "ObjectStates.h"

#include <algorithm>
#include <utility>

namespace tarnwick {

namespace {

constexpr std::size_t objectsBetweenLooks = 65'536; // at the stop token

/// Numbers up to some multiple of the count have a place in a table, the others are sorted: what a
/// file counts with is not to decide how much memory is taken.
std::size_t tableSize(std::size_t count)
{
    return 2 * count + 1024;
}

} // namespace

/// The catalog has the objects in the order of the file, and so the versions: the next object of a
/// number is the one that a walk from the end has met last.
std::shared_ptr<const ObjectStates> ObjectStates::of(
    const pdfObjectCatalog& catalog, const std::stop_token& stop)
{
    const std::size_t size = catalog.size();
    std::shared_ptr<ObjectStates> states(new ObjectStates(size));
    std::vector<std::uint32_t> nextOf(tableSize(size)); // place in the scan and 1
    std::vector<std::pair<std::int64_t, std::uint32_t>> others;
    for (std::size_t index = size; index-- > 0;) {
        if (index % objectsBetweenLooks == 0 && stop.stop_requested())
            return nullptr;
        const std::int64_t number = catalog.object(index).objNo();
        const auto place = static_cast<std::uint32_t>(index);
        if (number < 0 || static_cast<std::uint64_t>(number) >= nextOf.size()) {
            others.emplace_back(number, place);
            continue;
        }
        std::uint32_t& next = nextOf[static_cast<std::size_t>(number)];
        if (next > 0)
            states->link(catalog, index, next - 1);
        next = place + 1;
    }
    std::sort(others.begin(), others.end());
    for (std::size_t at = others.size(); at-- > 1;) {
        if (at % objectsBetweenLooks == 0 && stop.stop_requested())
            return nullptr;
        if (others[at - 1].first == others[at].first)
            states->link(catalog, others[at - 1].second, others[at].second);
    }
    return states;
}

/// To be called from the end of the file on.
void ObjectStates::link(const pdfObjectCatalog& catalog, std::size_t index, std::size_t next)
{
    const pdfObject later = catalog.object(next);
    if (catalog.object(index).range().begin != later.range().begin) {
        theNextVersions[index] = static_cast<std::uint32_t>(later.objVer());
        return;
    }
    theNextVersions[index] = std::exchange(theNextVersions[next], repetition);
    --theCount;
}

} // namespace tarnwick
