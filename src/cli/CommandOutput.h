#pragma once

#include "Complaint.h"
#include "JsonText.h"
#include "analysis/ObjectSource.h"
#include "analysis/pdfObjectCatalog.h"

#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

/// Prints what a command found: bytes as they are, on a terminal with signs for control characters.
/// @returns the status given, or isFailed when it could not be written, which is then said.
ExitStatus printBytes(std::string_view bytes, ExitStatus status);

/// The way to a reference in one word of printable ASCII: other characters as "#xx".
std::string shownPath(const std::string& path);

/// "17 0 2": number, generation, version.
std::string shownNumbers(const pdfObject& object);
/// Members number, generation, version, kind of an open object.
/// @{
void appendObject(const pdfObjectCatalog& catalog, const pdfObject& object, JsonText& json);
void appendObject(const pdfObject& object, std::string_view kind, JsonText& json);
/// @}

/// Says, in sentences or as the member "notSeen", what lies in object streams.
/// @returns isIncomplete when there is any.
ExitStatus reportHidden(
    const pdfObjectCatalog& catalog, const Arguments& arguments, JsonText* json);

} // namespace tarnwick
