#pragma once

#include "EngineDocument.h"
#include "protocol/EngineLoss.h"

namespace tarnwick {

/// Whether an object stands in the file's table but cannot be read. A number that no object has is
/// no damage: what leads there is null (ISO 32000-2, 7.3.10). Throws nothing.
bool isUnreadable(const EngineDocument& document, int number);

/// What is missing of a page's content because its streams cannot be read, or are none: isDamaged
/// when that is so of all of them, isDamagedInPart of some. What the readable ones say is not
/// looked at.
/// @param page a page's dictionary. Throws nothing.
EngineLoss contentLoss(const EngineDocument& document, pdf_obj* page);

} // namespace tarnwick
