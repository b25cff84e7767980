#pragma once

#include "Arguments.h"

namespace tarnwick {

/// versions --json: what each save has changed, through an engine that reads the cross-references.
/// Needs no password, and serves files that cannot be opened. Called at most once.
ExitStatus savesCommand(const Arguments& arguments);

} // namespace tarnwick
