#pragma once

#include <sys/types.h>

namespace tarnwick {

/// Lets a child process compute for so long from now on: beyond it, to the second, the system sends
/// it SIGXCPU. What it was allowed before is void.
/// @param milliseconds of processor time; one to two seconds are added, since the system measures
/// in
///   seconds. A lower limit that the user has set stays.
/// @returns false when there is no such process, or it cannot be limited.
bool allowProcessorTime(pid_t process, int milliseconds);

} // namespace tarnwick
