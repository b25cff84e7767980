#include "analysis/ObjectReading.h"

#include "analysis/DictionaryParser.h"
#include "analysis/HeaderNumbers.h"
#include "analysis/LineScan.h"
#include "analysis/pdfObjectCatalog.h"

#include <utility>

namespace {

/// Gathers an object's lines anew, the way ObjectCollector came by them.
class LineGatherer
{
public:
    LineGatherer(std::string_view text, std::size_t end)
        : theText(text)
        , theEnd(end)
    {
        lines.reserve(usualLines);
    }

    void takeLine(const ScannedLine& line)
    {
        isDone = isDone || line.start >= theEnd;
        if (isDone)
            return;
        if (lines.empty() && line.kind == LineKind::isTrailer)
            lines.push_back(trailerHeader);
        else if (lines.empty() || line.kind == LineKind::isPlain)
            lines.push_back(theText.substr(line.offset, line.length));
    }
    void takeStream(std::size_t) const { }

    std::vector<std::string_view> lines;
    bool isDone = false;

private:
    static constexpr std::size_t usualLines = 8;

    std::string_view theText;
    std::size_t theEnd;
};

} // namespace

std::vector<std::string_view> readLines(const pdfObjectCatalog& catalog, const ObjectRecord& record)
{
    const std::string_view bytes = catalog.bytes();
    const std::size_t start
        = record.hasDetail ? catalog.detail(record).start : std::size_t{record.offset};
    LineGatherer gatherer(bytes, record.end());
    LineScan scan(bytes, gatherer, start, record.inXml != 0);
    while (!gatherer.isDone && scan.advance(BlockMasks::blockSize))
        ;
    return std::move(gatherer.lines);
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
