#pragma once

#include "files/Sha256.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <stop_token>
#include <string_view>
#include <vector>

namespace tarnwick {

/// The SHA-256 of each saved version of a file, in one pass over its bytes.
///
/// @param bytes the file. @param ends of the versions (versionCuts()), ascending, within the bytes.
/// @param take called as soon as a version's is known. @param index into ends.
/// @param progress bytes done and in all, after every few megabytes; may be empty.
/// @returns false when it was asked to stop.
bool hashVersions(std::string_view bytes, const std::vector<std::size_t>& ends,
    const std::function<void(std::size_t index, const Sha256::Digest& digest)>& take,
    const std::stop_token& stop = {},
    const std::function<void(std::uint64_t done, std::uint64_t total)>& progress = {});

} // namespace tarnwick
