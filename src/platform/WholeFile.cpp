#include "platform/WholeFile.h"

#include "platform/FileSizeSignalBlock.h"

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

std::string nextTemporaryName()
{
    // Short, whatever the file's own name: that one may fill the 255 bytes a name can have.
    static std::atomic<unsigned> count = 0;
    return ".tarnwick-" + std::to_string(getpid()) + "-" + std::to_string(++count) + ".part";
}

/// Where the file system knows nothing of unnamed files it says so in one of these ways.
bool isWithoutUnnamedFiles(int error)
{
    return error == EOPNOTSUPP || error == EISDIR || error == EINVAL || error == ENOENT;
}

} // namespace

std::optional<FileIdentity> fileIdentity(const std::string& path)
{
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0)
        return std::nullopt;
    return FileIdentity{status.st_dev, status.st_ino};
}

std::optional<FileIdentity> fileIdentity(int descriptor)
{
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0)
        return std::nullopt;
    return FileIdentity{status.st_dev, status.st_ino};
}

WholeFile::WholeFile(int folder, std::string name)
    : theFolder(folder)
    , theName(std::move(name))
{
}

WholeFile::~WholeFile()
{
    if (theDescriptor >= 0)
        ::close(theDescriptor);
    if (!theTemporaryName.empty())
        ::unlinkat(theFolder, theTemporaryName.c_str(), 0);
}

int WholeFile::open(const std::optional<FileIdentity>& forbidden)
{
    struct stat status = {};
    if (::fstatat(theFolder, theName.c_str(), &status, 0) == 0) {
        if (forbidden == FileIdentity{status.st_dev, status.st_ino})
            return EEXIST;
        if (S_ISDIR(status.st_mode))
            return EISDIR;
    } else if (errno == ENAMETOOLONG) {
        // Better said now than after a gigabyte has been written.
        return ENAMETOOLONG;
    }
    return openTemporary();
}

int WholeFile::openTemporary()
{
    constexpr mode_t mode = 0666;
    // Without /proc an unnamed file could never be given a name.
    if (::access("/proc/self/fd", X_OK) == 0) {
        theDescriptor = ::openat(theFolder, ".", O_TMPFILE | O_RDWR | O_CLOEXEC, mode);
        if (theDescriptor >= 0)
            return 0;
        if (!isWithoutUnnamedFiles(errno))
            return errno;
    }
    const std::string name = nextTemporaryName();
    theDescriptor = ::openat(theFolder, name.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, mode);
    if (theDescriptor < 0)
        return errno;
    theTemporaryName = name;
    return 0;
}

int WholeFile::append(std::string_view bytes)
{
    const FileSizeSignalBlock block;
    const std::size_t start = theLength;
    while (!bytes.empty()) {
        const ssize_t written
            = ::pwrite(theDescriptor, bytes.data(), bytes.size(), static_cast<off_t>(theLength));
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return errno;
        if (written == 0)
            return ENOSPC;
        theLength += static_cast<std::size_t>(written);
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    // A hint: where it is not understood, commit() waits longer.
    ::sync_file_range(theDescriptor, static_cast<off_t>(start),
        static_cast<off_t>(theLength - start), SYNC_FILE_RANGE_WRITE);
    return 0;
}

std::size_t WholeFile::shareBeginning(int other, std::size_t length)
{
    const FileSizeSignalBlock block;
    struct stat status = {};
    if (other < 0 || ::fstat(theDescriptor, &status) != 0 || status.st_blksize <= 0)
        return 0;
    const auto blockSize = static_cast<std::size_t>(status.st_blksize);
    const std::size_t whole = length - length % blockSize;
    if (whole == 0)
        return 0;
    file_clone_range range = {};
    range.src_fd = other;
    range.src_length = whole;
    if (::ioctl(theDescriptor, FICLONERANGE, &range) != 0)
        return 0;
    theLength = whole;
    return whole;
}

int WholeFile::restart()
{
    theLength = 0;
    return ::ftruncate(theDescriptor, 0) == 0 ? 0 : errno;
}

int WholeFile::commit()
{
    // The bytes have to be on the disk before the name leads to them; a file system may put the two
    // in any order, and a full disk may show only now.
    if (::fsync(theDescriptor) != 0)
        return errno;
    if (theTemporaryName.empty()) {
        if (const int error = giveTemporaryName())
            return error;
    }
    if (::renameat(theFolder, theTemporaryName.c_str(), theFolder, theName.c_str()) != 0)
        return errno;
    theTemporaryName.clear();
    return 0;
}

int WholeFile::giveTemporaryName()
{
    // linkat() does not replace, so the file gets its own name by way of a temporary one.
    const std::string self = "/proc/self/fd/" + std::to_string(theDescriptor);
    const std::string name = nextTemporaryName();
    if (::linkat(AT_FDCWD, self.c_str(), theFolder, name.c_str(), AT_SYMLINK_FOLLOW) != 0)
        return errno;
    theTemporaryName = name;
    return 0;
}
