#pragma once

#include "EngineDocument.h"
#include "protocol/PageMessages.h"

namespace tarnwick {

/// Reads the text of a page, its lines in logical order (TextLines.h).
/// @returns FZ_ERROR_NONE or what MuPDF threw.
int readPageText(const EngineDocument& document, const TextRequest& request, TextResult& result);

} // namespace tarnwick
