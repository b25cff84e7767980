#pragma once

namespace tarnwick {

/// Puts the process into places of its own where there is nothing: a user and a network namespace,
/// and a Landlock domain without a file, a port or anybody to send a signal to. What privileges it
/// has, it loses.
///
/// This stands behind the filter of system calls, should that have a hole. Containers and older
/// kernels grant only some of it, or nothing: what is not granted is left out. The process must
/// have one thread, and PR_SET_NO_NEW_PRIVS.
void isolate();

} // namespace tarnwick
