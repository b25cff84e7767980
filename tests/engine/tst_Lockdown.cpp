#include "Isolation.h"
#include "Lockdown.h"
#include "ProcessorTime.h"

#include "support/Rows.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <functional>

#include <fcntl.h>
#include <linux/capability.h>
#include <linux/landlock.h>
#include <net/if.h>
#include <poll.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace tarnwick;

namespace {

constexpr std::size_t page = 4096;
constexpr int notPrepared = 127;

int theTester = 0; ///< the process that must not be reached
int theOutput = -1; ///< shared memory of one page, granted to the locked process
char* theSecret = nullptr; ///< an entry of the environment
void* thePage = nullptr; ///< the process's own, not executable

/// @returns what becomes of it: 0 when it is done, the error that it ends with, or endedBy().
using Deed = std::function<int()>;

constexpr int endedBy(int signal)
{
    return 128 + signal;
}

int errorOf(long result)
{
    return result < 0 ? errno : 0;
}

/// A call of the system, such that it would end in another way than EPERM if it were let through.
template<typename... Arguments> Deed call(long number, Arguments... arguments)
{
    return [=] { return errorOf(::syscall(number, arguments...)); };
}

/// @returns what becomes of a deed in a process of its own that has been prepared for it,
/// notPrepared when it could not be.
int outcomeOf(bool (*prepare)(), const Deed& deed)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(prepare() ? deed() : notPrepared);
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : endedBy(WTERMSIG(status));
}

bool lock()
{
    ::lseek(theOutput, 0, SEEK_SET); // a position that all its users share
    return lockDown({1000, theOutput});
}

/// What stands behind the filter of system calls, without the filter.
bool isolateAlone()
{
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0)
        return false;
    isolate();
    return true;
}

bool doNothing()
{
    return true;
}

int interfaceIsUp()
{
    ifreq request = {};
    qstrncpy(request.ifr_name, "lo", sizeof request.ifr_name);
    const int socket = ::socket(AF_INET, SOCK_DGRAM, 0);
    const int error = errorOf(::ioctl(socket, SIOCGIFFLAGS, &request));
    return error ? error : (request.ifr_flags & IFF_UP) != 0 ? 0 : EPERM;
}

int hasPrivileges()
{
    __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct data[_LINUX_CAPABILITY_U32S_3] = {};
    if (::syscall(SYS_capget, &header, data) != 0)
        return errno;
    return (data[0].effective | data[0].permitted | data[1].effective | data[1].permitted) != 0
        ? 0
        : EPERM;
}

} // namespace

class TestLockdown : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void leavesWhatTheEngineNeeds();
    void takesEverythingElse_data();
    void takesEverythingElse();
    void standsInPlacesOfItsOwn_data();
    void standsInPlacesOfItsOwn();
    void endsAtItsProcessorTime();
    void closesInheritedDescriptors();
};

