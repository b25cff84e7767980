#include "analysis/ObjectCollector.h"

#include "analysis/StructureWords.h"

#include <limits>
#include <utility>

namespace tarnwick {

namespace {

constexpr std::size_t pieceBatch = 8192;
constexpr std::uint64_t offsetMask = (std::uint64_t{1} << ObjectRecord::offsetBits) - 1;

} // namespace

ObjectCollector::ObjectCollector(
    std::string_view text, pdfObjectCatalog& catalog, PieceReceiver pieces)
    : theText(text)
    , theCatalog(catalog)
    , thePieceReceiver(std::move(pieces))
    , theParser(&catalog.theKids)
{
    thePieces.reserve(pieceBatch);
}

void ObjectCollector::takeLine(const ScannedLine& line)
{
    switch (line.kind) {
    case LineKind::isEndOfObject:
        addPiece(Piece::ofLine(PieceKind::isEnd, line.offset, line.length));
        makeRecord(line);
        break;
    case LineKind::isHeader:
        addPiece(Piece::ofLine(PieceKind::isHeader, line.offset, line.length));
        beginObject(line, theText.substr(line.offset, line.length));
        break;
    case LineKind::isEndOfFile:
        addPiece(Piece::ofLine(PieceKind::isEnd, line.offset, line.length));
        ++theVersion;
        break;
    case LineKind::isStartxref:
        addPiece(Piece::ofLine(PieceKind::isSection, line.offset, line.length));
        makeRecord(line);
        break;
    case LineKind::isXref:
        addPiece(Piece::ofLine(PieceKind::isSection, line.offset, line.length));
        break;
    case LineKind::isTrailer:
        addPiece(Piece::ofLine(PieceKind::isSection, line.offset, line.length));
        beginObject(line, trailerHeader);
        break;
    case LineKind::isPlain:
        addPiece(Piece::ofLine(PieceKind::isLine, line.offset, line.length));
        gather(line);
        break;
    }
}

void ObjectCollector::takeStream(std::size_t length)
{
    addPiece(Piece::ofStream(length));
}

void ObjectCollector::finish()
{
    flushPieces();
    theCatalog.sortList();
}

void ObjectCollector::addPiece(Piece piece)
{
    if (!thePieceReceiver)
        return;
    thePieces.push_back(piece);
    if (thePieces.size() == pieceBatch)
        flushPieces();
}

void ObjectCollector::flushPieces()
{
    if (thePieceReceiver && !thePieces.empty())
        thePieceReceiver(thePieces);
    thePieces.clear();
}

void ObjectCollector::beginObject(const ScannedLine& line, std::string_view text)
{
    theHeader = text;
    theSecondLine.reset();
    theHeaderOffset = line.start;
    isHeaderInXml = line.inXml;
    theType = ObjectType::isPlain;
    theNumbers.reset();
    theDetailIndex.reset();
    hasParsedLines = false;
    if (line.holdsType)
        noteType(text);
}

void ObjectCollector::gather(const ScannedLine& line)
{
    const std::string_view text = theText.substr(line.offset, line.length);
    if (theHeader.empty()) {
        beginObject(line, text);
        return;
    }
    if (!theSecondLine)
        theSecondLine = Piece::ofLine(PieceKind::isLine, line.offset, line.length);
    if (line.holdsType)
        noteType(text);
}

/// A line that holds "/Type" may say what the object is; the last such line decides.
void ObjectCollector::noteType(std::string_view line)
{
    const ObjectType type = objectTypeNamed(line);
    if (type != ObjectType::isPlain)
        theType = type;
}

void ObjectCollector::makeRecord(const ScannedLine& end)
{
    if (theHeader.empty())
        return;
    if (!theNumbers)
        theNumbers = headerNumbers(theHeader);
    const std::int64_t objNo = theNumbers->objNo;
    const ObjectType type = objNo >= trailerNumber ? ObjectType::isTrailer : theType;
    const std::size_t size = end.start - theHeaderOffset;
    ObjectRecord record;
    record.type = static_cast<unsigned>(type) & 7u;
    record.inXml = isHeaderInXml;
    record.objVer = theVersion;
    if (size <= ObjectRecord::longestReadAgain && objNo >= 0
        && objNo <= std::numeric_limits<std::uint32_t>::max()) {
        record.offset = theHeaderOffset & offsetMask;
        record.size = size & 0x1FFFu;
        record.number = static_cast<std::uint32_t>(objNo);
    } else {
        record.offset = end.start & offsetMask;
        record.hasDetail = 1;
        record.number = detailIndex(type, end.start);
    }
    theCatalog.theRecords.push_back(record);
}

std::uint32_t ObjectCollector::detailIndex(ObjectType type, std::size_t end)
{
    if (!theDetailIndex) {
        theDetail = ObjectDetail();
        theDetail.objNo = theNumbers->objNo;
        theDetail.objGen = theNumbers->objGen;
        theDetail.start = theHeaderOffset;
    }
    if (theDetail.textLength == 0 && theSecondLine) {
        theDetail.textOffset = theSecondLine->offset();
        theDetail.textLength = theSecondLine->length();
    }
    theDetail.entries = parsedEntries(type, end);
    if (!theDetailIndex || theCatalog.theDetails[*theDetailIndex] != theDetail) {
        theDetailIndex = static_cast<std::uint32_t>(theCatalog.theDetails.size());
        theCatalog.theDetails.push_back(theDetail);
    }
    return *theDetailIndex;
}

/// An object of one line has no dictionary that could be told from its header.
ObjectEntries ObjectCollector::parsedEntries(ObjectType type, std::size_t end)
{
    if (!DictionaryParser::hasEntries(type) || !theSecondLine)
        return {};
    if (!hasParsedLines) {
        theParser.restart();
        hasParsedLines = true;
        theUnparsedLines = ObjectLines(theText, theHeaderOffset, isHeaderInXml);
    }
    theUnparsedLines.readTo(end, [this](std::string_view line) { theParser.addLine(line); });
    return theParser.entries(type);
}

} // namespace tarnwick
