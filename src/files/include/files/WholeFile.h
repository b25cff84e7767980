#pragma once

#include "files/OutputFile.h"
#include "files/OutputPlace.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnwick {

/// A file that appears in its folder whole or not at all.
///
/// It is written without a name where the file system allows that, else under a hidden temporary
/// name, flushed to the disk, and only then given its own name, in place of a file that had it at
/// open(): one that has appeared since stays. One that is destroyed before commit() leaves nothing
/// behind, and what stood there as it was.
///
/// Where the name is a link, the file that it leads to is replaced and the link stays. A replaced
/// file's permissions and, where that is allowed, its group and owner are those of the new one:
/// as with any file that is renamed over another, write protection does not keep it from being
/// replaced.
class WholeFile : public OutputFile
{
public:
    /// @param folder descriptor that a relative path starts from, borrowed until open(); AT_FDCWD
    ///   for the working folder.
    WholeFile(int folder, std::string path);
    explicit WholeFile(std::string path);
    ~WholeFile() override;

    int open() override;
    /// Appends bytes and has the disk start on them at once, so that commit() has little to wait
    /// for.
    int append(std::string_view bytes) override;
    /// Flushes the file and gives it its name, unless that leads to an opened file by now.
    int commit() override;

    /// Shares the first bytes of another open file instead of writing them, where the file system
    /// can (btrfs, XFS and others). Precondition: nothing has been appended.
    /// @returns how many bytes of the wanted length are shared: whole blocks, 0 where it cannot.
    std::size_t shareBeginning(int other, std::size_t length);

    /// Gives up what is in the file so far.
    int restart();

    /// The open file, readable and writable, or -1; owned by this object.
    int descriptor() const { return theDescriptor; }

private:
    int check() const;
    int openTemporary();
    void takeOverPermissions() const;
    int nameNewFile();
    int replace();
    int giveTemporaryName();

    int theBase;
    std::string thePath;
    OutputPlace thePlace;
    int theDescriptor = -1;
    std::string theTemporaryName; ///< empty while the file has no name
    std::size_t theLength = 0;
};

} // namespace tarnwick
