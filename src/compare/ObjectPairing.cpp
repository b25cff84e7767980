#include "ObjectPairing.h"

#include <algorithm>
#include <cstring>
#include <map>

namespace tarnwick {

namespace {

constexpr int rounds = 6; ///< of mixing: so far around it an object's neighbours count

std::uint64_t mixed(std::uint64_t key, std::uint64_t value)
{
    key ^= value + 0x9e3779b97f4a7c15u + (key << 6) + (key >> 2);
    key = (key ^ (key >> 30)) * 0xbf58476d1ce4e5b9u;
    key = (key ^ (key >> 27)) * 0x94d049bb133111ebu;
    return key ^ (key >> 31);
}

std::uint64_t keyOf(const ObjectSign& sign)
{
    std::uint64_t shape = 0;
    std::uint64_t data = 0;
    std::memcpy(&shape, sign.shape.data(), sizeof shape);
    std::memcpy(&data, sign.data.data(), sizeof data);
    return mixed(mixed(sign.isStream ? 1 : 0, shape), data);
}

} // namespace

ObjectPairing::Side::Side(const ObjectSigns& signs)
    : list(signs.list)
    , partners(signs.list.size(), none)
{
    for (std::size_t index = 0; index < list.size(); ++index) {
        places.emplace(list[index].number, index);
        keys.push_back(keyOf(list[index]));
    }
}

std::size_t ObjectPairing::Side::find(std::uint32_t number) const
{
    const auto place = places.find(number);
    return place == places.end() ? none : place->second;
}

/// What an object belongs to says nothing about it: of pages, each belongs to all others.
void ObjectPairing::Side::mix()
{
    std::vector<Key> next(keys.size());
    for (std::size_t index = 0; index < list.size(); ++index) {
        next[index] = keys[index];
        for (const SignLink& link : list[index].links) {
            const std::size_t target = link.isUpward ? none : find(link.target);
            next[index] = mixed(mixed(next[index], link.path), target == none ? 0 : keys[target]);
        }
    }
    keys = std::move(next);
}

ObjectPairing::ObjectPairing(const ObjectSigns& before, const ObjectSigns& after)
    : theBefore(before)
    , theAfter(after)
    , theRoots{before.root, after.root, before.info, after.info}
{
}

void ObjectPairing::pair(const std::stop_token& stop)
{
    const std::vector<Key> beforeKeys = theBefore.keys;
    const std::vector<Key> afterKeys = theAfter.keys;
    for (int round = 0; round < rounds; ++round) {
        if (stop.stop_requested())
            return;
        theBefore.mix();
        theAfter.mix();
    }
    // Of what is there several times, each belongs to what leads to it.
    pairByKeys(true);
    pairByWays(theRoots[0], theRoots[1]);
    pairByWays(theRoots[2], theRoots[3]);
    pairByKeys(false);
    theBefore.keys = beforeKeys;
    theAfter.keys = afterKeys;
    pairByKeys(true);
    pairByWays(0, 0);
    pairByNumbers();
}

void ObjectPairing::join(std::size_t before, std::size_t after)
{
    theBefore.partners[before] = after;
    theAfter.partners[after] = before;
    theJoined.push_back(before);
}

/// Of several that stand for the same, those of one number pair first, the others in their order.
void ObjectPairing::pairByKeys(bool isUniqueOnly)
{
    struct Alike
    {
        std::vector<std::size_t> before, after;
    };
    std::map<Key, Alike> all;
    for (std::size_t index = 0; index < theBefore.list.size(); ++index) {
        if (theBefore.partners[index] == none && theBefore.list[index].isReadable)
            all[theBefore.keys[index]].before.push_back(index);
    }
    for (std::size_t index = 0; index < theAfter.list.size(); ++index) {
        if (theAfter.partners[index] == none && theAfter.list[index].isReadable)
            all[theAfter.keys[index]].after.push_back(index);
    }
    for (auto& [key, alike] : all) {
        if (isUniqueOnly && (alike.before.size() > 1 || alike.after.size() > 1))
            continue;
        for (const std::size_t index : alike.before) {
            const std::size_t same = theAfter.find(theBefore.list[index].number);
            if (same != none && theAfter.partners[same] == none && theAfter.keys[same] == key)
                join(index, same);
        }
        auto after = alike.after.begin();
        for (const std::size_t index : alike.before) {
            while (after != alike.after.end() && theAfter.partners[*after] != none)
                ++after;
            if (after != alike.after.end() && theBefore.partners[index] == none)
                join(index, *after);
        }
    }
}

/// What the same way leads to from both of a pair belongs together, if it is not yet elsewhere.
void ObjectPairing::pairFrom(std::size_t before, std::size_t after)
{
    std::unordered_map<std::uint64_t, std::uint32_t> ways;
    for (const SignLink& link : theAfter.list[after].links)
        ways.emplace(link.path, link.target);
    for (const SignLink& link : theBefore.list[before].links) {
        const auto way = ways.find(link.path);
        if (way == ways.end())
            continue;
        const std::size_t here = theBefore.find(link.target);
        const std::size_t there = theAfter.find(way->second);
        if (here != none && there != none && theBefore.partners[here] == none
            && theAfter.partners[there] == none
            && theBefore.list[here].isStream == theAfter.list[there].isStream
            && theBefore.list[here].group == theAfter.list[there].group)
            join(here, there);
    }
}

void ObjectPairing::pairByWays(std::uint32_t before, std::uint32_t after)
{
    const std::size_t here = theBefore.find(before);
    const std::size_t there = theAfter.find(after);
    if (here != none && there != none && theBefore.partners[here] == none
        && theAfter.partners[there] == none)
        join(here, there);
    for (std::size_t next = 0; next < theJoined.size(); ++next)
        pairFrom(theJoined[next], theBefore.partners[theJoined[next]]);
    theJoined.clear();
}

void ObjectPairing::pairByNumbers()
{
    for (std::size_t index = 0; index < theBefore.list.size(); ++index) {
        const ObjectSign& sign = theBefore.list[index];
        const std::size_t there = theAfter.find(sign.number);
        if (theBefore.partners[index] == none && there != none && theAfter.partners[there] == none
            && theAfter.list[there].group == sign.group
            && theAfter.list[there].isStream == sign.isStream)
            join(index, there);
    }
}

bool ObjectPairing::isSame(std::size_t before, std::size_t after) const
{
    const ObjectSign& here = theBefore.list[before];
    const ObjectSign& there = theAfter.list[after];
    if (here.shape != there.shape || here.links.size() != there.links.size())
        return false;
    return std::equal(here.links.begin(), here.links.end(), there.links.begin(),
        [this](const SignLink& a, const SignLink& b) {
            const std::size_t first = theBefore.find(a.target);
            const std::size_t second = theAfter.find(b.target);
            return a.path == b.path
                && (first == none ? second == none : theBefore.partners[first] == second);
        });
}

} // namespace tarnwick
