#pragma once

#include "CheckNotes.h"
#include "EngineDocument.h"

namespace tarnwick {

/// Looks at what a page is told by: whether it has a size (ISO 32000-2, 7.7.3.3), and whether its
/// annotations can be read, no more of them than links are shown.
void checkPage(const EngineDocument& document, int page, CheckNotes& notes);

/// Looks whether the labels of all pages (ISO 32000-2, 12.4.2) are as short as the program keeps
/// them.
void checkLabels(const EngineDocument& document, CheckNotes& notes);

} // namespace tarnwick
