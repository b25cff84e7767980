#include "files/WholeFile.h"

#include "FileSizeSignalBlock.h"
#include "WriteAll.h"
#include "files/OpenedFiles.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace tarnwick {

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

WholeFile::WholeFile(int folder, std::string path)
    : theBase(folder)
    , thePath(std::move(path))
{
}

WholeFile::WholeFile(std::string path)
    : WholeFile(AT_FDCWD, std::move(path))
{
}

WholeFile::~WholeFile()
{
    if (theDescriptor >= 0)
        ::close(theDescriptor);
    if (!theTemporaryName.empty())
        ::unlinkat(thePlace.folder(), theTemporaryName.c_str(), 0);
}

int WholeFile::open()
{
    // Better said now than after a gigabyte has been written.
    if (const int error = thePlace.find(theBase, thePath))
        return error;
    if (const int error = check())
        return error;
    return openTemporary();
}

/// Whether the name may be given to a file of ours.
int WholeFile::check() const
{
    if (OpenedFiles::contains(thePlace.folder(), thePlace.name()))
        return isOpenedFile;
    if (!thePlace.standing())
        return 0;
    if (S_ISDIR(thePlace.standing()->st_mode))
        return EISDIR;
    if (!S_ISREG(thePlace.standing()->st_mode) || thePlace.isOfProcess())
        return isNoRegularFile;
    return 0;
}

int WholeFile::openTemporary()
{
    constexpr mode_t mode = 0666;
    // Without /proc an unnamed file could never be given a name.
    if (::access("/proc/self/fd", X_OK) == 0) {
        theDescriptor = ::openat(thePlace.folder(), ".", O_TMPFILE | O_RDWR | O_CLOEXEC, mode);
        if (theDescriptor >= 0)
            return 0;
        if (!isWithoutUnnamedFiles(errno))
            return errno;
    }
    const std::string name = nextTemporaryName();
    theDescriptor
        = ::openat(thePlace.folder(), name.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, mode);
    if (theDescriptor < 0)
        return errno;
    theTemporaryName = name;
    return 0;
}

int WholeFile::append(std::string_view bytes)
{
    const FileSizeSignalBlock block;
    const std::size_t start = theLength;
    const auto write = [this, start](std::string_view rest, std::size_t done) {
        return ::pwrite(theDescriptor, rest.data(), rest.size(), static_cast<off_t>(start + done));
    };
    if (const int error = writeAll(bytes, write))
        return error;
    theLength += bytes.size();
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
    if (thePlace.standing())
        takeOverPermissions();
    // The bytes have to be on the disk before the name leads to them; a file system may put the two
    // in any order, and a full disk may show only now.
    if (::fsync(theDescriptor) != 0)
        return errno;
    // The file may have been opened, and links have been made, since open().
    if (OpenedFiles::contains(thePlace.folder(), thePlace.name()))
        return isOpenedFile;
    return thePlace.standing() ? replace() : nameNewFile();
}

void WholeFile::takeOverPermissions() const
{
    const struct stat& old = *thePlace.standing();
    struct stat own = {};
    if (::fstat(theDescriptor, &own) != 0)
        return;
    mode_t mode = old.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO);
    // Only the system's owner may give a file away: the user's stays the user's.
    const bool isOther = own.st_uid != old.st_uid;
    [[maybe_unused]] const int kept
        = isOther ? ::fchown(theDescriptor, old.st_uid, static_cast<gid_t>(-1)) : 0;
    // What the old group was allowed is not for another one.
    if (own.st_gid != old.st_gid
        && ::fchown(theDescriptor, static_cast<uid_t>(-1), old.st_gid) != 0)
        mode = (mode & ~static_cast<mode_t>(S_IRWXG)) | (mode & S_IRWXO) << 3U;
    ::fchmod(theDescriptor, mode);
}

/// Gives the file the name that nobody had, without replacing one that has it by now.
int WholeFile::nameNewFile()
{
    const char* const name = thePlace.name().c_str();
    const int folder = thePlace.folder();
    if (theTemporaryName.empty()) {
        const std::string self = "/proc/self/fd/" + std::to_string(theDescriptor);
        return ::linkat(AT_FDCWD, self.c_str(), folder, name, AT_SYMLINK_FOLLOW) == 0 ? 0 : errno;
    }
    if (::renameat2(folder, theTemporaryName.c_str(), folder, name, RENAME_NOREPLACE) == 0) {
        theTemporaryName.clear();
        return 0;
    }
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    // Where the file system cannot, nothing is surer than a last look.
    return ::faccessat(folder, name, F_OK, AT_SYMLINK_NOFOLLOW) == 0 ? EEXIST : replace();
}

int WholeFile::replace()
{
    if (theTemporaryName.empty()) {
        if (const int error = giveTemporaryName())
            return error;
    }
    const int folder = thePlace.folder();
    if (::renameat(folder, theTemporaryName.c_str(), folder, thePlace.name().c_str()) != 0)
        return errno;
    theTemporaryName.clear();
    return 0;
}

int WholeFile::giveTemporaryName()
{
    // linkat() does not replace, so the file gets its own name by way of a temporary one.
    const std::string self = "/proc/self/fd/" + std::to_string(theDescriptor);
    const std::string name = nextTemporaryName();
    if (::linkat(AT_FDCWD, self.c_str(), thePlace.folder(), name.c_str(), AT_SYMLINK_FOLLOW) != 0)
        return errno;
    theTemporaryName = name;
    return 0;
}

} // namespace tarnwick
