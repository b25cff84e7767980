#include "Isolation.h"

#include "support/ChildOutcome.h"

#include <QTest>

#include <csignal>

#include <fcntl.h>
#include <linux/capability.h>
#include <linux/landlock.h>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>

using namespace tarnwick;

/// What stands behind the filter of system calls, as far as the kernel grants it: tried without the
/// filter.
class TestIsolation : public QObject
{
    Q_OBJECT

private slots:
    void standsInPlacesOfItsOwn_data();
    void standsInPlacesOfItsOwn();
};

namespace {

int theTester = 0; ///< the process that must not be reached

bool keepPrivileges()
{
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0;
}

bool isolateAlone()
{
    if (!keepPrivileges())
        return false;
    isolate();
    return true;
}

bool hasNamespaces()
{
    return outcomeOf(
               [] { return true; }, [] { return errorOf(::unshare(CLONE_NEWUSER | CLONE_NEWNET)); })
        == 0;
}

long landlockVersion()
{
    return ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
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

void TestIsolation::standsInPlacesOfItsOwn_data()
{
    theTester = ::getpid();
    QTest::addColumn<Deed>("deed");
    QTest::addColumn<bool>("isGranted");
    const auto row = [](const char* name, int (*deed)(), int outcome, bool isGranted) {
        QTest::newRow(name) << Deed{deed, outcome} << isGranted;
    };
    const bool hasLandlock = landlockVersion() >= 1;
    row("privileges", hasPrivileges, EPERM, true);
    row("the machine's network", interfaceIsUp, EPERM, hasNamespaces());
    row(
        "a name among the machine's users", [] { return ::getuid() == 65534 ? EPERM : 0; }, EPERM,
        hasNamespaces());
    row(
        "files", [] { return errorOf(::open("/etc/passwd", O_RDONLY)); }, EACCES, hasLandlock);
    row(
        "new files", [] { return errorOf(::open("/tmp", O_TMPFILE | O_RDWR, 0600)); }, EACCES,
        hasLandlock);
    row(
        "signals to others", [] { return errorOf(::kill(theTester, 0)); }, EPERM,
        landlockVersion() >= 6);
}

void TestIsolation::standsInPlacesOfItsOwn()
{
    QFETCH(Deed, deed);
    QFETCH(bool, isGranted);
    if (!isGranted)
        QSKIP("the kernel does not grant it here");
    QCOMPARE(outcomeOf(isolateAlone, deed.run), deed.outcome);
}

QTEST_APPLESS_MAIN(TestIsolation)
#include "tst_Isolation.moc"
