#pragma once

#include "Arguments.h"
#include "analysis/SharedBytes.h"

namespace tarnwick {

/// check, where there is no PDF engine: facts about the file from its source alone.
ExitStatus checkCommand(const Arguments& arguments, const SharedBytes& bytes);

} // namespace tarnwick
