#pragma once

#include "Arguments.h"
#include "findings/FileFindings.h"

#include <string_view>

namespace tarnwick {

/// Prints facts about a file: a line for each, tab-separated, or with --json one object
/// (docs/JSON.md); what is missing from them is said on standard error.
/// @param engine what became of the PDF engine: "open", or why there is nothing from it: "refused",
///   "locked", "failed", "none".
/// @returns isIncomplete when something is missing.
ExitStatus reportFindings(const FileFindings& findings, const pdfObjectCatalog& catalog,
    std::string_view engine, const Arguments& arguments);

} // namespace tarnwick
