#include "files/OutputPlace.h"

#include "PathParts.h"
#include "files/FileIdentity.h"
#include "files/OutputFile.h"

#include <cerrno>
#include <charconv>
#include <climits>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace tarnwick {

namespace {

/// As many as the kernel follows.
constexpr int maximumLinks = 40;

/// Whether the kernel itself would follow a path's last link: in folders that everybody may write
/// it follows none of strangers.
int mayFollow(int base, const std::string& path)
{
    const int descriptor = ::openat(base, path.c_str(), O_PATH | O_CLOEXEC);
    if (descriptor < 0)
        return errno == ENOENT ? OutputFile::isDanglingLink : errno;
    ::close(descriptor);
    return 0;
}

} // namespace

OutputPlace::~OutputPlace()
{
    if (theFolder >= 0)
        ::close(theFolder);
}

int OutputPlace::find(int base, const std::string& path)
{
    int error = step(base, path);
    if (error != 0 || !theStanding || !S_ISLNK(theStanding->st_mode))
        return error;
    if (findDescriptor())
        return 0;
    error = mayFollow(base, path);
    std::string next;
    for (int links = 0; error == 0 && theStanding && S_ISLNK(theStanding->st_mode); ++links) {
        if (findDescriptor())
            return 0;
        error = links < maximumLinks ? followLink(next) : ELOOP;
        if (error == 0)
            error = step(theFolder, next);
    }
    return error;
}

/// Goes to the place that a path names, following no link at its end.
int OutputPlace::step(int base, const std::string& path)
{
    PathParts parts = splitPath(path);
    if (parts.name.empty() || parts.name == "." || parts.name == "..")
        return path.empty() ? ENOENT : EISDIR;
    const int folder = ::openat(base, parts.folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        return errno;
    if (theFolder >= 0)
        ::close(theFolder);
    theFolder = folder;
    theName = std::move(parts.name);
    struct stat status = {};
    if (::fstatat(theFolder, theName.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0)
        theStanding = status;
    else if (errno == ENOENT)
        theStanding.reset();
    else
        return errno;
    return 0;
}

int OutputPlace::followLink(std::string& path)
{
    char target[PATH_MAX];
    const ssize_t length = ::readlinkat(theFolder, theName.c_str(), target, sizeof target);
    if (length < 0)
        return errno;
    path.assign(target, static_cast<std::size_t>(length));
    return 0;
}

bool OutputPlace::findDescriptor()
{
    struct statfs system = {};
    if (::fstatfs(theFolder, &system) != 0 || system.f_type != PROC_SUPER_MAGIC)
        return false;
    struct stat target = {};
    isLinkOfProcess = true;
    if (::fstatat(theFolder, theName.c_str(), &target, 0) == 0)
        theStanding = target;
    const auto own = fileIdentity("/proc/self/fd");
    int number = -1;
    const auto read = std::from_chars(theName.data(), theName.data() + theName.size(), number);
    if (own && own == fileIdentity(theFolder) && read.ec == std::errc())
        theDescriptor = number;
    return true;
}

} // namespace tarnwick
