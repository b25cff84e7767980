// Finding one's way in a catalog by its two orders: the object list's and the file's.

#include "analysis/StructureWords.h"
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

} // namespace

std::size_t pdfObjectCatalog::versionsUpTo(std::int64_t objVer) const
{
    return firstWhere(0, theVersionStarts.size(),
        [&](std::size_t version) { return theRecords[theVersionStarts[version]].objVer > objVer; });
}

pdfObjectCatalog::ListRange pdfObjectCatalog::rangeIn(
    std::size_t version, std::int64_t number) const
{
    const auto objNoOf
        = [this](std::size_t listed) { return objNo(theRecords[scanIndex(listed)]); };
    const std::size_t end
        = version + 1 < theVersionStarts.size() ? theVersionStarts[version + 1] : size();
    ListRange range;
    range.begin = firstWhere(theVersionStarts[version], end,
        [&](std::size_t listed) { return objNoOf(listed) >= number; });
    range.end = firstWhere(
        range.begin, end, [&](std::size_t listed) { return objNoOf(listed) > number; });
    return range;
}

pdfObjectCatalog::ListRange pdfObjectCatalog::rangeOf(const pdfObject& object) const
{
    return rangeIn(versionsUpTo(object.objVer()) - 1, object.objNo());
}

/// Equal objects stand in the list as in the file, and so do their starts.
std::size_t pdfObjectCatalog::firstFrom(const ListRange& range, std::size_t offset) const
{
    return firstWhere(range.begin, range.end,
        [&](std::size_t listed) { return startOf(theRecords[scanIndex(listed)]) >= offset; });
}

std::optional<pdfObject> pdfObjectCatalog::find(std::int64_t number, std::int64_t objVer) const
{
    for (std::size_t version = versionsUpTo(objVer); version-- > 0;) {
        const ListRange range = rangeIn(version, number);
        if (range.begin == range.end)
            continue;
        const std::size_t start = startOf(theRecords[scanIndex(range.end - 1)]);
        return listedObject(firstFrom(range, start));
    }
    return std::nullopt;
}

/// Of records with the same lines the first is the object; they follow each other.
std::vector<pdfObject> pdfObjectCatalog::findAll(std::int64_t number) const
{
    std::vector<pdfObject> objects;
    for (std::size_t version = 0; version < theVersionStarts.size(); ++version) {
        const ListRange range = rangeIn(version, number);
        for (std::size_t listed = range.begin; listed < range.end; ++listed) {
            const pdfObject object = listedObject(listed);
            if (objects.empty() || objects.back().range().begin != object.range().begin)
                objects.push_back(object);
        }
    }
    return objects;
}

std::optional<pdfObject> pdfObjectCatalog::findAfter(const pdfObject& object) const
{
    const ListRange own = rangeOf(object);
    const std::size_t later = firstFrom(own, object.range().begin + 1);
    if (later < own.end)
        return listedObject(later);
    for (std::size_t version = versionsUpTo(object.objVer()); version < theVersionStarts.size();
         ++version) {
        const ListRange range = rangeIn(version, object.objNo());
        if (range.begin < range.end)
            return listedObject(range.begin);
    }
    return std::nullopt;
}

/// Nearly all such lines hold nothing else. What begins there with a header is another object,
/// which the listing does not have.
std::size_t pdfObjectCatalog::endOf(const ObjectRecord& record) const
{
    constexpr std::size_t mostRead = 4096;
    const std::size_t begin = record.end();
    const std::string_view text = bytes().substr(begin, mostRead);
    if (text.starts_with(LineWord::endobj) || text.starts_with(LineWord::startxref)
        || startOf(record) == begin)
        return begin;
    const std::string_view line = text.substr(0, text.find_first_of("\r\n"));
    const std::size_t word = std::min(line.find(LineWord::endobj), line.find(LineWord::startxref));
    const bool isOwn = word != line.npos && line.substr(0, word).find(LineWord::obj) == line.npos;
    return isOwn ? begin + word : begin;
}

/// What records say on the lines that end them lies before any other record.
std::size_t pdfObjectCatalog::firstEndingBehind(std::size_t offset) const
{
    std::size_t first = firstWhere(
        0, size(), [&](std::size_t record) { return theRecords[record].end() > offset; });
    while (first > 0 && endOf(theRecords[first - 1]) > offset)
        --first;
    return first;
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
    const ListRange range = rangeOf(object);
    return firstWhere(range.begin, range.end,
        [&](std::size_t listed) { return scanIndex(listed) >= object.index(); });
}

} // namespace tarnwick
