#pragma once

#include "PropertyList.h"

namespace tarnwick {

/// Reads a property list in its binary form: "bplist0", a version digit, the objects, the table of
/// their offsets, and a trailer of 32 bytes that tells where the table is and which object is the
/// root. Objects name each other by their number in the table, so that one can stand in many
/// places, itself included: every place is paid for anew.
///
/// References to other objects of an archive (kind 8) become dictionaries with the one key
/// "CF$UID", as they do in XML.
/// @returns nothing when an offset or a count leads out of its place, an object is of an unknown
/// kind, a key is no text, or the list exceeds PropertyListBudget, as a cycle always does.
std::optional<PropertyList> readBinaryPropertyList(const QByteArray& bytes);

} // namespace tarnwick
