#include "ObjectKinds.h"

#include "analysis/ObjectKind.h"

#include <algorithm>
#include <numeric>
#include <unordered_map>

namespace tarnwick {

namespace {

constexpr std::size_t objectsBetweenLooks = 1024; // at the stop token

} // namespace

ObjectKinds::ObjectKinds(const pdfObjectCatalog& catalog)
    : theCatalog(catalog)
    , theKinds(catalog.size())
{
}

std::shared_ptr<const ObjectKinds> ObjectKinds::of(
    const pdfObjectCatalog& catalog, const Progress& progress, const std::stop_token& stop)
{
    std::shared_ptr<ObjectKinds> kinds(new ObjectKinds(catalog));
    std::unordered_map<std::string, std::size_t> places;
    for (std::size_t index = 0; index < catalog.size(); ++index) {
        if (index % objectsBetweenLooks == 0) {
            if (stop.stop_requested())
                return nullptr;
            if (progress)
                progress(index);
        }
        std::string name = objectKind(catalog, catalog.object(index));
        auto found = places.find(name);
        if (found == places.end() && kinds->theNames.size() < mostNames) {
            found = places.emplace(name, kinds->theNames.size()).first;
            kinds->theNames.push_back(std::move(name));
        }
        kinds->theKinds[index]
            = static_cast<std::uint16_t>(found == places.end() ? mostNames : found->second);
    }
    kinds->sortNames();
    return kinds;
}

void ObjectKinds::sortNames()
{
    std::vector<std::size_t> order(theNames.size());
    std::iota(order.begin(), order.end(), 0u);
    std::sort(order.begin(), order.end(),
        [this](std::size_t one, std::size_t other) { return theNames[one] < theNames[other]; });
    std::vector<std::uint16_t> places(mostNames + 1, mostNames);
    std::vector<std::string> names;
    for (const std::size_t name : order) {
        places[name] = static_cast<std::uint16_t>(names.size());
        names.push_back(std::move(theNames[name]));
    }
    theNames = std::move(names);
    for (std::uint16_t& kind : theKinds)
        kind = places[kind];
}

std::size_t ObjectKinds::nameOf(std::size_t index) const
{
    return std::min<std::size_t>(theKinds[index], theNames.size());
}

std::string ObjectKinds::kind(std::size_t index) const
{
    const std::size_t name = nameOf(index);
    return name < theNames.size() ? theNames[name]
                                  : objectKind(theCatalog, theCatalog.object(index));
}

} // namespace tarnwick
