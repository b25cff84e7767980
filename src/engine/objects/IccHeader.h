#pragma once

#include "FactSheet.h"

namespace tarnwick {

/// What an ICC profile says at its beginning (ISO 15076-1, 7.2), and its description. A stream that
/// is no profile has no facts. @param number of its object.
void tellOfProfile(FactSheet& sheet, const ObjectView& stream, int number);

} // namespace tarnwick
