#include "Isolation.h"

#include <cstddef>
#include <cstdint>

#include <linux/capability.h>
#include <linux/landlock.h>
#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tarnwick {

namespace {

/// Being first in a user namespace gives all privileges in it, and being root those of the system.
void dropPrivileges()
{
    __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
    const __user_cap_data_struct none[_LINUX_CAPABILITY_U32S_3] = {};
    ::syscall(SYS_capset, &header, none);
}

/// What a domain handles it forbids, as long as no rule allows it. Debian 12's header knows the
/// first of these fields alone; kernels take as many as they know.
struct DomainAttributes
{
    std::uint64_t files;
    std::uint64_t network;
    std::uint64_t scopes;
};

/// @param version what the kernel knows, from 1 on. @param[out] size bytes that it takes of this.
DomainAttributes everythingForbidden(long version, std::size_t& size)
{
    // Rights to files by version: 13 at first, then moving, cutting and the commands of devices.
    const int fileRights = version >= 5 ? 16 : version >= 3 ? 15 : version == 2 ? 14 : 13;
    constexpr std::uint64_t listenAndConnect = 3;
    constexpr std::uint64_t socketsAndSignals = 3;
    size = sizeof(std::uint64_t) * (version >= 6 ? 3 : version >= 4 ? 2 : 1);
    return {(std::uint64_t{1} << fileRights) - 1, listenAndConnect, socketsAndSignals};
}

void enterLandlockDomain()
{
    const long version = ::syscall(
        SYS_landlock_create_ruleset, nullptr, std::size_t{0}, LANDLOCK_CREATE_RULESET_VERSION);
    if (version < 1)
        return;
    std::size_t size = 0;
    const DomainAttributes attributes = everythingForbidden(version, size);
    const long rules = ::syscall(SYS_landlock_create_ruleset, &attributes, size, 0u);
    if (rules < 0)
        return;
    ::syscall(SYS_landlock_restrict_self, static_cast<int>(rules), 0u);
    ::close(static_cast<int>(rules));
}

} // namespace

void isolate()
{
    ::unshare(CLONE_NEWUSER | CLONE_NEWNET);
    dropPrivileges();
    enterLandlockDomain();
}

} // namespace tarnwick
