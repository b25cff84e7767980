#pragma once

#include <cstdint>

namespace tarnwick {

/// What is missing from a page, or from another part of the document, that the engine has read,
/// drawn or written.
enum class EngineLoss : std::uint8_t
{
    isNone,
    isDamaged, ///< all of it
    isDamagedInPart,
    isCut, ///< what goes beyond a limit
};

} // namespace tarnwick