void TestLockdown::initTestCase()
{
    theTester = ::getpid();
    theOutput = ::memfd_create("output", MFD_ALLOW_SEALING);
    QCOMPARE(::ftruncate(theOutput, page), 0);
    QVERIFY(environ && *environ);
    theSecret = *environ;
    thePage = ::mmap(nullptr, page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    QVERIFY(thePage != MAP_FAILED);
}

void TestLockdown::leavesWhatTheEngineNeeds()
{
    const auto work = [] {
        void* memory = std::malloc(std::size_t{100} << 20);
        memory = memory ? std::realloc(memory, std::size_t{200} << 20) : nullptr;
        const bool isWritten = ::write(theOutput, "document", 8) == 8;
        return memory && isWritten ? 0 : errno;
    };
    QCOMPARE(outcomeOf(lock, work), 0);
    const auto abort = []() -> int { std::abort(); };
    QCOMPARE(outcomeOf(lock, abort), endedBy(SIGABRT));
}

using TakesEverythingElse = Rows<Deed, int>;

void TestLockdown::takesEverythingElse_data()
{
    const TakesEverythingElse row;
    const int ended = endedBy(SIGSYS);
    row("kill", call(SYS_kill, theTester, 0), ended);
    row("ptrace", call(SYS_ptrace, PTRACE_TRACEME), ended);
    row("writing a process's memory", call(SYS_process_vm_writev, theTester), ended);
    row("a program", call(SYS_execve), ended);
    row("a program by its descriptor", call(SYS_execveat, theOutput), ended);
    row("network", call(SYS_socket, AF_INET, SOCK_STREAM, 0), ended);
#ifdef __x86_64__
    row("a call in the x32 way", call(0x40000000 | SYS_getpid), ended);
    const auto oldCall = [] {
        long result = 20; // getpid
        asm volatile("int $0x80" : "+a"(result) : : "memory");
        return errorOf(result);
    };
    row("a call in the 32-bit way", oldCall, ended);
#endif
    row("tkill", call(SYS_tkill, -1, 0), EPERM);
    row("tgkill", call(SYS_tgkill, -1, -1, SIGABRT), EPERM);
    const auto signal = [] { return call(SYS_tgkill, ::getpid(), ::gettid(), SIGWINCH)(); };
    row("a signal to itself", signal, EPERM);
    row("a signal with a value", call(SYS_rt_sigqueueinfo, theTester, SIGWINCH), EPERM);
    row("the pipe's owner, signals and copies", call(SYS_fcntl, 0, F_SETOWN, theTester), EPERM);
    row("fork", call(SYS_clone, SIGCHLD, 0, 0, 0, 0), EPERM);
    row("io_uring", call(SYS_io_uring_setup, 1), EPERM);
    row("userfaultfd", call(SYS_userfaultfd, 0), EPERM);
    row("prctl", call(SYS_prctl, PR_GET_DUMPABLE), EPERM);
    row("another namespace", call(SYS_unshare, 0), EPERM);
    row("shared memory made", call(SYS_memfd_create, "more", 0), EPERM);
    row("shared memory resized", call(SYS_ftruncate, theOutput, 2 * page), EPERM);
    row("files of another process", call(SYS_pidfd_getfd, theTester, 1, 0), EPERM);
    const auto outgrow = [] {
        const std::array<char, 2 * page> bytes = {};
        return ::write(theOutput, bytes.data(), bytes.size()) == page
            ? errorOf(::write(theOutput, bytes.data(), 1))
            : 0;
    };
    row("shared memory outgrown", outgrow, EFBIG);
    const auto remember = [] { return *theSecret || ::getenv("PATH") ? 0 : EPERM; };
    row("the environment", remember, EPERM);
#ifndef TARNWICK_SANITIZED
    // The sanitizers read files, map and protect memory as they like, and write reports.
    row("a file", call(SYS_openat, AT_FDCWD, "/etc/passwd", O_RDONLY), EPERM);
    row("another standard stream", call(SYS_write, 2, "\33c", 2), EPERM);
    row("another input", call(SYS_read, theOutput, thePage, 1), EPERM);
    row("devices' commands", call(SYS_ioctl, 0, FIOASYNC), EPERM);
    const auto fill = [] { return ::malloc(std::size_t{6} << 30) ? 0 : errno; };
    row("more memory than it may have", fill, ENOMEM);
    const auto map = [](int protection, int flags, int descriptor) {
        return call(SYS_mmap, nullptr, page, protection, flags, descriptor, 0);
    };
    constexpr int own = MAP_PRIVATE | MAP_ANONYMOUS;
    row("executable memory", map(PROT_READ | PROT_EXEC, own, -1), EPERM);
    row("writable and executable memory", map(PROT_READ | PROT_WRITE | PROT_EXEC, own, -1), EPERM);
    row("shared memory mapped", map(PROT_READ | PROT_WRITE, MAP_SHARED, theOutput), EPERM);
    row("memory made executable", call(SYS_mprotect, thePage, page, PROT_EXEC), EPERM);
    row("memory moved over the program",
        call(SYS_mremap, thePage, page, page, MREMAP_MAYMOVE | MREMAP_FIXED, 0x10000000), EPERM);
    row("executable by another personality", call(SYS_personality, 0), EPERM);
    row("futexes of others", call(SYS_futex, thePage, 1, 1, 0, 0, 0), EPERM);
    row("limits", call(SYS_setrlimit, RLIMIT_CPU), EPERM);
#endif
}

void TestLockdown::takesEverythingElse()
{
    const auto [deed, outcome] = TakesEverythingElse::fetch();
    QCOMPARE(outcomeOf(lock, deed), outcome);
}

using StandsInPlacesOfItsOwn = Rows<Deed, int, bool>;

void TestLockdown::standsInPlacesOfItsOwn_data()
{
    const StandsInPlacesOfItsOwn row;
    const bool hasNamespaces
        = outcomeOf(doNothing, call(SYS_unshare, CLONE_NEWUSER | CLONE_NEWNET)) == 0;
    const long landlock
        = ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
    const auto isOneself = [] { return ::getuid() == 65534 ? EPERM : 0; };
    row("privileges", hasPrivileges, EPERM, true);
    row("the machine's network", interfaceIsUp, EPERM, hasNamespaces);
    row("a name among the machine's users", isOneself, EPERM, hasNamespaces);
    row("files", call(SYS_openat, AT_FDCWD, "/etc/passwd", O_RDONLY), EACCES, landlock >= 1);
    row("new files", call(SYS_openat, AT_FDCWD, "/tmp", O_TMPFILE | O_RDWR, 0600), EACCES,
        landlock >= 1);
    row("signals to others", call(SYS_kill, theTester, 0), EPERM, landlock >= 6);
}

void TestLockdown::standsInPlacesOfItsOwn()
{
    const auto [deed, outcome, isGranted] = StandsInPlacesOfItsOwn::fetch();
    if (!isGranted)
        QSKIP("the kernel does not grant it here");
    QCOMPARE(outcomeOf(isolateAlone, deed), outcome);
}

namespace {

/// A process that is locked down and says so, then does something until it is let go.
class LockedProcess
{
public:
    template<typename Deed> explicit LockedProcess(Deed deed)
    {
        theGood = ::pipe(theReady) == 0 && ::pipe(theHold) == 0;
        theId = ::fork();
        if (theId == 0) {
            ::dup2(theHold[0], STDIN_FILENO);
            ::dup2(theReady[1], STDOUT_FILENO);
            const char ready = 'y';
            ::_exit(lock() && ::write(STDOUT_FILENO, &ready, 1) == 1 ? deed() : 1);
        }
        ::close(theReady[1]);
        ::close(theHold[0]);
        char answer = 0;
        theGood = theGood && ::read(theReady[0], &answer, 1) == 1;
    }
    LockedProcess(const LockedProcess&) = delete;
    LockedProcess& operator=(const LockedProcess&) = delete;
    ~LockedProcess() { ::close(theReady[0]); }

    bool isLocked() const { return theGood; }
    pid_t id() const { return theId; }
    /// Closes its input and waits for its end. @returns the status of waitpid().
    int letGo()
    {
        ::close(theHold[1]);
        int status = 0;
        ::waitpid(theId, &status, 0);
        return status;
    }

private:
    int theReady[2] = {-1, -1};
    int theHold[2] = {-1, -1};
    pid_t theId = 0;
    bool theGood = false;
};

} // namespace

/// An engine cannot hold back or ignore the signal that comes when its time is up.
void TestLockdown::endsAtItsProcessorTime()
{
#ifdef TARNWICK_SANITIZED
    QSKIP("the sanitizers may set signals");
#endif
    LockedProcess process([]() -> int {
        sigset_t all;
        sigfillset(&all);
        ::sigprocmask(SIG_BLOCK, &all, nullptr);
        ::signal(SIGXCPU, SIG_IGN);
        for (const volatile bool goesOn = true; goesOn;) { }
        return 0;
    });
    const rlimit last = {8, 8}; // should nothing else end it
    QCOMPARE(::prlimit(process.id(), RLIMIT_CPU, &last, nullptr), 0);
    QVERIFY(process.isLocked() && allowProcessorTime(process.id(), 0));
    const int status = process.letGo();
    QVERIFY(WIFSIGNALED(status));
    QCOMPARE(WTERMSIG(status), SIGXCPU);
    QVERIFY(!allowProcessorTime(process.id(), 0));
}

void TestLockdown::closesInheritedDescriptors()
{
    int inherited[2];
    QCOMPARE(::pipe(inherited), 0);
    LockedProcess process([] {
        char byte = 0;
        return static_cast<int>(::read(STDIN_FILENO, &byte, 1));
    });
    ::close(inherited[1]);
    // Nobody can write any more while the locked process lives.
    pollfd end = {inherited[0], POLLIN, 0};
    ::poll(&end, 1, 0);
    ::close(inherited[0]);
    QVERIFY(process.isLocked());
    QCOMPARE(process.letGo(), 0);
    QVERIFY((end.revents & POLLHUP) != 0);
}

QTEST_APPLESS_MAIN(TestLockdown)
#include "tst_Lockdown.moc"
