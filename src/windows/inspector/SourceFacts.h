#pragma once

#include "PlaceRows.h"
#include "analysis/ObjectUsers.h"
#include "findings/FileFindings.h"

namespace tarnwick {

/// Rows for what a search for users has found; may be made in any thread.
QList<PlaceRow> userRows(const pdfObjectCatalog& catalog, const ObjectUses& uses);

/// Rows for what is remarkable about a file.
QList<PlaceRow> findingRows(const FileFindings& findings);

} // namespace tarnwick
