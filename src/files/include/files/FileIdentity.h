#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <optional>
#include <string>

namespace tarnwick {

/// Which file a name leads to: two names with equal identities lead to one file, be it through hard
/// or symbolic links, another spelling or another mount of its folder.
struct FileIdentity
{
    /// Of a file system's clock; {0, 0} where it does not say.
    struct Instant
    {
        std::int64_t seconds = 0;
        std::uint32_t nanoseconds = 0;

        bool operator==(const Instant&) const = default;
    };

    /// Of the file system, or of the device that a device's file stands for.
    std::uint64_t device = 0;
    std::uint64_t inode = 0; ///< 0 for a device's file
    Instant born;
    Instant modified;
    Instant changed;
    std::uint64_t size = 0;

    /// Inodes are numbered in their file system, and a number is given again once its file is gone,
    /// which the time of birth tells. Where one file system is stacked on another (overlay,
    /// network) the same file may be met in both, under two devices.
    bool operator==(const FileIdentity& other) const;
};

/// @returns nothing when the path leads to no file.
std::optional<FileIdentity> fileIdentity(const std::string& path);
/// @param folder descriptor that a relative path starts from, or AT_FDCWD.
std::optional<FileIdentity> fileIdentity(int folder, const std::string& path);
std::optional<FileIdentity> fileIdentity(int descriptor);

} // namespace tarnwick
