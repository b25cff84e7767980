#pragma once

#include "analysis/SharedBytes.h"

#include <optional>
#include <string>

namespace tarnwick {

/// Has this run never write a file that it reads (OpenedFiles).
/// @param input descriptor of the open file. @param path that it was opened by; may be empty.
void neverWrite(int input, const std::string& path);
/// The same by path alone; nothing happens where there is no such file.
void neverWrite(const std::string& path);

/// Reads a whole file into memory, which this run then never writes; "-" stands for standard input.
/// @param[out] reason why nothing was read, as the system says it; untouched on success.
/// @returns nothing when it is no file, cannot be read, or does not fit into memory.
std::optional<SharedBytes> readInput(const std::string& path, std::string& reason);

} // namespace tarnwick
