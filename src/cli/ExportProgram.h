#pragma once

#include "Arguments.h"

namespace tarnwick {

/// Goes on as tarnwick-export, the program for the commands that need the PDF engine: only they
/// load the libraries of the desktop program, which take longer to load than most files to look
/// through.
///
/// @param words the command line of this program, ended by a null pointer.
/// @returns only when the program cannot be started; the reason is on standard error.
ExitStatus becomeExportProgram(char** words);

} // namespace tarnwick
