#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// Which file a name leads to: two names with the same identity are one file, be it through a hard
/// or a symbolic link.
struct FileIdentity
{
    dev_t device = 0;
    ino_t inode = 0;

    bool operator==(const FileIdentity&) const = default;
};

/// @returns nothing when the path leads to no file.
std::optional<FileIdentity> fileIdentity(const std::string& path);
std::optional<FileIdentity> fileIdentity(int descriptor);

/// A file that appears in its folder whole or not at all.
///
/// It is written without a name where the file system allows that, else under a hidden temporary
/// name, flushed to the disk, and only then given its own name, in place of a file that had it. One
/// that is destroyed before commit() leaves nothing behind.
///
/// Operations return 0 or the errno of what failed; after a failure only destruction makes sense.
/// Any one thread at a time.
class WholeFile
{
public:
    /// @param folder descriptor of the folder, borrowed for this object's life.
    /// @param name the file's name in it, without slash.
    WholeFile(int folder, std::string name);
    ~WholeFile();
    WholeFile(const WholeFile&) = delete;
    WholeFile& operator=(const WholeFile&) = delete;

    /// Opens the file and sees that its name can be used.
    /// @param forbidden the one file that must not be replaced: EEXIST when the name leads to it.
    int open(const std::optional<FileIdentity>& forbidden);

    /// Appends bytes and has the disk start on them at once, so that commit() has little to wait
    /// for.
    int append(std::string_view bytes);

    /// Shares the first bytes of another open file instead of writing them, where the file system
    /// can (btrfs, XFS and others). Precondition: nothing has been appended.
    /// @returns how many bytes of the wanted length are shared: whole blocks, 0 where it cannot.
    std::size_t shareBeginning(int other, std::size_t length);

    /// Gives up what is in the file so far.
    int restart();

    /// Flushes the file and gives it its name.
    int commit();

    /// The open file, readable and writable, or -1; owned by this object.
    int descriptor() const { return theDescriptor; }

private:
    int openTemporary();
    int giveTemporaryName();

    int theFolder;
    std::string theName;
    int theDescriptor = -1;
    std::string theTemporaryName; ///< empty while the file has no name
    std::size_t theLength = 0;
};
