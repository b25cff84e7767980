#pragma once

#include "Arguments.h"

namespace tarnwick {

/// object --decoded: what the stream of the object that readers use unpacks to, through the PDF
/// engine, to standard output. A stream that is damaged gives what comes before, and status 4 with
/// the place; one with a filter that is not known gives nothing. At most 4 GB. Passwords as for
/// exportCommand(). Called at most once.
ExitStatus decodedCommand(const Arguments& arguments);

} // namespace tarnwick
