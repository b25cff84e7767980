#include "files/FileIdentity.h"

#include <fcntl.h>
#include <sys/sysmacros.h>

namespace tarnwick {

namespace {

FileIdentity::Instant instantOf(const struct statx_timestamp& time)
{
    return {time.tv_sec, time.tv_nsec};
}

std::optional<FileIdentity> identityOf(int folder, const char* path, int flags)
{
    struct statx status = {};
    if (::statx(folder, path, flags, STATX_BASIC_STATS | STATX_BTIME, &status) != 0)
        return std::nullopt;
    FileIdentity identity;
    if (S_ISBLK(status.stx_mode)) {
        // Every file that stands for a device leads to the same bytes.
        identity.device = makedev(status.stx_rdev_major, status.stx_rdev_minor);
        return identity;
    }
    identity.device = makedev(status.stx_dev_major, status.stx_dev_minor);
    identity.inode = status.stx_ino;
    if ((status.stx_mask & STATX_BTIME) != 0)
        identity.born = instantOf(status.stx_btime);
    identity.modified = instantOf(status.stx_mtime);
    identity.changed = instantOf(status.stx_ctime);
    identity.size = status.stx_size;
    return identity;
}

} // namespace

bool FileIdentity::operator==(const FileIdentity& other) const
{
    if (inode != other.inode)
        return false;
    if (device == other.device)
        return born == other.born || born == Instant() || other.born == Instant();
    // Nobody can set the time of change, so that equal ones on equal numbers are no accident.
    return inode != 0 && size == other.size && modified == other.modified
        && changed == other.changed;
}

std::optional<FileIdentity> fileIdentity(const std::string& path)
{
    return identityOf(AT_FDCWD, path.c_str(), 0);
}

std::optional<FileIdentity> fileIdentity(int folder, const std::string& path)
{
    return identityOf(folder, path.c_str(), 0);
}

std::optional<FileIdentity> fileIdentity(int descriptor)
{
    return identityOf(descriptor, "", AT_EMPTY_PATH);
}

} // namespace tarnwick
