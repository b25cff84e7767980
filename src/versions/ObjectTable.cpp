#include "ObjectTable.h"

#include <algorithm>

namespace tarnwick {

ObjectTable::Slot& ObjectTable::slot(std::uint32_t number)
{
    const std::size_t chunk = number / chunkSize;
    if (chunk >= theChunks.size())
        theChunks.resize(chunk + 1);
    if (!theChunks[chunk])
        theChunks[chunk] = std::make_unique<Chunk>();
    return (*theChunks[chunk])[number % chunkSize];
}

ObjectTable::Slot ObjectTable::find(std::uint32_t number) const
{
    const std::size_t chunk = number / chunkSize;
    return chunk < theChunks.size() && theChunks[chunk] ? (*theChunks[chunk])[number % chunkSize]
                                                        : Slot();
}

template<typename Visit> void ObjectTable::forEach(Visit&& visit) const
{
    for (std::size_t chunk = 0; chunk < theChunks.size(); ++chunk) {
        if (!theChunks[chunk])
            continue;
        for (std::size_t index = 0; index < chunkSize; ++index) {
            if (const Slot& slot = (*theChunks[chunk])[index]; slot.isUsed())
                visit(static_cast<std::uint32_t>(chunk * chunkSize + index), slot);
        }
    }
}

void ObjectTable::addBelow(const Layer& layer)
{
    forEachRow(layer, [this](const CrossReferenceRow& row) {
        Slot& there = slot(row.number);
        if (there.isKnown)
            return;
        there = {row.place, row.detail, row.use, true};
        ++theSize;
        if (row.use == RowUse::isPacked)
            theStreams.insert(static_cast<std::uint32_t>(row.place));
    });
}

ObjectChanges ObjectTable::putOnTop(const Layer& layer)
{
    ObjectChanges changes;
    std::unordered_set<std::uint32_t> seen;
    forEachRow(layer, [&](const CrossReferenceRow& row) {
        if (!seen.insert(row.number).second)
            return;
        Slot& there = slot(row.number);
        const Slot before = there;
        there = {row.place, row.detail, row.use, true};
        theSize += before.isKnown ? 0 : 1;
        if (row.use == RowUse::isPacked)
            theStreams.insert(static_cast<std::uint32_t>(row.place));
        if (row.number == 0)
            return;
        if (!before.isUsed() && there.isUsed())
            changes.added.push_back(row.number);
        else if (before.isUsed() && !there.isUsed())
            changes.freed.push_back(row.number);
        else if (before.isUsed() && before != there)
            changes.replaced.push_back(row.number);
    });
    for (auto* list : {&changes.added, &changes.replaced, &changes.freed})
        std::sort(list->begin(), list->end());
    return changes;
}

std::vector<std::uint32_t> ObjectTable::membersOf(const std::vector<std::uint32_t>& streams) const
{
    std::unordered_set<std::uint32_t> wanted;
    for (const std::uint32_t number : streams) {
        if (theStreams.contains(number))
            wanted.insert(number);
    }
    std::vector<std::uint32_t> members;
    if (wanted.empty())
        return members;
    forEach([&](std::uint32_t number, const Slot& slot) {
        if (slot.use == RowUse::isPacked && wanted.contains(static_cast<std::uint32_t>(slot.place)))
            members.push_back(number);
    });
    return members;
}

bool ObjectTable::isSame(const ObjectTable& other, const Slot& mine, const Slot& theirs) const
{
    if (mine != theirs)
        return false;
    const auto stream = static_cast<std::uint32_t>(mine.place);
    return mine.use != RowUse::isPacked || find(stream) == other.find(stream);
}

ObjectChanges ObjectTable::changes(const ObjectTable& before, const ObjectTable& now)
{
    ObjectChanges changes;
    now.forEach([&](std::uint32_t number, const Slot& slot) {
        if (number == 0)
            return;
        const Slot there = before.find(number);
        if (!there.isUsed())
            changes.added.push_back(number);
        else if (!now.isSame(before, slot, there))
            changes.replaced.push_back(number);
    });
    before.forEach([&](std::uint32_t number, const Slot&) {
        if (number != 0 && !now.find(number).isUsed())
            changes.freed.push_back(number);
    });
    return changes;
}

std::vector<CrossReferenceRow> ObjectTable::rows() const
{
    std::vector<CrossReferenceRow> rows;
    forEach([&](std::uint32_t number, const Slot& slot) {
        if (number != 0)
            rows.push_back({slot.place, number, slot.detail, slot.use});
    });
    return rows;
}

bool ObjectTable::isWithin(const CrossReferenceRow& row, std::size_t fileSize) const
{
    if (row.use == RowUse::isPlain)
        return row.place < fileSize;
    return row.use == RowUse::isFree
        || find(static_cast<std::uint32_t>(row.place)).use == RowUse::isPlain;
}

bool ObjectTable::isWithin(std::size_t fileSize) const
{
    bool isWithin = true;
    forEach([&](std::uint32_t number, const Slot& slot) {
        isWithin
            = isWithin && this->isWithin({slot.place, number, slot.detail, slot.use}, fileSize);
    });
    return isWithin;
}

} // namespace tarnwick
