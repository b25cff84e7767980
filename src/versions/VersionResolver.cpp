#include "VersionResolver.h"

#include "MarkerPlace.h"
#include "analysis/SourceLexer.h"
#include "analysis/StrayBytes.h"
#include "analysis/StructureWords.h"

#include <algorithm>

namespace tarnwick {

namespace {

void setFlag(SavedVersion& version, VersionFlag flag)
{
    const auto place = std::lower_bound(version.flags.begin(), version.flags.end(), flag);
    if (place == version.flags.end() || *place != flag)
        version.flags.insert(place, flag);
}

/// Whether an object's header stands at a place.
bool stands(std::string_view bytes, std::uint32_t object, std::uint64_t place)
{
    constexpr std::size_t longest = 16;
    if (place >= bytes.size())
        return false;
    const auto begin = static_cast<std::size_t>(place);
    const SourceToken token
        = SourceLexer(bytes, begin, std::min(bytes.size(), begin + longest)).next();
    return token.kind == TokenKind::isInteger && token.number == object;
}

/// Puts objects where they stand in a file whose offsets count from its header.
void shift(std::vector<CrossReferenceRow>& rows, std::string_view bytes, std::size_t header)
{
    for (CrossReferenceRow& row : rows) {
        const bool isShifted = header > 0 && row.use == RowUse::isPlain
            && !stands(bytes, row.number, row.place)
            && stands(bytes, row.number, row.place + header);
        if (isShifted)
            row.place += header;
    }
}

/// Whether the first object says that the file is linearized: readers look no further.
bool isLinearized(std::string_view bytes)
{
    constexpr std::size_t farthest = 1024;
    const std::string_view start = bytes.substr(0, farthest);
    return start.substr(0, start.find(LineWord::endobj)).find("/Linearized")
        != std::string_view::npos;
}

void mergeMembers(std::vector<std::uint32_t>& replaced, std::vector<std::uint32_t> members,
    const ObjectChanges& changes)
{
    for (const std::uint32_t member : members) {
        if (!std::binary_search(changes.added.begin(), changes.added.end(), member))
            replaced.push_back(member);
    }
    std::sort(replaced.begin(), replaced.end());
    replaced.erase(std::unique(replaced.begin(), replaced.end()), replaced.end());
}

} // namespace

VersionResolver::VersionResolver(VersionChain& chain)
    : theChain(chain)
    , theVersions(chain.theVersions)
{
}

void VersionResolver::resolve(const std::stop_token& stop)
{
    findTargets();
    placeMarkers();
    std::size_t save = 0;
    for (SavedVersion& version : theVersions) {
        if (stop.stop_requested())
            return;
        save += version.isOwn ? 1 : 0;
        version.save = std::max<std::size_t>(save, 1);
        if (version.isOwn)
            findChanges(version);
        else
            version.changes = ObjectChanges();
    }
    flagAbandoned();
    flagStrayBytes();
}

/// A version is one of its own when its startxref leads to a cross-reference that came with it. The
/// two markers of a linearized file end one version, whose first cross-reference is near the start.
void VersionResolver::findTargets()
{
    const bool isTwoParts
        = theVersions.size() > 1 && isLinearized(theChain.theBytes.substr(theChain.theHeader));
    std::size_t ownBegin = 0;
    for (SavedVersion& version : theVersions) {
        const CrossReferenceSection* const section
            = version.startxref ? theChain.sectionAt(*version.startxref) : nullptr;
        version.target = !section ? SavedVersion::Target::isNothing
            : section->form == CrossReferenceSection::Form::isTable
            ? SavedVersion::Target::isTable
            : SavedVersion::Target::isStream;
        if (section) {
            version.prev = section->prev;
            version.root = section->root;
            version.info = section->info;
            version.isEncrypted = section->isEncrypted;
        }
        const bool isFirstPart = isTwoParts && version.marker == 1
            && (!section || section->prev.value_or(0) >= version.end
                || section->offset >= version.end);
        if (isFirstPart)
            setFlag(version, VersionFlag::isLinearizedFirstPart);
        else if (section && section->offset >= ownBegin && section->offset < version.end)
            version.isOwn = true;
        if (version.isOwn)
            ownBegin = version.end;
    }
}

/// What the markers are that end no version with a cross-reference of its own: data of an object of
/// the next version that has one, damage, or nothing.
void VersionResolver::placeMarkers()
{
    std::size_t first = 0;
    for (std::size_t index = 0; index < theVersions.size(); ++index) {
        if (!theVersions[index].isOwn)
            continue;
        if (first < index)
            placeMarkers(first, index);
        first = index + 1;
    }
    placeMarkers(first, theVersions.size());
}

void VersionResolver::placeMarkers(std::size_t first, std::size_t behind)
{
    const bool isFollowed = behind < theVersions.size();
    std::vector<CrossReferenceRow> rows;
    if (isFollowed)
        rows = theChain.rowsOf(behind);
    shift(rows, theChain.theBytes, theChain.theHeader);
    MarkerPlace place(theChain.theBytes, std::move(rows));
    for (std::size_t index = first; index < behind; ++index) {
        SavedVersion& version = theVersions[index];
        if (version.has(VersionFlag::isLinearizedFirstPart))
            continue;
        const std::size_t marker
            = theChain.theBytes.substr(0, version.end).rfind(LineWord::endOfFile);
        if (const std::optional<VersionFlag> flag = place.flagOf(marker)) {
            setFlag(version, *flag);
        } else if (version.startxref && version.target == SavedVersion::Target::isNothing) {
            version.isOwn = true;
            setFlag(version, VersionFlag::isRepaired);
        } else {
            setFlag(version, VersionFlag::isWithoutCrossReference);
        }
    }
}

void VersionResolver::loseTable(SavedVersion& version, VersionFlag why)
{
    setFlag(version,
        theWork > mostWork || theChain.theIsBeyondLimits ? VersionFlag::isBeyondLimits : why);
    theTable.reset();
    theStart = nullptr;
    theHasOwn = true;
}

void VersionResolver::findChanges(SavedVersion& version)
{
    const CrossReferenceSection* const section
        = version.startxref ? theChain.sectionAt(*version.startxref) : nullptr;
    if (!section || version.has(VersionFlag::isRepaired) || theWork > mostWork)
        return loseTable(version, VersionFlag::isRepaired);
    if (goesOnFrom(*section))
        goOn(version, *section);
    else
        startAnew(version, *section);
    if (theTable && theIsLoop)
        setFlag(version, VersionFlag::isChainLoop);
}

bool VersionResolver::goesOnFrom(const CrossReferenceSection& section) const
{
    return theTable && section.prev && theChain.sectionAt(*section.prev) == theStart
        && !(section.stream && !theChain.sectionAt(*section.stream));
}

void VersionResolver::goOn(SavedVersion& version, const CrossReferenceSection& section)
{
    const ObjectTable::Layer layer{
        &section, section.stream ? theChain.sectionAt(*section.stream) : nullptr};
    ObjectChanges changes = theTable->putOnTop(layer);
    theWork += section.rows.size() + 1;
    std::vector<std::uint32_t> members = theTable->membersOf(changes.replaced);
    if (!members.empty())
        theWork += theTable->size();
    mergeMembers(changes.replaced, std::move(members), changes);
    bool isWithin = !layer.stream || layer.stream->offset < version.end;
    forEachRow(layer, [&](const CrossReferenceRow& row) {
        isWithin = isWithin && theTable->isWithin(row, version.end);
    });
    if (!isWithin)
        return loseTable(version, VersionFlag::isRepaired);
    theStart = &section;
    version.changes = std::move(changes);
}

void VersionResolver::startAnew(SavedVersion& version, const CrossReferenceSection& section)
{
    const ChainWalk walk = ChainWalk::from(
        section.offset, [this](std::uint64_t said) { return theChain.sectionAt(said); },
        version.end);
    auto table = std::make_unique<ObjectTable>();
    for (const ObjectTable::Layer& layer : walk.layers) {
        theWork += layer.section->rows.size() + (layer.stream ? layer.stream->rows.size() : 0) + 1;
        if (theWork > mostWork)
            break;
        table->addBelow(layer);
    }
    if (theWork > mostWork || !walk.isWhole || !table->isWithin(version.end))
        return loseTable(version, VersionFlag::isRepaired);
    theIsLoop = walk.isLoop;
    theStart = &section;
    if (!theHasOwn)
        version.changes = ObjectChanges();
    else if (theTable)
        version.changes = ObjectTable::changes(*theTable, *table);
    else
        setFlag(version, VersionFlag::isBehindUnknown);
    theTable = std::move(table);
    theHasOwn = true;
}

/// Versions that the last one's cross-references pass over.
void VersionResolver::flagAbandoned()
{
    const auto last = std::find_if(theVersions.rbegin(), theVersions.rend(),
        [](const SavedVersion& version) { return version.isOwn; });
    if (last == theVersions.rend() || !last->startxref || last->has(VersionFlag::isRepaired))
        return;
    std::unordered_set<std::uint64_t> used;
    const ChainWalk walk = ChainWalk::from(
        *last->startxref, [this](std::uint64_t said) { return theChain.sectionAt(said); },
        last->end);
    for (const ObjectTable::Layer& layer : walk.layers)
        used.insert(layer.section->offset);
    for (SavedVersion& version : theVersions) {
        const CrossReferenceSection* const section
            = version.startxref ? theChain.sectionAt(*version.startxref) : nullptr;
        if (version.isOwn && section && !used.contains(section->offset))
            setFlag(version, VersionFlag::isNotInChain);
    }
}

void VersionResolver::flagStrayBytes()
{
    if (theVersions.empty())
        return;
    if (theChain.theHeader > 0)
        setFlag(theVersions.front(), VersionFlag::isBeforeHeader);
    if (theVersions.size() < theChain.theMarkerCount)
        return;
    const std::string_view behind = theChain.theBytes.substr(theVersions.back().end);
    const auto isBlank = [](char one) { return isSourceSpace(one) && one != 0; };
    if (!std::all_of(behind.begin(), behind.end(), isBlank))
        setFlag(theVersions.back(), VersionFlag::isBehindMarker);
}

} // namespace tarnwick
