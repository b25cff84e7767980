#include "analysis/PieceList.h"

#include <algorithm>

void PieceList::append(std::span<const Piece> pieces)
{
    for (const Piece piece : pieces) {
        const std::size_t index = thePieces.size();
        if (index % stride == 0)
            theLineOfStride.push_back(theLineCount);
        if (piece.isLong())
            theLongLines.emplace_back(index, pieceText(theBytes, piece).size());
        thePieces.push_back(piece);
        theLineCount += piece.lineCount();
    }
}

std::string_view PieceList::text(std::size_t index) const
{
    const Piece own = thePieces[index];
    if (!own.isLong())
        return theBytes.substr(own.offset(), own.shortLength());
    const auto found = std::lower_bound(
        theLongLines.begin(), theLongLines.end(), std::pair(index, std::size_t{0}));
    return theBytes.substr(own.offset(), found->second);
}

PieceList::Place PieceList::placeOfLine(std::size_t line) const
{
    const auto after = std::upper_bound(theLineOfStride.begin(), theLineOfStride.end(), line);
    const auto block = static_cast<std::size_t>(after - theLineOfStride.begin()) - 1;
    Place place{block * stride, line - theLineOfStride[block]};
    while (place.line >= thePieces[place.piece].lineCount()) {
        place.line -= thePieces[place.piece].lineCount();
        ++place.piece;
    }
    return place;
}
