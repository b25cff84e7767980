#include "analysis/Piece.h"

namespace tarnwick {

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

} // namespace tarnwick
