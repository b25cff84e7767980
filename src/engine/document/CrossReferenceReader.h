#pragma once

#include "EngineDocument.h"
#include "protocol/CrossReferenceMessages.h"

namespace tarnwick {

/// Reads cross-references as they stand in the file, at any place and in any state of the document:
/// what the library keeps of them is what it makes of the whole file, and nothing when it had to
/// repair it.
/// @returns FZ_ERROR_NONE; FZ_ERROR_MEMORY; FZ_ERROR_GENERIC for a request without offsets.
int readCrossReferences(const EngineDocument& document, const CrossReferenceRequest& request,
    CrossReferenceResult& result);

} // namespace tarnwick
