#pragma once

#include "compare/WordDiff.h"
#include "compared/ComparedPage.h"

#include <QString>

#include <string_view>

namespace tarnwick {

/// The units of a string; valid as long as it is.
std::u16string_view unitsOf(const QString& text);

/// The words of a change as they are told of: the first 80 units, white space simplified.
ComparedWords toldWords(const QString& before, const QString& after, const WordChange& change);

} // namespace tarnwick
