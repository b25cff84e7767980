#pragma once

#include <QIcon>

namespace tarnwick {

/// Small drawings for controls, in the colours of the palette at the time of painting, sharp at any
/// scale.
namespace GlyphIcon {

enum class Shape
{
    isMagnifier, ///< with a small arrow: there is a menu
    isCross,
    isSideBar,
};

QIcon icon(Shape shape);

}

} // namespace tarnwick
