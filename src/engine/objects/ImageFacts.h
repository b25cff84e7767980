#pragma once

#include "FactSheet.h"

namespace tarnwick {

/// What the dictionary of an image says (ISO 32000-2, 8.9.5).
void tellOfImage(FactSheet& sheet, const ObjectView& image);

} // namespace tarnwick
