#include "versions/VersionChain.h"

#include "ChainWalk.h"
#include "VersionResolver.h"
#include "analysis/SourceLexer.h"
#include "analysis/StrayBytes.h"
#include "analysis/StructureWords.h"
#include "versions/VersionCuts.h"

#include <algorithm>

namespace tarnwick {

namespace {

/// What the last startxref in a stretch of the file says.
std::optional<std::uint64_t> startxrefIn(std::string_view bytes, std::size_t begin, std::size_t end)
{
    constexpr std::string_view word = LineWord::startxref;
    constexpr std::size_t farthest = 64;
    const std::string_view stretch = bytes.substr(begin, end - begin);
    const std::size_t place = stretch.rfind(word);
    if (place == std::string_view::npos)
        return std::nullopt;
    const std::size_t behind = begin + place + word.size();
    const SourceToken number = SourceLexer(bytes, behind, std::min(end, behind + farthest)).next();
    if (number.kind != TokenKind::isInteger || number.number < 0)
        return std::nullopt;
    return static_cast<std::uint64_t>(number.number);
}

} // namespace

VersionChain::VersionChain(std::string_view bytes, const std::stop_token& stop)
    : theBytes(bytes)
    , theHeader(findStrayBytes(bytes.substr(0, 1024), stop).header.value_or(0))
{
    const std::vector<std::size_t> cuts = versionCuts(bytes);
    theMarkerCount = cuts.size();
    std::size_t begin = 0;
    for (std::size_t index = 0; index < std::min(cuts.size(), mostVersions); ++index) {
        if (stop.stop_requested())
            return;
        SavedVersion version;
        version.marker = index + 1;
        version.begin = begin;
        version.end = begin = cuts[index];
        version.startxref = startxrefIn(bytes, version.begin, version.end);
        if (version.startxref)
            want(*version.startxref, false);
        theVersions.push_back(version);
    }
}

/// @param isShifted counted from the header: nothing is looked for any farther.
void VersionChain::want(std::uint64_t offset, bool isShifted)
{
    if (offset >= theBytes.size() || theSections.contains(offset) || theWanted.contains(offset))
        return;
    if (theSections.size() + theWanted.size() >= mostSections || theRows >= mostRows)
        theIsBeyondLimits = true;
    else
        theWanted.emplace(offset, isShifted);
}

std::vector<std::uint64_t> VersionChain::wanted() const
{
    std::vector<std::uint64_t> offsets;
    for (const auto& [offset, isShifted] : theWanted)
        offsets.push_back(offset);
    return offsets;
}

void VersionChain::take(CrossReferenceSection section)
{
    const auto wish = theWanted.find(section.offset);
    if (wish == theWanted.end())
        return;
    const bool isShifted = wish->second;
    theWanted.erase(wish);
    const bool isNone = section.form == CrossReferenceSection::Form::isNone;
    if (isNone && theHeader > 0 && !isShifted)
        want(section.offset + theHeader, true);
    for (const auto& next : {section.prev, section.stream}) {
        if (next)
            want(*next, false);
    }
    theRows += section.rows.size();
    theSections.emplace(section.offset, std::move(section));
}

const CrossReferenceSection* VersionChain::sectionAt(std::uint64_t said) const
{
    for (const std::uint64_t place : {said, said + theHeader}) {
        const auto section = theSections.find(place);
        if (section != theSections.end()
            && section->second.form != CrossReferenceSection::Form::isNone)
            return &section->second;
    }
    return nullptr;
}

void VersionChain::resolve(const std::stop_token& stop)
{
    VersionResolver(*this).resolve(stop);
}

std::size_t VersionChain::ownCount() const
{
    return static_cast<std::size_t>(std::count_if(theVersions.begin(), theVersions.end(),
        [](const SavedVersion& version) { return version.isOwn; }));
}

std::optional<ObjectChanges> VersionChain::changesBetween(
    std::size_t earlier, std::size_t later) const
{
    const auto walkOf = [this](std::size_t index) {
        const SavedVersion& version = theVersions[index];
        return version.startxref && !version.has(VersionFlag::isLinearizedFirstPart)
            ? ChainWalk::from(
                *version.startxref, [this](std::uint64_t said) { return sectionAt(said); },
                version.end)
            : ChainWalk();
    };
    const ChainWalk before = walkOf(earlier);
    const ChainWalk after = walkOf(later);
    if (!before.isWhole || !after.isWhole || before.layers.empty()
        || std::none_of(after.layers.begin(), after.layers.end(),
            [&](const auto& layer) { return layer.section == before.layers.front().section; }))
        return std::nullopt;
    ObjectTable first;
    ObjectTable second;
    for (const auto& layer : before.layers)
        first.addBelow(layer);
    for (const auto& layer : after.layers)
        second.addBelow(layer);
    if (!first.isWithin(theVersions[earlier].end) || !second.isWithin(theVersions[later].end))
        return std::nullopt;
    return ObjectTable::changes(first, second);
}

std::vector<CrossReferenceRow> VersionChain::rowsOf(std::size_t version) const
{
    const std::optional<std::uint64_t> start = theVersions[version].startxref;
    if (!start)
        return {};
    ObjectTable table;
    const auto find = [this](std::uint64_t said) { return sectionAt(said); };
    for (const auto& layer : ChainWalk::from(*start, find, theVersions[version].end).layers)
        table.addBelow(layer);
    return table.rows();
}

} // namespace tarnwick
