#pragma once

#include "analysis/ColourRole.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

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
/// Eight bytes, because a file of a gigabyte can have a hundred million lines. Offsets reach to
/// 1 TiB. Lines of 2 MiB and more carry only a mark; pieceText() finds their end again.
class Piece
{
public:
    /// The number of bits that offsets and stream lengths have.
    static constexpr unsigned offsetBits = 40;
    static constexpr std::uint64_t longLength = (std::uint64_t{1} << 21) - 1;

    Piece() = default;

    static Piece ofLine(PieceKind kind, std::size_t offset, std::size_t length)
    {
        return Piece(kind, offset, length < longLength ? length : longLength);
    }
    static Piece ofStream(std::size_t length) { return Piece(PieceKind::isStream, length, 0); }

    PieceKind kind() const { return static_cast<PieceKind>(theBits & 7u); }
    ColourRole role() const;

    /// Of a line: where its trimmed text begins in the file.
    std::size_t offset() const { return theBits >> (64 - offsetBits); }
    /// Of an elided stream: the number shown.
    std::size_t streamLength() const { return offset(); }

    bool isLong() const { return shortLength() == longLength; }
    /// Of a line that is not long.
    std::size_t shortLength() const { return (theBits >> 3) & longLength; }

    /// Line feeds before and after the piece's text.
    std::size_t leadingBreaks() const { return kind() == PieceKind::isSection ? 1 : 0; }
    std::size_t trailingBreaks() const { return kind() == PieceKind::isEnd ? 2 : 1; }
    std::size_t lineCount() const { return leadingBreaks() + trailingBreaks(); }

private:
    Piece(PieceKind kind, std::size_t offset, std::uint64_t length)
        : theBits((std::uint64_t{offset} << (64 - offsetBits)) | (length << 3)
            | static_cast<std::uint64_t>(kind))
    {
    }

    std::uint64_t theBits = 0;
};

/// The trimmed line that a piece shows, found in the bytes that it was made from.
/// Precondition: the piece is not of kind isStream.
std::string_view pieceText(std::string_view bytes, Piece piece);
