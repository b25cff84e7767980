#pragma once

#include "PropertyList.h"

namespace tarnwick {

/// Reads a property list in its XML form: one value within a "plist" element.
///
/// A document type may be named but may declare no entities: property lists need none, and
/// entities that stand for each other grow without end.
/// @returns nothing when the document is not well-formed, holds other elements, texts that are no
/// number, date or base 64 where one is due, no value or several, or exceeds PropertyListBudget.
std::optional<PropertyList> readXmlPropertyList(const QByteArray& bytes);

} // namespace tarnwick
