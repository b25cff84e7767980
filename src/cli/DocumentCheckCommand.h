#pragma once

#include "Arguments.h"

namespace tarnwick {

/// check: facts about the file, where it departs from the standard and what it holds that acts or
/// hides, what the PDF engine had to mend, and the pages whose text it cannot read; a line for
/// each, tab-separated: its code, offset, object and a sentence with the clause of ISO 32000-2;
/// with
/// --json one object (docs/JSON.md). Of a file that the engine refuses, or whose password is not
/// known, what its source tells.
ExitStatus documentCheckCommand(const Arguments& arguments);

} // namespace tarnwick
