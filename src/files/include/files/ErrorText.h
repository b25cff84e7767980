#pragma once

#include <string>

namespace tarnwick {

/// What a failure says, as a phrase for the user without a full stop ("No space left on device").
/// @param error an errno, or one of the values of OutputFile.
std::string errorText(int error);

} // namespace tarnwick
