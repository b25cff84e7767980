#pragma once

#include "Arguments.h"
#include "analysis/SharedBytes.h"

namespace tarnwick {

/// tree: the document's objects as they refer to each other, from the trailer down, a line for each
/// reference, indented; with --json one object (docs/JSON.md).
ExitStatus treeCommand(const Arguments& arguments, const SharedBytes& bytes);

} // namespace tarnwick
