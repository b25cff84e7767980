#pragma once

namespace tarnwick {

/// Leaves the process the system calls that the engine makes, each with the arguments that it makes
/// them with. Others fail with EPERM, so that a library that asks for something needless goes on.
/// Starting programs, sockets, other processes and the calls of other architectures, such as the
/// processor's 32-bit ones, end the process.
/// @param output descriptor that may be written beside standard output; -1 for none.
/// @returns false when the system has no such filter.
bool filterCalls(int output);

} // namespace tarnwick
