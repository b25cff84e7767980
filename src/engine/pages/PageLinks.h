#pragma once

#include "EngineDocument.h"
#include "protocol/EngineProtocol.h"

namespace tarnwick {

/// Appends the links of a page: [count, then for each: four floats area x0, y0, x1, y1 in page
/// space, target]. A target is [int page or -1, float x, y on it, text address outside the
/// document].
/// @returns FZ_ERROR_NONE or what MuPDF threw.
int readLinks(const EngineDocument& document, int page, PayloadWriter& result);

/// Appends the outline in depth-first order: [byte EngineLoss of it, count, then for each: int
/// depth, text title, target]. At most 100,000 entries and 64 levels; an entry that leads back to
/// itself ends its branch.
int readOutline(const EngineDocument& document, PayloadWriter& result);

} // namespace tarnwick
