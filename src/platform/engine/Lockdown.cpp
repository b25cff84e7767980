#include "platform/engine/Lockdown.h"

#include <cerrno>
#include <csignal>

#include <seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>

namespace {

bool limit(__rlimit_resource resource, rlim_t value)
{
    const rlimit wanted = {value, value};
    return ::setrlimit(resource, &wanted) == 0;
}

bool limitResources([[maybe_unused]] std::size_t fileSize)
{
    constexpr rlim_t gibibyte = 1u << 30;
    bool granted = limit(RLIMIT_CORE, 0) && limit(RLIMIT_NOFILE, 16)
        && limit(RLIMIT_FSIZE, 4 * gibibyte + 16 * rlim_t{fileSize});
#ifndef TARNWICK_SANITIZED // the address sanitizer maps terabytes of shadow
    granted = granted && limit(RLIMIT_AS, 2 * gibibyte + 4 * rlim_t{fileSize});
#endif
    return granted;
}

/// What the engine, the C library's allocator and the end of the process call.
constexpr int neededCalls[] = {
    SCMP_SYS(read),
    SCMP_SYS(write),
    SCMP_SYS(lseek),
    SCMP_SYS(ftruncate),
    SCMP_SYS(fcntl),
    SCMP_SYS(brk),
    SCMP_SYS(mmap),
    SCMP_SYS(munmap),
    SCMP_SYS(mremap),
    SCMP_SYS(mprotect),
    SCMP_SYS(madvise),
    SCMP_SYS(futex),
    SCMP_SYS(getrandom),
    SCMP_SYS(clock_gettime),
    SCMP_SYS(gettimeofday),
    SCMP_SYS(rt_sigreturn),
    SCMP_SYS(rt_sigprocmask),
    SCMP_SYS(restart_syscall),
    SCMP_SYS(exit),
    SCMP_SYS(exit_group),
#ifdef TARNWICK_SANITIZED // the sanitizers' own reports and checks
    SCMP_SYS(getpid),
    SCMP_SYS(gettid),
    SCMP_SYS(sigaltstack),
    SCMP_SYS(rt_sigaction),
    SCMP_SYS(sched_yield),
    SCMP_SYS(readlink),
    SCMP_SYS(readlinkat),
    SCMP_SYS(openat),
    SCMP_SYS(close),
    SCMP_SYS(fstat),
    SCMP_SYS(newfstatat),
    SCMP_SYS(pread64),
    SCMP_SYS(tgkill),
    SCMP_SYS(sched_getaffinity),
    SCMP_SYS(getrlimit),
    SCMP_SYS(prlimit64),
    SCMP_SYS(ioctl),
#endif
};

/// Calls outside the list fail with EPERM: a library that asks for something needless goes on.
bool filterCalls()
{
    scmp_filter_ctx filter = seccomp_init(SCMP_ACT_ERRNO(EPERM));
    if (!filter)
        return false;
    bool granted = true;
    for (const int call : neededCalls)
        granted = granted && seccomp_rule_add(filter, SCMP_ACT_ALLOW, call, 0) == 0;
    // abort() ends in a signal to itself; without it a failed check would spin.
    granted = granted && seccomp_rule_add(filter, SCMP_ACT_KILL_PROCESS, SCMP_SYS(execve), 0) == 0
        && seccomp_rule_add(filter, SCMP_ACT_KILL_PROCESS, SCMP_SYS(socket), 0) == 0
        && seccomp_load(filter) == 0;
    seccomp_release(filter);
    return granted;
}

} // namespace

bool lockDown(std::size_t fileSize)
{
    // A write beyond the file size limit is to fail, not to end the process.
    std::signal(SIGXFSZ, SIG_IGN);
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && limitResources(fileSize)
        && filterCalls();
}
