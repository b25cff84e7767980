#pragma once

#include "analysis/ColourRole.h"
#include "analysis/PieceList.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

class pdfObject;
class pdfObjectCatalog;

/// A text made of coloured pieces: a listing of a file, an object list, or the one after the other.
///
/// Nothing of the text is stored. The listing's pieces point into the file's bytes, the object
/// list's lines are made from the catalog's records when they are asked for. Copies share both.
/// Immutable; any thread may read.
///
/// Characters are those of the file, one per byte (byte value = character number), and U+2026. All
/// lengths count these characters; each is one UTF-16 unit.
class StyledText
{
public:
    /// An empty text: no piece, one empty line.
    StyledText();

    /// @param pieces the listing; none for an empty one.
    /// @param catalog whose object list follows the listing; none for an empty list. It keeps the
    ///   bytes of both alive.
    StyledText(
        std::shared_ptr<const PieceList> pieces, std::shared_ptr<const pdfObjectCatalog> catalog);

    /// Receives a piece: its colour and its characters, which are valid during the call.
    using PieceSink = std::function<void(ColourRole role, std::u16string_view text)>;

    /// Number of pieces, in the order in which they were appended.
    std::size_t pieceCount() const;
    /// Hands over every piece in order.
    void forEachPiece(const PieceSink& sink) const;

    /// Lines are separated by "\n"; there is always a last one, empty after a final "\n".
    std::size_t lineCount() const;

    /// Length of a line without its end. Precondition: index < lineCount().
    std::size_t lineLength(std::size_t index) const;

    /// The file's bytes, into which the listing looks; empty without a listing.
    std::string_view bytes() const { return thePieces ? thePieces->bytes() : std::string_view(); }

    /// The line of the listing that shows an offset of the file (PieceList::lineOf()); nothing
    /// where the text has no listing.
    std::optional<std::size_t> lineOfOffset(std::size_t offset) const;
    /// Where a line's text begins in the file: of the listing as PieceList::offsetOf() says, of the
    /// object list its object's first line. Nothing for the last, empty line.
    /// Precondition: index < lineCount().
    std::optional<std::size_t> offsetOfLine(std::size_t index) const;
    /// The line that describes an object in the object list; nothing where the text has no list.
    /// Precondition: the object is of the catalog that this text was made with.
    std::optional<std::size_t> lineOfObject(const pdfObject& object) const;
    /// The object that a line of the object list describes; nothing for other lines.
    /// Precondition: index < lineCount().
    std::optional<pdfObject> objectOfLine(std::size_t index) const;

    /// Appends a stretch of a line to text: at most count characters from position on.
    /// Precondition: index < lineCount(), position <= lineLength(index).
    /// @returns the line's colour; all of a line has one.
    ColourRole appendLine(
        std::size_t index, std::size_t position, std::size_t count, std::u16string& text) const;

private:
    std::size_t listingPieces() const;
    std::size_t listingLines() const; ///< complete lines, each with its "\n"

    std::shared_ptr<const PieceList> thePieces;
    std::shared_ptr<const pdfObjectCatalog> theCatalog;
};

/// Appends a piece of a listing of these bytes as it reads, its line feeds included.
void appendPiece(std::string_view bytes, Piece piece, std::u16string& text);

} // namespace tarnwick
