#include "platform/engine/Lockdown.h"

#include <QTest>

#include <cerrno>
#include <cstdlib>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

class TestLockdown : public QObject
{
    Q_OBJECT

private slots:
    void takesWhatTheEngineDoesNotNeed();
};

namespace {

/// Runs a deed in a child that has been locked down. @returns its result, 200 for a child that was
/// ended, 201 when the lock was not granted.
int resultOf(int (*deed)())
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(lockDown(1000) ? deed() : 201);
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 200;
}

} // namespace

void TestLockdown::takesWhatTheEngineDoesNotNeed()
{
    QCOMPARE(resultOf([] { return std::malloc(std::size_t{100} << 20) ? 0 : errno; }), 0);
#ifndef TARNWICK_SANITIZED
    // The sanitizers read files and need terabytes of address space; the rest holds there as well.
    QCOMPARE(resultOf([] { return std::malloc(std::size_t{6} << 30) ? 0 : errno; }), ENOMEM);
    QCOMPARE(resultOf([] { return ::open("/etc/passwd", O_RDONLY) < 0 ? errno : 0; }), EPERM);
#endif
    QCOMPARE(resultOf([] { return ::socket(AF_INET, SOCK_STREAM, 0) < 0 ? errno : 0; }), 200);
    QCOMPARE(resultOf([] { return ::execl("/bin/true", "true", nullptr) < 0 ? errno : 0; }), 200);
    QCOMPARE(resultOf([] { return ::fork() < 0 ? errno : 0; }), EPERM);
}

QTEST_APPLESS_MAIN(TestLockdown)
#include "tst_Lockdown.moc"
