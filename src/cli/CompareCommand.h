#pragma once

#include "Arguments.h"

namespace tarnwick {

/// compare: what differs between two files or two saved versions of one, through an engine for
/// each. Passwords as for exportCommand(). Called at most once.
/// @returns isDone for equal ones, isDifferent, isIncomplete where what could be read is equal.
ExitStatus compareCommand(const Arguments& arguments);

} // namespace tarnwick
