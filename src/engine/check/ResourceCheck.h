#pragma once

#include "CheckNotes.h"
#include "EngineDocument.h"

namespace tarnwick {

/// Looks at pages (PageCheck.h) and through what they draw with (ISO 32000-2, 7.8.3) for fonts that
/// are not embedded and images that cannot be drawn. Nothing is decoded, and what forms draw with
/// is not looked at.
/// @returns how many pages were looked at, from the first on: of a large document not all.
int checkResources(const EngineDocument& document, CheckNotes& notes);

} // namespace tarnwick
