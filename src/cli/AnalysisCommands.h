#pragma once

#include "Arguments.h"
#include "analysis/SharedBytes.h"

namespace tarnwick {

/// listing: the coloured listing, then the object list, printed from the first line on while the
/// file is still being scanned.
ExitStatus listingCommand(const Arguments& arguments, const SharedBytes& bytes);

/// objects: the object list alone.
ExitStatus objectsCommand(const Arguments& arguments, const SharedBytes& bytes);

/// summary: the count of objects in words.
ExitStatus summaryCommand(const Arguments& arguments, const SharedBytes& bytes);

} // namespace tarnwick
