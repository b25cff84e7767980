#pragma once

#include "PlaceRows.h"
#include "analysis/Findings.h"
#include "analysis/ObjectUsers.h"

namespace tarnwick {

/// Rows for what a search for users has found; may be made in any thread.
QList<PlaceRow> userRows(const pdfObjectCatalog& catalog, const ObjectUses& uses);

/// Rows for what is remarkable about a file; may be made in any thread.
QList<PlaceRow> findingRows(const pdfObjectCatalog& catalog, const Findings& findings);

/// How many findings there are, kept or not.
std::size_t countOf(const Findings& findings);

} // namespace tarnwick
