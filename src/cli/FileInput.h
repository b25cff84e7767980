#pragma once

#include "analysis/SharedBytes.h"

#include <optional>
#include <string>

/// Reads a whole file into memory; "-" stands for standard input.
/// @param[out] reason why nothing was read, as the system says it; untouched on success.
/// @returns nothing when it is no file, cannot be read, or does not fit into memory.
std::optional<SharedBytes> readInput(const std::string& path, std::string& reason);
