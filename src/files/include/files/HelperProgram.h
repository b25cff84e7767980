#pragma once

#include <filesystem>
#include <string_view>

namespace tarnwick {

/// Where a program lies that this one starts: beside it in a build, and once installed in the
/// folder for programs that users do not call, which lies as far from this one as the build was
/// told, wherever the whole has been moved to.
/// @returns a path in any case; whether there is a program is seen when it is started.
std::filesystem::path helperProgram(std::string_view name);

} // namespace tarnwick
