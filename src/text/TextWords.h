#pragma once

#include "text/TextPosition.h"
#include "text/TextStorage.h"

namespace tarnwick {

/// The word, the run of spaces or the sign that a place is in; behind the last character, the one
/// before. Of a line without word boundaries for thousands of characters, a part of it.
TextRange wordAt(const TextStorage& storage, TextPosition position);

/// The beginning of the next word, the line's end, or, from there, the next line.
TextPosition nextWord(const TextStorage& storage, TextPosition position);

/// The beginning of the word that a place is in or behind, or the end of the line before.
TextPosition previousWord(const TextStorage& storage, TextPosition position);

} // namespace tarnwick
