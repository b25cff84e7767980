#include "CallFilter.h"

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <initializer_list>

#include <linux/futex.h>
#include <seccomp.h>
#include <sys/mman.h>
#include <unistd.h>

namespace tarnwick {

namespace {

/// The rules under construction; once one fails, so does the whole.
class Rules
{
public:
    Rules()
        : theFilter(seccomp_init(SCMP_ACT_ERRNO(EPERM)))
    {
        isGood = theFilter
            && seccomp_attr_set(theFilter, SCMP_FLTATR_ACT_BADARCH, SCMP_ACT_KILL_PROCESS) == 0;
    }
    Rules(const Rules&) = delete;
    Rules& operator=(const Rules&) = delete;
    ~Rules() { seccomp_release(theFilter); }

    /// Allows a call whose arguments compare like this, all of them.
    void allow(int call, std::initializer_list<scmp_arg_cmp> arguments = {})
    {
        add(SCMP_ACT_ALLOW, call, arguments);
    }
    /// Lets a call end the process.
    void end(int call) { add(SCMP_ACT_KILL_PROCESS, call, {}); }
    bool load() { return isGood && seccomp_load(theFilter) == 0; }

private:
    void add(std::uint32_t action, int call, std::initializer_list<scmp_arg_cmp> arguments)
    {
        const auto count = static_cast<unsigned>(arguments.size());
        isGood = isGood
            && seccomp_rule_add_array(theFilter, action, call, count, arguments.begin()) == 0;
    }

    scmp_filter_ctx theFilter;
    bool isGood = false;
};

scmp_arg_cmp is(unsigned argument, scmp_datum_t value)
{
    return {argument, SCMP_CMP_EQ, value, 0};
}

void allowPipes(Rules& rules, int output)
{
    rules.allow(SCMP_SYS(read), {is(0, STDIN_FILENO)});
    rules.allow(SCMP_SYS(write), {is(0, STDOUT_FILENO)});
    if (output >= 0)
        rules.allow(SCMP_SYS(write), {is(0, static_cast<scmp_datum_t>(output))});
}

/// What the allocator asks for: memory that is the process's own and never executable.
void allowMemory(Rules& rules)
{
    rules.allow(SCMP_SYS(brk));
    rules.allow(SCMP_SYS(munmap));
    rules.allow(
        SCMP_SYS(mmap), {is(2, PROT_READ | PROT_WRITE), is(3, MAP_PRIVATE | MAP_ANONYMOUS)});
    rules.allow(SCMP_SYS(mremap), {is(3, MREMAP_MAYMOVE)});
}

/// A check of the C library's that fails asks who it is and sends itself a signal.
void allowEnd(Rules& rules)
{
    rules.allow(SCMP_SYS(exit));
    rules.allow(SCMP_SYS(exit_group));
    rules.allow(SCMP_SYS(getpid));
    rules.allow(SCMP_SYS(gettid));
    rules.allow(SCMP_SYS(tgkill),
        {is(0, static_cast<scmp_datum_t>(::getpid())), is(1, static_cast<scmp_datum_t>(::gettid())),
            is(2, SIGABRT)});
}

#ifdef TARNWICK_SANITIZED
/// The sanitizers' own checks and reports, which go to standard error.
void allowSanitizers(Rules& rules)
{
    for (const int call :
        {SCMP_SYS(mmap), SCMP_SYS(mprotect), SCMP_SYS(mremap), SCMP_SYS(madvise),
            SCMP_SYS(sigaltstack), SCMP_SYS(rt_sigaction), SCMP_SYS(rt_sigprocmask),
            SCMP_SYS(rt_sigreturn), SCMP_SYS(sched_yield), SCMP_SYS(readlink), SCMP_SYS(readlinkat),
            SCMP_SYS(openat), SCMP_SYS(close), SCMP_SYS(fstat), SCMP_SYS(newfstatat),
            SCMP_SYS(read), SCMP_SYS(pread64), SCMP_SYS(lseek), SCMP_SYS(sched_getaffinity),
            SCMP_SYS(getrlimit), SCMP_SYS(prlimit64), SCMP_SYS(getrandom), SCMP_SYS(clock_gettime)})
        rules.allow(call);
    rules.allow(SCMP_SYS(write), {is(0, STDERR_FILENO)});
    rules.allow(SCMP_SYS(futex), {is(1, FUTEX_WAIT_PRIVATE)});
    rules.allow(SCMP_SYS(futex), {is(1, FUTEX_WAKE_PRIVATE)});
}
#endif

} // namespace

bool filterCalls(int output)
{
    Rules rules;
    allowPipes(rules, output);
    allowMemory(rules);
    allowEnd(rules);
    // Only an engine that a file has taken over asks for these: better no engine than that one.
    for (const int call : {SCMP_SYS(execve), SCMP_SYS(execveat), SCMP_SYS(socket), SCMP_SYS(kill),
             SCMP_SYS(ptrace), SCMP_SYS(process_vm_writev)})
        rules.end(call);
#ifdef TARNWICK_SANITIZED
    allowSanitizers(rules);
#endif
    return rules.load();
}

} // namespace tarnwick
