#pragma once

#include "Arguments.h"

namespace tarnwick {

/// flat, text, rtf: what the desktop program exports, through the PDF engine and with the same
/// code, written to the file that -o names ("-" for standard output). The input is never replaced.
///
/// A locked document's password is the first line of --password-file; without that option it is
/// asked for on the terminal, three times at most. Needs no display. Called at most once.
ExitStatus exportCommand(const Arguments& arguments);

} // namespace tarnwick
