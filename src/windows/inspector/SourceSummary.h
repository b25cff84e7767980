#pragma once

#include <optional>
#include <string>

namespace tarnwick {

/// What the PDF engine knows of a document, as the summary pane tells it.
struct DocumentFacts
{
    int majorVersion = 0; ///< 0.0 when the engine reports no version
    int minorVersion = 0;
    int pageCount = 0;
    std::optional<int> infoEntryCount; ///< absent without an Info dictionary
    std::optional<int> catalogEntryCount; ///< absent without a Catalog
};

/// Stands alone in the summary pane of a document that the engine has not opened.
inline constexpr const char* noDocumentText = "The CGDocument couldn't be opened.\n";

/// The summary pane's text. @param flattened, source the catalogs' summaries in words, absent for a
/// file that has not been scanned.
std::string summaryText(const DocumentFacts& facts, const std::optional<std::string>& flattened,
    const std::optional<std::string>& source);

} // namespace tarnwick
