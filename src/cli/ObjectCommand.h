#pragma once

#include "Arguments.h"
#include "analysis/SharedBytes.h"

namespace tarnwick {

/// object: the source of one object as it is stored, the data of its stream left out; with --raw
/// the stored bytes of its stream; with --json what is known of it (docs/JSON.md).
ExitStatus objectCommand(const Arguments& arguments, const SharedBytes& bytes);

} // namespace tarnwick
