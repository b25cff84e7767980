#pragma once

namespace tarnwick {

/// The colour of a piece of text. Views turn a role into a colour of the light or dark palette.
enum class ColourRole : unsigned char
{
    isDefault,
    isRed,
    isGreen,
    isBlue,
};

} // namespace tarnwick
