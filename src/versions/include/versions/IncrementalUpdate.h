#pragma once

#include <string_view>

namespace tarnwick {

/// Whether a file carries incremental updates (ISO 32000-2, 7.5.6): an end-of-file marker "%%EOF"
/// that ends at least 20 bytes before the file's end, so that something was appended to a saved
/// file. The search is for bytes: a marker inside a stream's data counts, and so does one that is
/// followed by 20 bytes of anything.
/// @returns false for files shorter than 25 bytes, which cannot hold such a marker.
bool isIncrementallyUpdated(std::string_view bytes);

} // namespace tarnwick
