#pragma once

#include <cstddef>

namespace tarnwick {

/// What stays with the process that is locked down, beside its standard input and output.
struct LockdownGrant
{
    std::size_t fileSize = 0; ///< bytes of the file that it has mapped
    int output
        = -1; ///< descriptor of the shared memory that it writes a document into; -1 for none
};

/// Takes from the process everything that it needs no more once its descriptors are there: files,
/// network, other processes, new programs, signals, its environment, every other descriptor. What
/// is left: reading its standard input, writing its standard output and the granted memory, and
/// memory of its own that is never executable.
///
/// Limits: the address space is 2 GiB and four times the file's size, so that MuPDF throws instead
/// of bringing the machine down. The granted memory does not grow beyond the size that it has by
/// now. Processor time is what the program allows (ProcessorTime.h), ten minutes if it says
/// nothing. Core dumps, which would write a confidential file's content to disk, are off, and no
/// other process of the user can look into the memory.
///
/// The process must have one thread. Signals are handled as by default; the sanitizers keep theirs,
/// and since they need more than the engine does, the lock is wider under them.
/// @returns false when the system does not grant the lock: the engine must not read the file then.
bool lockDown(const LockdownGrant& grant);

} // namespace tarnwick
