#pragma once

#include "EngineDocument.h"
#include "protocol/PageMessages.h"

namespace tarnwick {

/// Reads the links of a page. @returns FZ_ERROR_NONE or what MuPDF threw.
int readLinks(const EngineDocument& document, int page, LinksResult& result);

/// Reads the outline, at most maximumOutlineEntries and maximumOutlineDepth levels of it; an entry
/// that leads back to itself ends its branch. @returns likewise.
int readOutline(const EngineDocument& document, OutlineResult& result);

} // namespace tarnwick
