#include "Lockdown.h"

#include "CallFilter.h"
#include "Isolation.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarnwick {

namespace {

constexpr rlim_t gibibyte = 1u << 30;
constexpr rlim_t processorSeconds = 600;

#ifdef TARNWICK_SANITIZED
constexpr bool isSanitized = true;
#else
constexpr bool isSanitized = false;
#endif

/// A limit that the user has set already may be lower, and only the system's owner may raise it.
bool limit(__rlimit_resource resource, rlim_t value)
{
    rlimit wanted = {};
    if (::getrlimit(resource, &wanted) != 0)
        return false;
    wanted.rlim_max = std::min(wanted.rlim_max, value);
    wanted.rlim_cur = wanted.rlim_max;
    return ::setrlimit(resource, &wanted) == 0;
}

/// The soft limit alone: the program sets it anew for each request, and reaching it ends the
/// engine, which has no means left to hold the signal back.
bool limitProcessorTime()
{
    rlimit time = {};
    if (::getrlimit(RLIMIT_CPU, &time) != 0)
        return false;
    if (time.rlim_cur != RLIM_INFINITY)
        return true;
    time.rlim_cur = std::min(time.rlim_max, processorSeconds);
    return ::setrlimit(RLIMIT_CPU, &time) == 0;
}

bool limitResources(const LockdownGrant& grant)
{
    struct stat output = {};
    if (grant.output >= 0 && ::fstat(grant.output, &output) != 0)
        return false;
    // Under the sanitizers reports read files, and the shadow of the memory takes terabytes.
    return limit(RLIMIT_CORE, 0) && limit(RLIMIT_NPROC, 0) && limit(RLIMIT_MEMLOCK, 0)
        && limit(RLIMIT_FSIZE, static_cast<rlim_t>(output.st_size)) && limitProcessorTime()
        && limit(RLIMIT_NOFILE, isSanitized ? 16 : 0)
        && (isSanitized || limit(RLIMIT_AS, 2 * gibibyte + 4 * rlim_t{grant.fileSize}));
}

/// Whatever else the program had open when it started the engine is none of the engine's business,
/// nor is the place where others report their errors, which may be somebody's terminal.
bool closeOtherDescriptors(int output)
{
    const unsigned first = isSanitized ? STDERR_FILENO + 1 : STDERR_FILENO;
    if (output < 0)
        return ::close_range(first, ~0u, 0) == 0;
    const auto kept = static_cast<unsigned>(output);
    return (kept <= first || ::close_range(first, kept - 1, 0) == 0)
        && ::close_range(std::max(kept + 1, first), ~0u, 0) == 0;
}

/// Names of accounts and hosts, keys to other programs: they stand in memory even without a name.
void eraseEnvironment()
{
    for (char** entry = environ; entry && *entry; ++entry)
        ::explicit_bzero(*entry, std::strlen(*entry));
    ::clearenv();
}

/// The program that starts the engine may have held back, ignored or handled signals.
bool resetSignals()
{
    for (int signal = 1; signal < NSIG && !isSanitized; ++signal)
        std::signal(signal, SIG_DFL);
    // A write beyond the file size limit is to fail, not to end the process.
    sigset_t none;
    sigemptyset(&none);
    return std::signal(SIGXFSZ, SIG_IGN) != SIG_ERR
        && ::sigprocmask(SIG_SETMASK, &none, nullptr) == 0;
}

} // namespace

bool lockDown(const LockdownGrant& grant)
{
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 || ::prctl(PR_SET_DUMPABLE, 0, 0, 0, 0) != 0)
        return false;
    eraseEnvironment();
    if (!resetSignals() || !closeOtherDescriptors(grant.output))
        return false;
    isolate();
    // The program's end is the engine's; a new user namespace forgets what was said of it before.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    return limitResources(grant) && filterCalls(grant.output);
}

} // namespace tarnwick
