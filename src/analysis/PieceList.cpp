#include "analysis/PieceList.h"

#include <algorithm>

namespace tarnwick {

PieceList::ShortPiece PieceList::ShortPiece::of(Piece piece, std::size_t end)
{
    const auto kind = static_cast<std::size_t>(piece.kind());
    if (piece.kind() == PieceKind::isStream) {
        const std::size_t length = piece.length();
        return length >> (gapBits + lengthBits) == 0 ? ShortPiece(kind | length << kindBits)
                                                     : full();
    }
    // A piece that begins before the other one's end is far away, too.
    const std::size_t gap = piece.offset() - end;
    const std::size_t length = piece.length();
    if (gap >> gapBits != 0 || length >> lengthBits != 0)
        return full();
    return ShortPiece(kind | gap << kindBits | length << (kindBits + gapBits));
}

Piece PieceList::ShortPiece::piece(std::size_t end) const
{
    const unsigned bits = theBits;
    const auto kind = static_cast<PieceKind>(bits & ((1u << kindBits) - 1));
    if (kind == PieceKind::isStream)
        return Piece::ofStream(bits >> kindBits);
    const unsigned gap = bits >> kindBits & ((1u << gapBits) - 1);
    return Piece::ofLine(kind, end + gap, bits >> (kindBits + gapBits));
}

PieceList::Walk::Walk(const PieceList& list, std::size_t block)
    : theList(list)
    , theIndex(block * blockSize)
    , theEnd(0)
    , theFull(0)
{
    if (theIndex >= list.size())
        return;
    theEnd = list.theBlocks[block].end;
    theFull = list.theBlocks[block].firstFull;
    read();
}

void PieceList::Walk::read()
{
    const ShortPiece own = theList.thePieces[theIndex];
    thePiece = own.isFull() ? theList.theFullPieces[theFull++] : own.piece(theEnd);
    theEnd = endOf(thePiece, theEnd);
}

void PieceList::Walk::step()
{
    if (++theIndex < theList.size())
        read();
}

std::size_t PieceList::endOf(Piece piece, std::size_t endBefore)
{
    return piece.kind() == PieceKind::isStream ? endBefore : piece.offset() + piece.length();
}

void PieceList::append(std::span<const Piece> pieces)
{
    for (const Piece piece : pieces) {
        const std::size_t index = thePieces.size();
        if (index % blockSize == 0)
            theBlocks.push_back({theLineCount, theEnd, theFullPieces.size()});
        const ShortPiece own = ShortPiece::of(piece, theEnd);
        if (own.isFull())
            theFullPieces.push_back(piece);
        thePieces.push_back(own);
        theLineCount += piece.lineCount();
        theEnd = endOf(piece, theEnd);
    }
}

PieceList::Place PieceList::placeOfLine(std::size_t line) const
{
    const auto after = std::upper_bound(theBlocks.begin(), theBlocks.end(), line,
        [](std::size_t wanted, const Block& block) { return wanted < block.firstLine; });
    const auto block = static_cast<std::size_t>(after - theBlocks.begin()) - 1;
    std::size_t rest = line - theBlocks[block].firstLine;
    Walk walk(*this, block);
    while (rest >= walk.piece().lineCount()) {
        rest -= walk.piece().lineCount();
        walk.step();
    }
    return {walk.index(), walk.piece(), rest, walk.end()};
}

std::size_t PieceList::lineOf(std::size_t offset) const
{
    // The last block that begins behind a piece which ends at or before the offset.
    const auto after = std::upper_bound(theBlocks.begin(), theBlocks.end(), offset,
        [](std::size_t wanted, const Block& block) { return wanted < block.end; });
    const auto block = static_cast<std::size_t>(after - theBlocks.begin());
    Walk walk(*this, block == 0 ? 0 : block - 1);
    std::size_t line = theBlocks[block == 0 ? 0 : block - 1].firstLine;
    std::size_t found = line + walk.piece().leadingBreaks();
    std::size_t end = 0; // of the last piece with a place in the file
    for (; walk.index() < size(); walk.step()) {
        const Piece piece = walk.piece();
        const bool isStream = piece.kind() == PieceKind::isStream;
        if (isStream ? offset < end : offset < piece.offset())
            break;
        found = line + piece.leadingBreaks();
        line += piece.lineCount();
        end = walk.end();
    }
    return found;
}

std::size_t PieceList::offsetOf(std::size_t line) const
{
    const Place place = placeOfLine(line);
    if (place.piece.kind() == PieceKind::isStream || place.line > place.piece.leadingBreaks())
        return place.end;
    return place.piece.offset();
}

} // namespace tarnwick
