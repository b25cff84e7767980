#pragma once

#include "FactSheet.h"

namespace tarnwick {

/// What a font dictionary says, or a font descriptor (ISO 32000-2, 9.5 to 9.8).
void tellOfFont(FactSheet& sheet, const ObjectView& font);
/// What a stream that holds a font program has in it. @param number of its object.
void tellOfFontProgram(FactSheet& sheet, int number);

} // namespace tarnwick
