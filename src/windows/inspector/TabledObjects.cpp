#include "TabledObjects.h"

#include "analysis/ObjectKind.h"
#include "protocol/EngineLimits.h"

#include <algorithm>

namespace tarnwick {

namespace {

constexpr std::size_t objectsBetweenLooks = 65'536; // at the stop token

/// The version whose objects, or whose trailer, stand at an offset or next behind it.
std::uint32_t versionAt(const pdfObjectCatalog& catalog, std::uint64_t offset)
{
    if (catalog.size() == 0)
        return 0;
    const std::size_t record = catalog.firstEndingBehind(static_cast<std::size_t>(offset));
    return static_cast<std::uint32_t>(
        catalog.object(std::min(record, catalog.size() - 1)).objVer());
}

constexpr std::uint32_t none = 0xFFFF'FFFF;

/// The last object of each number that the table places, by its place in the scan; empty when it
/// was stopped.
std::vector<std::uint32_t> latestObjects(
    const pdfObjectCatalog& catalog, const CrossReference& table, const std::stop_token& stop)
{
    const std::uint32_t highest = table.placed.empty() ? 0 : table.placed.back().number;
    std::vector<std::uint32_t> latest(std::size_t{highest} + 1, none);
    for (std::size_t index = 0; index < catalog.size(); ++index) {
        if (index % objectsBetweenLooks == 0 && stop.stop_requested())
            return {};
        const std::int64_t number = catalog.object(index).objNo();
        if (number >= 0 && number <= highest)
            latest[static_cast<std::size_t>(number)] = static_cast<std::uint32_t>(index);
    }
    return latest;
}

bool holds(const pdfObject& object, std::uint64_t offset)
{
    constexpr std::uint64_t leeway = 4; // tables often lead to a line end before their object
    const ByteRange range = object.range();
    return offset + leeway >= range.begin && offset < range.end;
}

/// Whether the listing has the object of a number at an offset.
bool isListed(const pdfObjectCatalog& catalog, const CrossReference::Placed& placed,
    const std::vector<std::uint32_t>& latest)
{
    const std::uint32_t last = latest[placed.number];
    if (last == none || !placed.isReadable)
        return last != none;
    if (holds(catalog.object(last), placed.offset))
        return true;
    const std::vector<pdfObject> all = catalog.findAll(placed.number);
    return std::any_of(all.begin(), all.end(),
        [&placed](const pdfObject& object) { return holds(object, placed.offset); });
}

} // namespace

std::shared_ptr<const TabledObjects> TabledObjects::of(
    const pdfObjectCatalog& catalog, CrossReference table, const std::stop_token& stop)
{
    const std::vector<std::uint32_t> latest = latestObjects(catalog, table, stop);
    if (latest.empty())
        return nullptr;
    std::shared_ptr<TabledObjects> objects(new TabledObjects);
    objects->theKinds = std::move(table.kinds);
    objects->theReferences = std::move(table.references);
    objects->theRoots = std::move(table.roots);
    objects->theWasRepaired = table.wasRepaired;
    objects->theIsCut = table.isCut;
    for (const CrossReference::Freed& freed : table.freed) {
        const std::uint64_t section = freed.section;
        objects->theFreed.push_back({freed.number, section > 0 ? versionAt(catalog, section) : 0});
    }
    objects->addMembers(catalog, table);
    objects->addPlaced(catalog, table, latest);
    std::sort(objects->theUnlisted.begin(), objects->theUnlisted.end(),
        [](const Unlisted& one, const Unlisted& other) { return one.number < other.number; });
    objects->sortKinds();
    return stop.stop_requested() ? nullptr : objects;
}

/// Members of one object stream mostly follow each other.
void TabledObjects::addMembers(const pdfObjectCatalog& catalog, const CrossReference& table)
{
    std::uint32_t container = 0;
    std::optional<pdfObject> stream;
    for (std::size_t index = 0; index < table.members.size(); ++index) {
        const CrossReference::Member& member = table.members[index];
        if (member.container != container) {
            container = member.container;
            stream = catalog.find(container);
        }
        Unlisted object;
        object.number = member.number;
        object.container = member.container;
        object.index = member.index;
        object.offset = stream ? stream->range().begin : 0;
        object.version = stream ? static_cast<std::uint32_t>(stream->objVer()) : 0;
        object.kind = member.kind;
        object.firstReference = member.firstReference;
        const std::size_t end = index + 1 < table.members.size()
            ? table.members[index + 1].firstReference
            : theReferences.size();
        object.referenceCount = static_cast<std::uint32_t>(end - member.firstReference);
        object.isReadable = member.isReadable;
        theUnlisted.push_back(object);
    }
}

/// What the scan takes for no object, or for another, as it is not written the usual way.
void TabledObjects::addPlaced(const pdfObjectCatalog& catalog, const CrossReference& table,
    const std::vector<std::uint32_t>& latest)
{
    theIsInFile.resize(table.placed.empty() ? 0 : table.placed.back().number + std::size_t{1});
    for (const CrossReference::Placed& placed : table.placed) {
        theIsInFile[placed.number] = true;
        if (isListed(catalog, placed, latest))
            continue;
        Unlisted object;
        object.number = placed.number;
        object.generation = placed.generation;
        object.offset = placed.offset;
        object.version = versionAt(catalog, placed.offset);
        object.isReadable = placed.isReadable;
        addReferences(catalog, object);
        theUnlisted.push_back(object);
    }
}

void TabledObjects::addReferences(const pdfObjectCatalog& catalog, Unlisted& object)
{
    const std::string_view bytes = catalog.bytes();
    const std::size_t begin = std::min<std::size_t>(object.offset, bytes.size());
    const ObjectSource source(bytes, {begin, bytes.size()});
    const std::string kind = object.isReadable ? objectKind(bytes, source) : std::string();
    const auto found = std::find(theKinds.begin(), theKinds.end(), kind);
    object.kind = static_cast<std::uint32_t>(found - theKinds.begin());
    if (found == theKinds.end())
        theKinds.push_back(kind);
    object.firstReference = static_cast<std::uint32_t>(theReferences.size());
    if (!object.isReadable)
        return;
    SourceLexer lexer(bytes, source.valueBegin(), source.valueEnd());
    for (SourceToken token = lexer.next(); token.kind != TokenKind::isEnd; token = lexer.next()) {
        if (token.kind == TokenKind::isReference && token.number > 0
            && token.number <= maximumObjectNumber)
            theReferences.push_back(static_cast<std::uint32_t>(token.number));
    }
    object.referenceCount
        = static_cast<std::uint32_t>(theReferences.size()) - object.firstReference;
}

void TabledObjects::sortKinds()
{
    std::vector<std::string> sorted = theKinds;
    std::sort(sorted.begin(), sorted.end());
    std::vector<std::uint32_t> places;
    for (const std::string& kind : theKinds)
        places.push_back(static_cast<std::uint32_t>(
            std::lower_bound(sorted.begin(), sorted.end(), kind) - sorted.begin()));
    theKinds = std::move(sorted);
    for (Unlisted& object : theUnlisted)
        object.kind = places[object.kind];
}

std::optional<std::size_t> TabledObjects::find(std::int64_t number) const
{
    const auto found = std::lower_bound(theUnlisted.begin(), theUnlisted.end(), number,
        [](const Unlisted& one, std::int64_t wanted) { return one.number < wanted; });
    if (found == theUnlisted.end() || found->number != number)
        return std::nullopt;
    return static_cast<std::size_t>(found - theUnlisted.begin());
}

TabledObjects::Entry TabledObjects::entry(std::int64_t number) const
{
    if (find(number))
        return Entry::isUnlisted;
    if (number >= 0 && static_cast<std::uint64_t>(number) < theIsInFile.size()
        && theIsInFile[static_cast<std::size_t>(number)])
        return Entry::isInFile;
    const auto freed = std::lower_bound(theFreed.begin(), theFreed.end(), number,
        [](const Freed& one, std::int64_t wanted) { return one.number < wanted; });
    return freed != theFreed.end() && freed->number == number ? Entry::isFreed : Entry::isMissing;
}

std::int64_t TabledObjects::freedIn(std::int64_t number) const
{
    const auto freed = std::lower_bound(theFreed.begin(), theFreed.end(), number,
        [](const Freed& one, std::int64_t wanted) { return one.number < wanted; });
    return freed != theFreed.end() && freed->number == number ? freed->version : 0;
}

} // namespace tarnwick
