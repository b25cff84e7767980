#include "analysis/pdfObjectCatalog.h"

#include "DecimalInteger.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace tarnwick {

namespace {

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
    return object(scanIndex(index));
}

bool pdfObjectCatalog::comesBefore(std::uint32_t one, std::uint32_t other) const
{
    const ObjectRecord& first = theRecords[one];
    const ObjectRecord& second = theRecords[other];
    return first.objVer != second.objVer ? first.objVer < second.objVer
                                         : objNo(first) < objNo(second);
}

/// Files hold their objects in order, or in a few runs that are: one that is made for the Web has
/// two, and a trailer behind objects of higher numbers is a run of its own. Merging runs leaves
/// equal objects in the order of the scan.
void pdfObjectCatalog::sortList()
{
    const auto count = static_cast<std::uint32_t>(size());
    std::vector<std::uint32_t> starts;
    for (std::uint32_t index = 0; index < count; ++index) {
        if (index == 0 || comesBefore(index, index - 1))
            starts.push_back(index);
        if (index == 0 || theRecords[index].objVer != theRecords[index - 1].objVer)
            theVersionStarts.push_back(index);
    }
    if (starts.size() < 2)
        return;

    theOrder.resize(count);
    std::iota(theOrder.begin(), theOrder.end(), 0u);
    const auto startOf = [&](std::size_t run) {
        return theOrder.begin() + (run < starts.size() ? starts[run] : count);
    };
    while (starts.size() > 1) {
        std::vector<std::uint32_t> merged;
        for (std::size_t run = 0; run < starts.size(); run += 2) {
            std::inplace_merge(startOf(run), startOf(run + 1), startOf(run + 2),
                [this](std::uint32_t one, std::uint32_t other) { return comesBefore(one, other); });
            merged.push_back(starts[run]);
        }
        starts = std::move(merged);
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

} // namespace tarnwick
