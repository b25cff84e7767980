#pragma once

#include "versions/CrossReference.h"

#include <optional>
#include <string_view>
#include <vector>

namespace tarnwick {

/// The answers on cross-references, as those of PDFEngineAnswers.h.

struct PDFCrossReferences
{
    std::vector<CrossReferenceSection> sections; ///< at the first of the offsets, one at least
    bool isWhole = true; ///< otherwise the last lacks rows
};

/// @param offsets that were asked for.
std::optional<PDFCrossReferences> readCrossReferenceAnswer(
    std::string_view payload, const std::vector<std::uint64_t>& offsets);

} // namespace tarnwick
