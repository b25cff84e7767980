#pragma once

#include <cstddef>

/// Takes from the process everything that it needs no more once its descriptors are there: files,
/// network, other processes, new programs. What is left: its pipes and shared memory, its own
/// memory up to a limit, the clock.
///
/// The address space is limited to 2 GiB and four times the file's size: MuPDF then throws instead
/// of bringing the machine down. Core dumps, which would write a confidential file's content to
/// disk, are off.
/// @param fileSize bytes of the file that the engine has mapped.
/// @returns false when the system does not grant the lock: the engine must not read the file then.
bool lockDown(std::size_t fileSize);
