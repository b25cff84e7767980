#pragma once

#include "Arguments.h"
#include "analysis/SharedBytes.h"

#include <string_view>

namespace tarnwick {

class VersionChain;

/// versions: where the saved versions end, or their hashes; writes each to a file.
ExitStatus versionsCommand(const Arguments& arguments, const SharedBytes& bytes);

/// The same with --json. @param chain of the bytes. @param status so far.
/// @returns that status unless something worse comes up.
ExitStatus printSaves(const Arguments& arguments, std::string_view bytes, const VersionChain& chain,
    ExitStatus status);

/// The same where the program that knows of cross-references cannot be had: without what the saves
/// have changed, which is said.
ExitStatus printPlaces(const Arguments& arguments, const SharedBytes& bytes);

} // namespace tarnwick
