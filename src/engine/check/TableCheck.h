#pragma once

#include "CheckNotes.h"
#include "EngineDocument.h"

namespace tarnwick {

/// Looks through the file's table of objects (ISO 32000-2, 7.5.4 and 7.5.8): counts the members of
/// object streams, and looks whether objects stand where cross-reference streams say. What classic
/// tables say, anybody can read in the file; and a table that the library has made itself, is
/// right.
void checkTable(const EngineDocument& document, CheckNotes& notes, CheckResult& result);

} // namespace tarnwick
