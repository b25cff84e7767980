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
    void takesWhatTheEngineDoesNotNeed_data();
    void takesWhatTheEngineDoesNotNeed();
};

namespace {

using Deed = int (*)();

/// Runs a deed in a child that has been locked down. @returns its result, 200 for a child that was
/// ended, 201 when the lock was not granted.
int resultOf(Deed deed)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(lockDown(1000) ? deed() : 201);
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 200;
}

[[maybe_unused]] int opensAFile()
{
    return ::open("/etc/passwd", O_RDONLY) < 0 ? errno : 0;
}

int makesASocket()
{
    return ::socket(AF_INET, SOCK_STREAM, 0) < 0 ? errno : 0;
}

int startsAProgram()
{
    return ::execl("/bin/true", "true", nullptr) < 0 ? errno : 0;
}

int makesAProcess()
{
    return ::fork() < 0 ? errno : 0;
}

[[maybe_unused]] int takesSixGigabytes()
{
    return std::malloc(std::size_t{6} << 30) ? 0 : errno;
}

int takesSomeMemory()
{
    return std::malloc(std::size_t{100} << 20) ? 0 : errno;
}

} // namespace

Q_DECLARE_METATYPE(Deed)

void TestLockdown::takesWhatTheEngineDoesNotNeed_data()
{
    QTest::addColumn<Deed>("deed");
    QTest::addColumn<int>("result");
    QTest::newRow("memory within the limit") << Deed(takesSomeMemory) << 0;
#ifdef TARNWICK_SANITIZED
    // The sanitizers read files and need terabytes of address space; the rest holds here as well.
#else
    QTest::newRow("memory beyond it") << Deed(takesSixGigabytes) << ENOMEM;
    QTest::newRow("a file") << Deed(opensAFile) << EPERM;
#endif
    QTest::newRow("the network") << Deed(makesASocket) << 200;
    QTest::newRow("another program") << Deed(startsAProgram) << 200;
    QTest::newRow("another process") << Deed(makesAProcess) << EPERM;
}

void TestLockdown::takesWhatTheEngineDoesNotNeed()
{
    QFETCH(Deed, deed);
    QFETCH(int, result);
    QCOMPARE(resultOf(deed), result);
}

QTEST_APPLESS_MAIN(TestLockdown)
#include "tst_Lockdown.moc"
