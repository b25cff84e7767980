#include "Lockdown.h"
#include "ProcessorTime.h"

#include "support/ChildOutcome.h"

#include <QTest>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>

#include <fcntl.h>
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

int theTester = 0; ///< the process that must not be reached
int theOutput = -1; ///< shared memory of one page, granted to the locked process
char* theSecret = nullptr; ///< an entry of the environment
void* thePage = nullptr; ///< the process's own, not executable

bool lock()
{
    ::lseek(theOutput, 0, SEEK_SET); // a position that all its users share
    return lockDown({1000, theOutput});
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

void TestLockdown::takesEverythingElse_data()
{
    QTest::addColumn<Deed>("deed");
    const auto row = [](const char* name, int (*deed)(), int outcome = EPERM) {
        QTest::newRow(name) << Deed{deed, outcome};
    };
    const int ended = endedBy(SIGSYS);

    row(
        "kill", [] { return errorOf(::kill(theTester, 0)); }, ended);
    row(
        "ptrace", [] { return errorOf(::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr)); }, ended);
    row(
        "writing a process's memory",
        [] { return errorOf(::syscall(SYS_process_vm_writev, theTester, 0, 0, 0, 0, 0)); }, ended);
    row("tkill", [] { return errorOf(::syscall(SYS_tkill, theTester, 0)); });
    row("tgkill", [] { return errorOf(::syscall(SYS_tgkill, theTester, theTester, SIGABRT)); });
    row("a signal to itself",
        [] { return errorOf(::syscall(SYS_tgkill, ::getpid(), ::gettid(), SIGWINCH)); });
    row("rt_sigqueueinfo", [] {
        siginfo_t info = {};
        return errorOf(::syscall(SYS_rt_sigqueueinfo, theTester, SIGWINCH, &info));
    });
    row("pidfd", [] { return errorOf(::syscall(SYS_pidfd_open, theTester, 0)); });
    row("the pipe's owner", [] { return errorOf(::fcntl(0, F_SETOWN, theTester)); });
    row("the pipe's signal", [] { return errorOf(::fcntl(0, F_SETSIG, SIGKILL)); });
    row("signals from the pipe", [] { return errorOf(::fcntl(0, F_SETFL, O_ASYNC)); });
    row("leases and notices", [] { return errorOf(::fcntl(theOutput, F_SETLEASE, F_RDLCK)); });
    row("a copy of a descriptor", [] { return errorOf(::dup(0)); });
    row("fork", [] { return errorOf(::syscall(SYS_clone, SIGCHLD, 0, 0, 0, 0)); });
    row(
        "a program", [] { return errorOf(::execl("/bin/true", "true", nullptr)); }, ended);
    row(
        "network", [] { return errorOf(::socket(AF_INET, SOCK_STREAM, 0)); }, ended);
    row("io_uring", [] { return errorOf(::syscall(SYS_io_uring_setup, 1, nullptr)); });
    row("userfaultfd", [] { return errorOf(::syscall(SYS_userfaultfd, 0)); });
    row("prctl", [] { return errorOf(::prctl(PR_GET_DUMPABLE)); });
    row("another namespace", [] { return errorOf(::unshare(CLONE_NEWUSER)); });

    row("shared memory made", [] { return errorOf(::memfd_create("more", 0)); });
    row("shared memory resized", [] { return errorOf(::ftruncate(theOutput, 2 * page)); });
    row("shared memory given room", [] { return errorOf(::fallocate(theOutput, 0, 0, 2 * page)); });
    row(
        "shared memory outgrown",
        [] {
            const std::array<char, 2 * page> bytes = {};
            return ::write(theOutput, bytes.data(), bytes.size()) == page
                ? errorOf(::write(theOutput, bytes.data(), 1))
                : 0;
        },
        EFBIG);
    row("files of another process",
        [] { return errorOf(::syscall(SYS_pidfd_getfd, theTester, 1, 0)); });
#ifdef __x86_64__
    row(
        "a call in the x32 way", [] { return errorOf(::syscall(0x40000000 | SYS_getpid)); }, ended);
    row(
        "a call in the 32-bit way",
        [] {
            long result = 20; // getpid
            asm volatile("int $0x80" : "+a"(result) : : "memory");
            return errorOf(result);
        },
        ended);
#endif
    row("the environment", [] { return *theSecret || ::getenv("PATH") ? 0 : EPERM; });
#ifndef TARNWICK_SANITIZED
    // The sanitizers read files, map and protect memory as they like, and write reports.
    row("a file", [] { return errorOf(::open("/etc/passwd", O_RDONLY)); });
    row("another standard stream", [] { return errorOf(::write(2, "\33c", 2)); });
    row("another input", [] { return errorOf(::read(theOutput, thePage, 1)); });
    row("devices' commands", [] {
        int on = 1;
        return errorOf(::ioctl(0, FIOASYNC, &on));
    });
    row(
        "more memory than it may have", [] { return ::malloc(std::size_t{6} << 30) ? 0 : errno; },
        ENOMEM);
    const auto map = [](int protection, int flags, int descriptor) {
        return errorOf(::mmap(nullptr, page, protection, flags, descriptor, 0));
    };
    static const auto mapping = map;
    row("executable memory",
        [] { return mapping(PROT_READ | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1); });
    row("writable and executable memory", [] {
        return mapping(PROT_READ | PROT_WRITE | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1);
    });
    row("shared memory mapped",
        [] { return mapping(PROT_READ | PROT_WRITE, MAP_SHARED, theOutput); });
    row("shared memory mapped as a program",
        [] { return mapping(PROT_READ | PROT_EXEC, MAP_PRIVATE, theOutput); });
    row("memory made executable",
        [] { return errorOf(::mprotect(thePage, page, PROT_READ | PROT_EXEC)); });
    row("memory made executable with a key",
        [] { return errorOf(::pkey_mprotect(thePage, page, PROT_READ | PROT_EXEC, -1)); });
    row("memory moved over the program", [] {
        constexpr int flags = MREMAP_MAYMOVE | MREMAP_FIXED;
        void* const target = reinterpret_cast<void*>(std::uintptr_t{0x10000000});
        return errorOf(::mremap(thePage, page, page, flags, target));
    });
    row("executable by another personality", [] { return errorOf(::syscall(SYS_personality, 0)); });
    row("futexes of others", [] { return errorOf(::syscall(SYS_futex, thePage, 1, 1, 0, 0, 0)); });
    row("limits", [] {
        const rlimit endless = {RLIM_INFINITY, RLIM_INFINITY};
        return errorOf(::setrlimit(RLIMIT_CPU, &endless));
    });
#endif
}

void TestLockdown::takesEverythingElse()
{
    QFETCH(Deed, deed);
    QCOMPARE(outcomeOf(lock, deed.run), deed.outcome);
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
