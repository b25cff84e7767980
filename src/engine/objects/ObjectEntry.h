#pragma once

#include "EngineDocument.h"
#include "protocol/ObjectMessages.h"

namespace tarnwick {

/// Whether a number belongs to an object that is in the memory of the engine alone: the walk over
/// the page tree gives such numbers to pages that stand within their parents. Throws nothing.
bool isMadeHere(const EngineDocument& document, int number);

/// What stands in the file where a reference to an object that is made here is: its value, which
/// the document owns. Null for every other reference. Throws nothing.
pdf_obj* valueMadeHere(const EngineDocument& document, pdf_obj* reference);

/// What the file's table says of a number: state (isPresent for any object in use), generation and
/// place. Throws nothing; any number may be asked for.
ObjectResult objectEntry(const EngineDocument& document, int number);

} // namespace tarnwick
