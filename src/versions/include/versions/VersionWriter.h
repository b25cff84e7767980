#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

/// How an export of versions ended.
struct VersionResult
{
    enum class Outcome
    {
        isDone, ///< every version is written
        isCancelled, ///< it was asked to stop
        isFailed, ///< path could not be written, for reason
    };

    Outcome outcome = Outcome::isDone;
    std::size_t filesWritten = 0; ///< so many of the versions, the first, are in the folder, whole
    std::string path; ///< the folder or file that failed
    std::string reason; ///< as a phrase for the user ("No space left on device")
};

/// Writes the saved versions of a file into a folder, one numbered file for each.
///
/// Each file is whole or not there; the export stops at the first that cannot be written and leaves
/// those before it. A file of the same name is replaced, unless it is opened (WholeFile). No memory
/// is needed besides the bytes themselves, and where the file system can share blocks between
/// files, each version shares those of the version before and only its own save is written.
///
/// Usable from any thread, one export at a time on one object.
class VersionWriter
{
public:
    /// What is written of a file: the version of a number, which ends at a cut.
    struct Version
    {
        std::size_t number = 0; ///< from 1
        std::size_t end = 0;
    };

    /// @param done, total bytes of all versions together.
    using Progress = std::function<void(std::uint64_t done, std::uint64_t total)>;

    /// @param bytes the file, borrowed for this object's life.
    /// @param base, extension as versionFileName() takes them; bytes of the file system.
    VersionWriter(std::string_view bytes, std::string base, std::string extension);

    /// All versions that the cuts make (versionCuts()).
    static std::vector<Version> all(const std::vector<std::size_t>& cuts);

    /// Creates the folder and those above it where they are missing, and writes the versions.
    /// @param versions in the order of their ends.
    /// @param stop looked at before the first byte and after every few megabytes.
    /// @param progress called likewise; may be empty.
    VersionResult write(const std::string& folder, const std::vector<Version>& versions,
        const std::stop_token& stop = {}, const Progress& progress = {}) const;

private:
    std::string_view theBytes;
    std::string theBase;
    std::string theExtension;
};

} // namespace tarnwick
