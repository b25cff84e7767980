#pragma once

#include <functional>

namespace tarnwick {

/// The threads that work is done in, one for each piece of it: nothing waits for a scan of another
/// file to end. Threads that are free are used again.
namespace WorkThreads {

/// Does something in a thread. Any thread may call this.
///
/// The end of the program (QCoreApplication) waits for what is being done, but not for long: a disk
/// or a server that does not answer keeps no program that its user has left.
void run(std::function<void()> task);

/// Does something in the main thread when its event loop comes to it, in the order of the calls;
/// nothing when the program is ending. Any thread may call this.
void runInMainThread(std::function<void()> what);

} // namespace WorkThreads

} // namespace tarnwick
