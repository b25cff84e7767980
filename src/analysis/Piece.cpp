#include "analysis/Piece.h"

#include "analysis/BlockMasks.h"
#include "analysis/ByteClasses.h"

ColourRole Piece::role() const
{
    switch (kind()) {
    case PieceKind::isEnd:
        return ColourRole::isRed;
    case PieceKind::isLine:
        return ColourRole::isGreen;
    case PieceKind::isStream:
        return ColourRole::isBlue;
    case PieceKind::isHeader:
    case PieceKind::isSection:
        break;
    }
    return ColourRole::isDefault;
}

std::string_view pieceText(std::string_view bytes, Piece piece)
{
    if (!piece.isLong())
        return bytes.substr(piece.offset(), piece.shortLength());
    const std::size_t end = nextLineBreak(bytes, piece.offset());
    return trimmed(bytes.substr(piece.offset(), end - piece.offset()));
}
