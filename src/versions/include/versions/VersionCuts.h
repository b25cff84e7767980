#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace tarnwick {

/// Ends of the saved versions that one PDF file holds (ISO 32000-2, 7.5.6).
///
/// A save appends to the file and closes with "%%EOF", so each version is a prefix of the file. A
/// cut is that prefix's length in bytes: up to the marker and one byte more (the line end that
/// closes it), or to the file's end. The search is for bytes: a marker inside a stream's data cuts
/// too, and one that begins with the byte just given away to the version before it is not seen.
/// @returns strictly increasing cuts in [5, bytes.size()]; empty without a marker.
std::vector<std::size_t> versionCuts(std::string_view bytes);

} // namespace tarnwick
