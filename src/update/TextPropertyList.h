#pragma once

#include "PropertyList.h"

namespace tarnwick {

/// Reads a property list in its old text form: `( … )` lists, `{ key = value; … }` dictionaries,
/// `<0f a0>` data, and texts, quoted by " or ' or bare. Comments are those of C++. All leaves are
/// texts or data: this form knows no numbers.
///
/// The bytes are UTF-8, or UTF-16 or UTF-32 with a byte order mark.
/// @returns nothing when they are not, the syntax is broken, something follows the value, or the
/// list exceeds PropertyListBudget.
std::optional<PropertyList> readTextPropertyList(const QByteArray& bytes);

} // namespace tarnwick
