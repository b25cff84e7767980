#include "analysis/ObjectCollector.h"

#include "analysis/DecimalInteger.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr std::size_t pieceBatch = 8192;
constexpr std::uint64_t offsetMask = (std::uint64_t{1} << Piece::offsetBits) - 1;

struct TypeName
{
    std::string_view name;
    ObjectType type;
};

/// In the order of their test: every line that holds "/Pages" holds "/Page" too.
constexpr std::array typeNames{
    TypeName{"/Catalog", ObjectType::isCatalog},
    TypeName{"/Pages", ObjectType::isPages},
    TypeName{"/Page", ObjectType::isPage},
    TypeName{"/Info", ObjectType::isInfo},
    TypeName{"/Names", ObjectType::isNames},
};

struct HeaderNumbers
{
    std::int64_t objNo = 0;
    std::int64_t objGen = 0;
};

/// The numbers of a header line: its first two pieces between single spaces, where there is a
/// third.
HeaderNumbers headerNumbers(std::string_view header)
{
    const std::size_t first = header.find(' ');
    if (first == std::string_view::npos)
        return {};
    const std::size_t second = header.find(' ', first + 1);
    if (second == std::string_view::npos)
        return {};
    return {decimalInteger(header.substr(0, first)).value_or(0),
        decimalInteger(header.substr(first + 1, second - first - 1)).value_or(0)};
}

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
    theLineCount = 1;
    theHeader = text;
    theFurtherLines.clear();
    theHeaderOffset = line.start;
    theHeaderInXml = line.inXml;
    theType = ObjectType::isPlain;
    theNumbersAreRead = false;
    theParsedLines = 0;
    if (line.holdsType)
        noteType(text);
}

void ObjectCollector::gather(const ScannedLine& line)
{
    const std::string_view text = theText.substr(line.offset, line.length);
    if (theLineCount == 0) {
        beginObject(line, text);
        return;
    }
    theFurtherLines.push_back(Piece::ofLine(PieceKind::isLine, line.offset, line.length));
    ++theLineCount;
    if (line.holdsType)
        noteType(text);
}

/// A line that holds "/Type" may say what the object is; the last such line decides.
void ObjectCollector::noteType(std::string_view line)
{
    std::size_t best = typeNames.size();
    for (std::size_t slash = line.find('/'); slash < line.size() && best > 0;
         slash = line.find('/', slash + 1)) {
        const std::string_view name = line.substr(slash);
        for (std::size_t index = 0; index < best; ++index) {
            if (name.size() > 1 && name[1] == typeNames[index].name[1]
                && name.starts_with(typeNames[index].name))
                best = index;
        }
    }
    if (best < typeNames.size())
        theType = typeNames[best].type;
}

void ObjectCollector::makeRecord(const ScannedLine& end)
{
    if (theLineCount == 0)
        return;
    readNumbers();
    ObjectRecord record;
    record.objNo = theNumber;
    const ObjectType type = theNumber >= trailerNumber ? ObjectType::isTrailer : theType;
    record.type = static_cast<unsigned>(type) & 7u;
    record.headerOffset = theHeaderOffset & offsetMask;
    record.inXml = theHeaderInXml;
    record.endOffset = end.start & offsetMask;
    record.objVer = theVersion;
    if (!theFurtherLines.empty())
        noteText(theFurtherLines.front(), record);
    const bool isSmallPage = type == ObjectType::isPage
        && end.start - theHeaderOffset <= ObjectRecord::longestReadAgain;
    if ((type != ObjectType::isPlain && !isSmallPage) || theGeneration != 0
        || record.textDistance == ObjectRecord::farText)
        record.detail = addDetail(type);
    theCatalog.theRecords.push_back(record);
}

void ObjectCollector::readNumbers()
{
    if (theNumbersAreRead)
        return;
    const HeaderNumbers numbers = headerNumbers(theHeader);
    theNumber = numbers.objNo;
    theGeneration = numbers.objGen;
    theNumbersAreRead = true;
}

void ObjectCollector::noteText(Piece line, ObjectRecord& record) const
{
    const std::size_t distance = line.offset() - theHeaderOffset;
    record.hasText = 1;
    record.textDistance
        = std::min<std::uint64_t>(distance, ObjectRecord::farText) & ObjectRecord::farText;
    record.excerptLength = std::min(line.shortLength(), ObjectRecord::excerptLimit) & 0x7Fu;
}

/// @returns the detail's index.
std::uint32_t ObjectCollector::addDetail(ObjectType type)
{
    ObjectDetail detail;
    detail.objGen = theGeneration;
    if (!theFurtherLines.empty()) {
        const Piece line = theFurtherLines.front();
        detail.textOffset = line.offset();
        if (type == ObjectType::isInfo || type == ObjectType::isNames)
            detail.textLength = pieceText(theText, line).size();
    }
    detail.entries = parsedEntries(type);
    theCatalog.theDetails.push_back(detail);
    return static_cast<std::uint32_t>(theCatalog.theDetails.size() - 1);
}

/// An object of one line has no dictionary that could be told from its header.
ObjectEntries ObjectCollector::parsedEntries(ObjectType type)
{
    const bool hasEntries = type == ObjectType::isCatalog || type == ObjectType::isPages
        || type == ObjectType::isPage || type == ObjectType::isTrailer;
    if (!hasEntries || theLineCount < 2)
        return {};
    if (theParsedLines == 0) {
        theParser.restart();
        theParser.addLine(theHeader);
        theParsedLines = 1;
    }
    for (; theParsedLines < theLineCount; ++theParsedLines)
        theParser.addLine(pieceText(theText, theFurtherLines[theParsedLines - 1]));
    return theParser.entries(type);
}
