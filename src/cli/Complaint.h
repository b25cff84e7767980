#pragma once

#include "Arguments.h"

#include <string>

namespace tarnwick {

/// Says on standard error what went wrong with something, mostly a file. @returns the status given.
ExitStatus complain(ExitStatus status, const std::string& what, const std::string& reason);

/// That standard output could not be written, as errno says. @returns isFailed.
ExitStatus complainOfOutput();

} // namespace tarnwick
