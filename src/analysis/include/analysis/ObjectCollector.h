#pragma once

#include "analysis/DictionaryParser.h"
#include "analysis/HeaderNumbers.h"
#include "analysis/LineScan.h"
#include "analysis/ObjectLines.h"
#include "analysis/ObjectRecord.h"
#include "analysis/Piece.h"
#include "analysis/pdfObjectCatalog.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace tarnwick {

/// Receives a listing as it grows, some thousand pieces at a time; the span is valid during the
/// call.
using PieceReceiver = std::function<void(std::span<const Piece>)>;

/// The receiver of a file's scan: makes the pieces of the listing, gathers the lines of each
/// object, and adds a record to the catalog where an object ends.
///
/// A record is made at every "endobj" and at every "startxref". The gathered lines are replaced
/// only by a new header or trailer, so two records can share lines; what has been read of them is
/// kept, not read again.
class ObjectCollector
{
public:
    /// @param text, catalog, pieces borrowed; pieces may be empty when no listing is wanted.
    ObjectCollector(std::string_view text, pdfObjectCatalog& catalog, PieceReceiver pieces);

    void takeLine(const ScannedLine& line);
    void takeStream(std::size_t length);

    /// To be called behind the last line: hands over the last pieces and sorts the object list.
    void finish();

private:
    void addPiece(Piece piece);
    void flushPieces();

    /// The line becomes the first of the lines gathered. @param text the line, or what stands for
    /// it.
    void beginObject(const ScannedLine& line, std::string_view text);
    void gather(const ScannedLine& line);
    void noteType(std::string_view line);
    void makeRecord(const ScannedLine& end);
    /// @returns the index of a detail that says what the lines gathered so far say.
    /// @param end start of the line behind them.
    std::uint32_t detailIndex(ObjectType type, std::size_t end);
    ObjectEntries parsedEntries(ObjectType type, std::size_t end);

    std::string_view theText;
    pdfObjectCatalog& theCatalog;
    PieceReceiver thePieceReceiver;
    std::vector<Piece> thePieces; ///< not handed over yet

    std::uint32_t theVersion = 1;
    std::string_view theHeader; ///< the first of the lines gathered; empty when there is none
    std::size_t theHeaderOffset = 0; ///< start of its line in the file
    bool isHeaderInXml = false;
    std::optional<Piece> theSecondLine;
    ObjectType theType = ObjectType::isPlain; ///< as far as the lines gathered say
    std::optional<HeaderNumbers> theNumbers; ///< read when a record asks for them
    std::optional<std::uint32_t> theDetailIndex; ///< the last detail that the catalog has of them
    ObjectDetail theDetail; ///< what that one says

    DictionaryParser theParser;
    ObjectLines theUnparsedLines; ///< of the lines gathered, those that the parser has not read
    bool hasParsedLines = false;
};

} // namespace tarnwick
