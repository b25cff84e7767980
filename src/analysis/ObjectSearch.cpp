// Finding one's way in a catalog by its two orders: the object list's and the file's.

#include "analysis/pdfObjectCatalog.h"

#include <algorithm>

namespace tarnwick {

namespace {

/// The first number from begin on for which isBehind holds, or end.
template<class IsBehind>
std::size_t firstWhere(std::size_t begin, std::size_t end, IsBehind isBehind)
{
    while (begin < end) {
        const std::size_t middle = begin + (end - begin) / 2;
        if (isBehind(middle))
            end = middle;
        else
            begin = middle + 1;
    }
    return begin;
}

/// A file may have a version for each object: searching in each of so many takes longer than
/// looking at all objects before them.
constexpr std::size_t mostVersionsSearched = 1000;

} // namespace

std::size_t pdfObjectCatalog::lowerBound(std::int64_t objVer, std::int64_t number) const
{
    return firstWhere(0, size(), [&](std::size_t listed) {
        const ObjectRecord& record = theRecords[scanIndex(listed)];
        return record.objVer != objVer ? record.objVer > objVer : objNo(record) >= number;
    });
}

pdfObjectCatalog::ListRange pdfObjectCatalog::rangeOf(
    std::int64_t number, std::int64_t objVer) const
{
    ListRange range;
    range.begin = lowerBound(objVer, number);
    range.end = firstWhere(range.begin, size(), [&](std::size_t listed) {
        const ObjectRecord& record = theRecords[scanIndex(listed)];
        return record.objVer != objVer || objNo(record) != number;
    });
    return range;
}

template<class Take>
void pdfObjectCatalog::forEachVersion(std::int64_t number, std::int64_t objVer, Take take) const
{
    constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
    std::size_t end = objVer == std::numeric_limits<std::int64_t>::max()
        ? size()
        : lowerBound(objVer + 1, lowest);
    for (std::size_t searched = 0; end > 0 && searched < mostVersionsSearched; ++searched) {
        const std::int64_t version = theRecords[scanIndex(end - 1)].objVer;
        const ListRange range = rangeOf(number, version);
        if (range.begin < range.end && !take(range))
            return;
        end = lowerBound(version, lowest);
    }
    while (end > 0) {
        const ObjectRecord& record = theRecords[scanIndex(--end)];
        if (objNo(record) == number) {
            const ListRange range = rangeOf(number, record.objVer);
            if (!take(range))
                return;
            end = range.begin;
        }
    }
}

/// Equal objects stand in the list as in the file, and so do their starts.
std::size_t pdfObjectCatalog::firstFrom(const ListRange& range, std::size_t offset) const
{
    return firstWhere(range.begin, range.end,
        [&](std::size_t listed) { return startOf(theRecords[scanIndex(listed)]) >= offset; });
}

std::optional<pdfObject> pdfObjectCatalog::find(std::int64_t number, std::int64_t objVer) const
{
    std::optional<pdfObject> found;
    forEachVersion(number, objVer, [&](const ListRange& range) {
        const std::size_t start = startOf(theRecords[scanIndex(range.end - 1)]);
        found = listedObject(firstFrom(range, start));
        return false;
    });
    return found;
}

std::vector<pdfObject> pdfObjectCatalog::findAll(std::int64_t number) const
{
    std::vector<pdfObject> objects;
    forEachVersion(number, std::numeric_limits<std::int64_t>::max(), [&](const ListRange& range) {
        for (std::size_t listed = range.end; listed-- > range.begin;) {
            const pdfObject object = listedObject(listed);
            // Of records with the same lines the first is the object; they follow each other.
            if (!objects.empty() && objects.back().range().begin == object.range().begin)
                objects.back() = object;
            else
                objects.push_back(object);
        }
        return true;
    });
    std::reverse(objects.begin(), objects.end());
    return objects;
}

std::optional<pdfObject> pdfObjectCatalog::findAfter(const pdfObject& object) const
{
    const std::int64_t number = object.objNo();
    const ListRange own = rangeOf(number, object.objVer());
    const std::size_t later = firstFrom(own, object.range().begin + 1);
    if (later < own.end)
        return listedObject(later);
    constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
    std::size_t next = lowerBound(object.objVer() + 1, lowest);
    for (std::size_t searched = 0; next < size() && searched < mostVersionsSearched; ++searched) {
        const std::int64_t version = theRecords[scanIndex(next)].objVer;
        const ListRange range = rangeOf(number, version);
        if (range.begin < range.end)
            return listedObject(range.begin);
        next = lowerBound(version + 1, lowest);
    }
    while (next < size() && objNo(theRecords[scanIndex(next)]) != number)
        ++next;
    return next < size() ? std::optional(listedObject(next)) : std::nullopt;
}

std::size_t pdfObjectCatalog::firstEndingBehind(std::size_t offset) const
{
    return firstWhere(
        0, size(), [&](std::size_t record) { return theRecords[record].end() > offset; });
}

std::optional<pdfObject> pdfObjectCatalog::recordAt(std::size_t offset) const
{
    const std::size_t index = firstEndingBehind(offset);
    if (index == size() || startOf(theRecords[index]) > offset)
        return std::nullopt;
    return object(index);
}

std::size_t pdfObjectCatalog::listIndex(const pdfObject& object) const
{
    if (theOrder.empty())
        return object.index();
    const ListRange range = rangeOf(object.objNo(), object.objVer());
    return firstWhere(range.begin, range.end,
        [&](std::size_t listed) { return scanIndex(listed) >= object.index(); });
}

} // namespace tarnwick
