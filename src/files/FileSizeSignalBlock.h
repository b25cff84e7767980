#pragma once

#include <cerrno>
#include <csignal>
#include <ctime>

namespace tarnwick {

/// Holds back SIGXFSZ on this thread while it lives. The signal's default would end the program
/// where a limit on file sizes is an error like a full disk.
class FileSizeSignalBlock
{
public:
    FileSizeSignalBlock()
    {
        sigemptyset(&theSignal);
        sigaddset(&theSignal, SIGXFSZ);
        pthread_sigmask(SIG_BLOCK, &theSignal, &theOldMask);
    }
    /// Takes back a signal that has come meanwhile; errno stays.
    ~FileSizeSignalBlock()
    {
        const int error = errno;
        const timespec now = {0, 0};
        sigtimedwait(&theSignal, nullptr, &now);
        pthread_sigmask(SIG_SETMASK, &theOldMask, nullptr);
        errno = error;
    }
    FileSizeSignalBlock(const FileSizeSignalBlock&) = delete;
    FileSizeSignalBlock& operator=(const FileSizeSignalBlock&) = delete;

private:
    sigset_t theSignal;
    sigset_t theOldMask;
};

} // namespace tarnwick
