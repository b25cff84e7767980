#pragma once

#include "analysis/ChunkedVector.h"
#include "analysis/Piece.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace tarnwick {

/// The pieces of a listing, in order, and the lines that they make up.
///
/// Two bytes a piece, where the lines of a file are short and stand close to each other, as most
/// do: the piece then says how long it is and how far behind the one before it begins. Pieces are
/// found from the nearest of some that are known in full.
class PieceList
{
public:
    /// A line of the listing: its piece, and which of the piece's lines.
    struct Place
    {
        std::size_t index = 0; ///< of the piece
        Piece piece;
        std::size_t line = 0;
        std::size_t end
            = 0; ///< where the piece, or of a stream the one before it, ends in the file
    };

    /// @param bytes what the pieces point into; borrowed.
    explicit PieceList(std::string_view bytes)
        : theBytes(bytes)
    {
    }

    void append(std::span<const Piece> pieces);

    std::string_view bytes() const { return theBytes; }
    std::size_t size() const { return thePieces.size(); }
    /// Calls take(Piece) for every piece in order.
    template<class Take> void forEach(Take take) const
    {
        for (Walk walk(*this, 0); walk.index() < size(); walk.step())
            take(walk.piece());
    }

    /// Complete lines, each with its line feed.
    std::size_t lineCount() const { return theLineCount; }
    /// Precondition: line < lineCount().
    Place placeOfLine(std::size_t line) const;
    /// The line that shows an offset of the file: the last that begins at or before it, or the line
    /// of the stream that is left out there; the first line for what stands before it.
    /// Precondition: lineCount() > 0.
    std::size_t lineOf(std::size_t offset) const;
    /// The way back: where the line's text begins in the file; of a stream that is left out and of
    /// an empty line, where the line before ends. Precondition: line < lineCount().
    std::size_t offsetOf(std::size_t line) const;

private:
    /// So many pieces have a start that is known: a line is reached by 32 steps on average, which
    /// takes as long as reading it, for less than half a byte a piece.
    static constexpr std::size_t blockSize = 64;

    struct Block
    {
        std::size_t firstLine = 0;
        std::size_t end = 0; ///< where the piece before the first ends in the file
        std::size_t firstFull = 0; ///< pieces before the first that are stored in full
    };

    /// A piece in two bytes: its kind, and of a line the distance from the piece before and its
    /// length; of a stream the number shown. Or a mark that it is one of those stored in full.
    class ShortPiece
    {
    public:
        /// @param end where the piece before ends.
        static ShortPiece of(Piece piece, std::size_t end);
        static ShortPiece full() { return ShortPiece(fullMark); }

        bool isFull() const { return theBits == fullMark; }
        /// The piece again. Precondition: !isFull().
        Piece piece(std::size_t end) const;

    private:
        static constexpr unsigned kindBits = 3;
        static constexpr unsigned gapBits = 4;
        static constexpr unsigned lengthBits = 16 - kindBits - gapBits;
        static constexpr unsigned fullMark = 0xFFFFu; ///< of a kind that there is not

        explicit ShortPiece(std::size_t bits)
            : theBits(static_cast<std::uint16_t>(bits))
        {
        }

        std::uint16_t theBits;
    };

    /// Goes from piece to piece, from the start of a block on.
    class Walk
    {
    public:
        Walk(const PieceList& list, std::size_t block);
        std::size_t index() const { return theIndex; }
        /// Precondition: index() < list.size().
        Piece piece() const { return thePiece; }
        /// Where the piece, or of a stream the one before it, ends in the file.
        std::size_t end() const { return theEnd; }
        void step();

    private:
        void read();

        const PieceList& theList;
        std::size_t theIndex;
        std::size_t theEnd;
        std::size_t theFull;
        Piece thePiece;
    };

    static std::size_t endOf(Piece piece, std::size_t endBefore);

    std::string_view theBytes;
    ChunkedVector<ShortPiece> thePieces;
    ChunkedVector<Piece> theFullPieces;
    std::vector<Block> theBlocks;
    std::size_t theLineCount = 0;
    std::size_t theEnd = 0; ///< of the last piece in the file
};

} // namespace tarnwick
