#pragma once

#include "compare/ObjectComparison.h"

#include <optional>
#include <string_view>

namespace tarnwick {

/// The answers on what objects are known by, as those of PDFEngineAnswers.h.

struct PDFSigns
{
    ObjectSigns signs;
    std::uint32_t next = 0; ///< number of the object to go on with; 0 at the end
};

/// @param first the lowest number that was asked for.
std::optional<PDFSigns> readSignAnswer(std::string_view payload, std::uint32_t first);

} // namespace tarnwick
