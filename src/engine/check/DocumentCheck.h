#pragma once

#include "EngineDocument.h"
#include "protocol/CheckMessages.h"

namespace tarnwick {

/// Looks through an open document for what had to be mended to read it and for what cannot be
/// drawn as it is meant, and tells of its encryption. Best before anything else was asked of it.
void checkDocument(const EngineDocument& document, CheckResult& result);

} // namespace tarnwick
