#pragma once

#include "Arguments.h"
#include "analysis/SharedBytes.h"

namespace tarnwick {

/// versions: where the saved versions end, one line for each with its number, the offset at which
/// it ends and the bytes that its save added, tab-separated; with --json one object
/// {"incremental":true,"cuts":[1234,5678]}. --export FOLDER writes each version into the folder,
/// named after the file ("stdin" for standard input).
ExitStatus versionsCommand(const Arguments& arguments, const SharedBytes& bytes);

} // namespace tarnwick
