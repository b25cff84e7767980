#include "analysis/pdfObjectCatalog.h"

#include "analysis/DecimalInteger.h"

#include <algorithm>
#include <utility>

namespace {

struct SortKey
{
    std::int64_t objNo;
    std::uint32_t index; ///< equal numbers keep the order of the scan

    bool operator<(const SortKey& other) const
    {
        return objNo != other.objNo ? objNo < other.objNo : index < other.index;
    }
};

void appendCount(std::size_t count, std::string_view words, std::string& text)
{
    appendDecimal(static_cast<std::int64_t>(count), text);
    text += words;
}

} // namespace

pdfObjectCatalog::pdfObjectCatalog(SharedBytes bytes)
    : theBytes(std::move(bytes))
{
}

pdfObject pdfObjectCatalog::listedObject(std::size_t index) const
{
    return object(theOrder.empty() ? index : theOrder[index]);
}

/// Versions only rise during a scan, so each version is a stretch of the records to be sorted by
/// itself; most files hold their objects in order and need no list at all.
void pdfObjectCatalog::sortList()
{
    const auto inOrder = [this](std::size_t index) {
        const ObjectRecord& before = theRecords[index - 1];
        const ObjectRecord& record = theRecords[index];
        return before.objVer != record.objVer || objNo(before) <= objNo(record);
    };
    std::size_t index = 1;
    while (index < size() && inOrder(index))
        ++index;
    if (index >= size())
        return;

    theOrder.reserve(size());
    std::vector<SortKey> keys;
    for (std::size_t start = 0; start < size();) {
        const std::uint32_t version = theRecords[start].objVer;
        keys.clear();
        for (index = start; index < size() && theRecords[index].objVer == version; ++index)
            keys.push_back({objNo(theRecords[index]), static_cast<std::uint32_t>(index)});
        std::sort(keys.begin(), keys.end());
        for (const SortKey& key : keys)
            theOrder.push_back(key.index);
        start = index;
    }
}

ObjectCounts pdfObjectCatalog::counts() const
{
    ObjectCounts counts;
    counts.total = size();
    for (std::size_t index = 0; index < size(); ++index) {
        const ObjectRecord& record = theRecords[index];
        const ObjectType type = record.objType();
        counts.pages += type == ObjectType::isPage;
        counts.catalogs += type == ObjectType::isCatalog;
        counts.infoObjects += type == ObjectType::isInfo;
        counts.trailers += type == ObjectType::isTrailer;
        counts.maximumVersion = std::max<std::int64_t>(counts.maximumVersion, record.objVer);
    }
    return counts;
}

std::string pdfObjectCatalog::makeSummary() const
{
    const ObjectCounts numbers = counts();
    std::string text = "contains ";
    appendCount(numbers.total, " objects, consisting of:\n", text);
    appendCount(numbers.pages, " pages\n", text);
    appendCount(numbers.catalogs, " catalogs, ", text);
    appendCount(numbers.infoObjects, " info objects, ", text);
    appendCount(numbers.trailers, " trailers.\nMaximum version = ", text);
    appendDecimal(numbers.maximumVersion, text);
    return text;
}
