#pragma once

#include "protocol/DocumentFacts.h"

#include <optional>
#include <string>

namespace tarnwick {

/// Stands alone in the summary pane of a document that the engine has not opened.
inline constexpr const char* noDocumentText = "The CGDocument couldn't be opened.\n";

/// The summary pane's text. @param flattened, source the catalogs' summaries in words, absent for a
/// file that has not been scanned.
std::string summaryText(const DocumentFacts& facts, const std::optional<std::string>& flattened,
    const std::optional<std::string>& source);

} // namespace tarnwick
