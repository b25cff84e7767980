#pragma once

#include "EngineDocument.h"
#include "protocol/ObjectMessages.h"

namespace tarnwick {

/// What an object of a known kind is like. Any number may be asked for; one of another kind, or
/// none, has no facts. @returns FZ_ERROR_NONE.
int readFacts(const EngineDocument& document, int number, FactsResult& result);

} // namespace tarnwick
