#include "compare/ObjectComparison.h"

#include "ObjectPairing.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>

namespace tarnwick {

namespace {

using Kind = ObjectDifference::Kind;

/// Numbers of the objects that streams have their lengths in.
std::set<std::uint32_t> lengthsOf(const ObjectSigns& signs)
{
    std::set<std::uint32_t> lengths;
    for (const ObjectSign& sign : signs.list) {
        if (sign.lengthObject != 0)
            lengths.insert(sign.lengthObject);
    }
    return lengths;
}

/// What is nothing but the length of a stream, a number without entries, changes with the stream.
ObjectSigns withoutLengths(const ObjectSigns& signs)
{
    const std::set<std::uint32_t> lengths = lengthsOf(signs);
    ObjectSigns kept = signs;
    std::erase_if(kept.list, [&](const ObjectSign& sign) {
        return lengths.contains(sign.number) && !sign.isStream && sign.links.empty();
    });
    return kept;
}

ObjectSigns reachedOf(const ObjectSigns& signs)
{
    ObjectSigns kept = withoutLengths(signs);
    std::erase_if(kept.list, [](const ObjectSign& sign) { return !sign.isReached; });
    return kept;
}

ObjectDifference alone(const ObjectSign& sign, Kind kind)
{
    ObjectDifference difference;
    difference.kind = sign.isReadable ? kind : Kind::isUnreadable;
    difference.group = sign.group;
    (kind == Kind::isAdded ? difference.after : difference.before) = sign.number;
    difference.isStream = sign.isStream;
    return difference;
}

/// @param isSame whether their values are.
ObjectDifference both(const ObjectSign& before, const ObjectSign& after, bool isSame)
{
    ObjectDifference difference;
    difference.group = after.group;
    difference.before = before.number;
    difference.after = after.number;
    difference.isStream = after.isStream || before.isStream;
    difference.hasOtherEntries = !isSame;
    difference.hasOtherData = before.isStream != after.isStream || before.data != after.data;
    if (!before.isReadable || !after.isReadable)
        difference.kind = Kind::isUnreadable;
    else if (difference.hasOtherEntries || difference.hasOtherData)
        difference.kind = Kind::isChanged;
    else
        difference.kind = before.number == after.number ? Kind::isRewritten : Kind::isMoved;
    return difference;
}

void sort(std::vector<ObjectDifference>& differences)
{
    const auto place = [](const ObjectDifference& one) {
        return std::tuple(one.group, one.after != 0 ? one.after : one.before, one.before);
    };
    std::sort(differences.begin(), differences.end(),
        [&](const ObjectDifference& a, const ObjectDifference& b) { return place(a) < place(b); });
}

/// Of what was removed and what was added, pairs that say the same are one object that has moved.
void joinMoved(std::vector<ObjectDifference>& differences,
    const std::map<std::uint32_t, const ObjectSign*>& before,
    const std::map<std::uint32_t, const ObjectSign*>& after)
{
    const auto sayings = [](const ObjectSign& sign) { return std::tuple(sign.entries, sign.data); };
    std::multimap<decltype(sayings(ObjectSign())), std::size_t> removed;
    for (std::size_t index = 0; index < differences.size(); ++index) {
        if (differences[index].kind == Kind::isRemoved)
            removed.emplace(sayings(*before.at(differences[index].before)), index);
    }
    std::set<std::size_t> gone;
    for (ObjectDifference& difference : differences) {
        if (difference.kind != Kind::isAdded)
            continue;
        const auto same = removed.find(sayings(*after.at(difference.after)));
        if (same == removed.end())
            continue;
        difference.kind = Kind::isMoved;
        difference.before = differences[same->second].before;
        gone.insert(same->second);
        removed.erase(same);
    }
    std::vector<ObjectDifference> kept;
    for (std::size_t index = 0; index < differences.size(); ++index) {
        if (!gone.contains(index))
            kept.push_back(differences[index]);
    }
    differences = std::move(kept);
}

std::map<std::uint32_t, const ObjectSign*> byNumber(const ObjectSigns& signs)
{
    std::map<std::uint32_t, const ObjectSign*> map;
    for (const ObjectSign& sign : signs.list)
        map.emplace(sign.number, &sign);
    return map;
}

} // namespace

std::string_view nameOf(ObjectGroup group)
{
    static constexpr std::array<std::string_view, objectGroupCount> names{"other", "page-content",
        "annotations-and-forms", "metadata", "structure", "fonts-and-images", "settings"};
    return names[static_cast<std::size_t>(group)];
}

std::string_view nameOf(ObjectDifference::Kind kind)
{
    static constexpr std::array<std::string_view, 6> names{
        "added", "freed", "replaced", "moved", "rewritten", "unreadable"};
    return names[static_cast<std::size_t>(kind)];
}

bool isDifference(ObjectDifference::Kind kind)
{
    return kind != Kind::isMoved && kind != Kind::isRewritten && kind != Kind::isUnreadable;
}

std::vector<ObjectDifference> compareVersions(const ObjectSigns& before, const ObjectSigns& after,
    const std::vector<std::uint32_t>& rewritten)
{
    const ObjectSigns first = withoutLengths(before);
    const ObjectSigns second = withoutLengths(after);
    const auto here = byNumber(first);
    const auto there = byNumber(second);
    std::vector<ObjectDifference> differences;
    for (const ObjectSign& sign : first.list) {
        const auto partner = there.find(sign.number);
        if (partner == there.end()) {
            differences.push_back(alone(sign, Kind::isRemoved));
            continue;
        }
        const ObjectDifference one
            = both(sign, *partner->second, sign.entries == partner->second->entries);
        if (one.kind != Kind::isRewritten
            || std::binary_search(rewritten.begin(), rewritten.end(), sign.number))
            differences.push_back(one);
    }
    for (const ObjectSign& sign : second.list) {
        if (!here.contains(sign.number))
            differences.push_back(alone(sign, Kind::isAdded));
    }
    joinMoved(differences, here, there);
    sort(differences);
    return differences;
}

std::vector<ObjectDifference> compareDocuments(const ObjectSigns& before, const ObjectSigns& after,
    std::map<std::uint32_t, std::uint32_t>* partners, const std::stop_token& stop)
{
    const ObjectSigns first = reachedOf(before);
    const ObjectSigns second = reachedOf(after);
    ObjectPairing pairing(first, second);
    pairing.pair(stop);
    std::vector<ObjectDifference> differences;
    for (std::size_t index = 0; index < first.list.size(); ++index) {
        const std::size_t partner = pairing.partnerOf(index);
        if (partner == ObjectPairing::none) {
            differences.push_back(alone(first.list[index], Kind::isRemoved));
            continue;
        }
        if (partners)
            partners->emplace(first.list[index].number, second.list[partner].number);
        const ObjectDifference one
            = both(first.list[index], second.list[partner], pairing.isSame(index, partner));
        if (one.kind != Kind::isRewritten)
            differences.push_back(one);
    }
    for (std::size_t index = 0; index < second.list.size(); ++index) {
        if (!pairing.isPaired(index))
            differences.push_back(alone(second.list[index], Kind::isAdded));
    }
    sort(differences);
    return differences;
}

} // namespace tarnwick
