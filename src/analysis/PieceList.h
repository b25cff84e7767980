#pragma once

#include "analysis/ChunkedVector.h"
#include "analysis/Piece.h"

#include <cstddef>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

/// The pieces of a listing, in order, and the lines that they make up.
class PieceList
{
public:
    /// Where a line of the listing is: the piece, and which of the piece's lines.
    struct Place
    {
        std::size_t piece = 0;
        std::size_t line = 0;
    };

    /// @param bytes what the pieces point into; borrowed.
    explicit PieceList(std::string_view bytes)
        : theBytes(bytes)
    {
    }

    void append(std::span<const Piece> pieces);

    std::string_view bytes() const { return theBytes; }
    std::size_t size() const { return thePieces.size(); }
    Piece piece(std::size_t index) const { return thePieces[index]; }
    /// The trimmed line of a piece that is no stream; fast also for a line of a gigabyte.
    std::string_view text(std::size_t index) const;

    /// Complete lines, each with its line feed.
    std::size_t lineCount() const { return theLineCount; }
    /// Precondition: line < lineCount().
    Place placeOfLine(std::size_t line) const;

private:
    /// A line number is kept for every so many pieces; the rest is counted from there.
    static constexpr std::size_t stride = 256;

    std::string_view theBytes;
    ChunkedVector<Piece> thePieces;
    std::vector<std::size_t> theLineOfStride; ///< first line of pieces 0, stride, 2 * stride, ...
    std::vector<std::pair<std::size_t, std::size_t>> theLongLines; ///< piece index, length
    std::size_t theLineCount = 0;
};
