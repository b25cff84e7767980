#pragma once

#include <cstdint>

namespace tarnwick {

/// What comes with the characters of a page's text.
enum class EngineTextDetail : std::uint8_t
{
    isPlain, ///< nothing
    isWithQuads, ///< where each stands
    isWithAttributes, ///< fonts, sizes and colours
};

} // namespace tarnwick
