#include "ObjectReading.h"

#include "analysis/DictionaryParser.h"
#include "analysis/HeaderNumbers.h"
#include "analysis/ObjectLines.h"
#include "analysis/pdfObjectCatalog.h"

namespace tarnwick {

std::vector<std::string_view> readLines(const pdfObjectCatalog& catalog, const ObjectRecord& record)
{
    constexpr std::size_t usualLines = 8;
    const std::size_t start
        = record.hasDetail ? catalog.detail(record).start : std::size_t{record.offset};
    std::vector<std::string_view> lines;
    lines.reserve(usualLines);
    ObjectLines(catalog.bytes(), start, record.inXml != 0)
        .readTo(record.end(), [&lines](std::string_view line) { lines.push_back(line); });
    return lines;
}

ObjectReading::ObjectReading(const pdfObjectCatalog& catalog, const ObjectRecord& record)
{
    if (!record.hasDetail) {
        readAgain(catalog, record);
        return;
    }
    theDetail = catalog.detail(record);
    theText = catalog.bytes().substr(theDetail.textOffset, theDetail.textLength);
    theKids = &catalog.kids();
}

void ObjectReading::readAgain(const pdfObjectCatalog& catalog, const ObjectRecord& record)
{
    const std::vector<std::string_view> lines = readLines(catalog, record);
    const HeaderNumbers numbers = headerNumbers(lines.front());
    theDetail.objNo = numbers.objNo;
    theDetail.objGen = numbers.objGen;
    if (lines.size() < 2)
        return;
    theText = lines[1];
    if (!DictionaryParser::hasEntries(record.objType()))
        return;
    DictionaryParser parser(&theOwnKids);
    for (const std::string_view line : lines)
        parser.addLine(line);
    theDetail.entries = parser.entries(record.objType());
}

} // namespace tarnwick
