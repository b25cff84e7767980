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
    std::size_t filesWritten = 0; ///< versions 1 to this one are in the folder, whole
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
    /// @param done, total bytes of all versions together.
    using Progress = std::function<void(std::uint64_t done, std::uint64_t total)>;

    /// @param bytes the file, borrowed for this object's life.
    /// @param base, extension as versionFileName() takes them; bytes of the file system.
    VersionWriter(std::string_view bytes, std::string base, std::string extension);

    /// Creates the folder and those above it where they are missing, and writes the versions.
    /// @param cuts of the bytes (versionCuts()), in order.
    /// @param stop looked at before the first byte and after every few megabytes.
    /// @param progress called likewise; may be empty.
    VersionResult write(const std::string& folder, const std::vector<std::size_t>& cuts,
        const std::stop_token& stop = {}, const Progress& progress = {}) const;

private:
    std::string_view theBytes;
    std::string theBase;
    std::string theExtension;
};

} // namespace tarnwick
