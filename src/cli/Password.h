#pragma once

#include <optional>
#include <string>

namespace tarnwick {

/// First line of a file, without its line end. @returns nothing when it cannot be read.
std::optional<std::string> passwordFromFile(const std::string& path);

/// Asks on the terminal that the program was started from, without showing what is typed.
/// @returns nothing without a terminal, or at the end of its input.
std::optional<std::string> passwordFromTerminal(const std::string& prompt);

} // namespace tarnwick
