#pragma once

#include <QString>

namespace tarnwick {

class PDFSavedVersions;

/// What a line in a document's main window says of its saved versions: "4 saved versions", and how
/// many markers there are where these are not as many. Empty where there is one version or none.
/// @param versions finished.
QString versionsFact(const PDFSavedVersions& versions);

} // namespace tarnwick
