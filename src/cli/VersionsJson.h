#pragma once

#include "files/Sha256.h"
#include "versions/VersionChain.h"

#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

/// What versions --json prints. @param chain of the bytes; one that is not resolved has places
/// alone.
std::string versionsJson(std::string_view bytes, const VersionChain& chain);

/// SHA-256 of all versions that a chain has.
std::vector<Sha256::Digest> digestsOf(std::string_view bytes, const std::vector<std::size_t>& ends);

} // namespace tarnwick
