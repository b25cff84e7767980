#pragma once

#include "Arguments.h"
#include "analysis/SharedBytes.h"

namespace tarnwick {

/// check: facts about the file, where it departs from the standard and what it holds that acts or
/// hides; a line for each, tab-separated: its code, offset, object and a sentence with the clause
/// of ISO 32000-2; with --json one object (docs/JSON.md).
ExitStatus checkCommand(const Arguments& arguments, const SharedBytes& bytes);

} // namespace tarnwick
