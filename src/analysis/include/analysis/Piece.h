#pragma once

#include "analysis/ColourRole.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tarnwick {

/// What a piece of a listing is; its colour and the line feeds around its text follow from it.
enum class PieceKind : unsigned char
{
    isHeader, ///< line of an object's header: "line\n", default colour
    isSection, ///< startxref, xref, trailer: "\nline\n", default colour
    isEnd, ///< endobj, %%EOF: "line\n\n", red
    isLine, ///< any other line: "line\n", green
    isStream, ///< an elided stream: its length in words, "\n", blue
};

/// One piece of a listing: a trimmed line of the file, or the length of a stream that is not shown.
///
/// Two words, which are passed in registers: a file of a gigabyte can have a hundred million lines.
class Piece
{
public:
    Piece() = default;

    static Piece ofLine(PieceKind kind, std::size_t offset, std::size_t length)
    {
        return {kind, offset, length};
    }
    static Piece ofStream(std::size_t length) { return {PieceKind::isStream, 0, length}; }

    PieceKind kind() const { return theKind; }
    ColourRole role() const;

    /// Of a line: where its trimmed text begins in the file.
    std::size_t offset() const { return theOffset; }
    /// Of a line: how long its trimmed text is. Of an elided stream: the number shown.
    std::size_t length() const { return theLength; }

    /// Line feeds before and after the piece's text.
    std::size_t leadingBreaks() const { return kind() == PieceKind::isSection ? 1 : 0; }
    std::size_t trailingBreaks() const { return kind() == PieceKind::isEnd ? 2 : 1; }
    std::size_t lineCount() const { return leadingBreaks() + trailingBreaks(); }

private:
    static constexpr unsigned lengthBits = 56; // the kind has the rest of the second word

    Piece(PieceKind kind, std::size_t offset, std::size_t length)
        : theOffset(offset)
        , theLength(length & ((std::uint64_t{1} << lengthBits) - 1))
        , theKind(kind)
    {
    }

    std::size_t theOffset = 0;
    std::uint64_t theLength : lengthBits = 0;
    PieceKind theKind = PieceKind::isHeader;
};
static_assert(sizeof(Piece) == 16);

/// The trimmed line that a piece shows, found in the bytes that it was made from.
/// Precondition: the piece is not of kind isStream.
inline std::string_view pieceText(std::string_view bytes, Piece piece)
{
    return bytes.substr(piece.offset(), piece.length());
}

} // namespace tarnwick
