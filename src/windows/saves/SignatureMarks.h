#pragma once

#include <cstddef>
#include <stop_token>
#include <string_view>
#include <vector>

namespace tarnwick {

/// Counts the signature dictionaries in stretches of a file by their ByteRange (ISO 32000-2,
/// 12.8.1), which stands in the file as it is: what it tells of could not be in an object stream.
/// @param ends of the stretches, ascending; each begins where the one before ends.
/// @returns a count for each end; fewer when it was asked to stop.
std::vector<std::size_t> countSignatures(
    std::string_view bytes, const std::vector<std::size_t>& ends, const std::stop_token& stop);

} // namespace tarnwick
