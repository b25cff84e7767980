#pragma once

#include <QMetaType>

#include <cerrno>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tarnwick {

/// What becomes of a deed: 0 when it is done, the error that it ends with, or this for a signal
/// that ends the process.
constexpr int endedBy(int signal)
{
    return 128 + signal;
}

constexpr int notPrepared = 127;

struct Deed
{
    int (*run)() = nullptr;
    int outcome = 0; ///< what is to become of it
};

inline int errorOf(long result)
{
    return result < 0 ? errno : 0;
}

inline int errorOf(const void* address)
{
    return address == MAP_FAILED ? errno : 0;
}

/// @returns what becomes of a deed in a process of its own that has been prepared for it,
/// notPrepared
///   when it could not be.
template<typename Prepare, typename Run> int outcomeOf(Prepare prepare, Run run)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(prepare() ? run() : notPrepared);
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : endedBy(WTERMSIG(status));
}

} // namespace tarnwick

Q_DECLARE_METATYPE(tarnwick::Deed)
