#pragma once

#include "Arguments.h"
#include "analysis/SharedBytes.h"

namespace tarnwick {

/// uses: who refers to an object, a line for each reference, tab-separated: its offset, number,
/// generation and version of the object in which it stands, that object's kind, and where in it;
/// with --json one object (docs/JSON.md).
ExitStatus usesCommand(const Arguments& arguments, const SharedBytes& bytes);

} // namespace tarnwick
