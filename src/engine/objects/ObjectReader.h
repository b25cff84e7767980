#pragma once

#include "EngineDocument.h"
#include "protocol/ObjectMessages.h"

namespace tarnwick {

/// What an object says, its place in the file and what its stream was packed with. Any number may
/// be asked for. @returns FZ_ERROR_NONE, FZ_ERROR_MEMORY when there is no memory for the object.
int readObject(const EngineDocument& document, int number, ObjectResult& result);

} // namespace tarnwick
