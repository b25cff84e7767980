#pragma once

#include <QString>

#include <cstddef>
#include <memory>
#include <optional>
#include <stop_token>
#include <string_view>

namespace tarnwick {

/// The bytes of one file, read once and never changed.
///
/// They lie in sealed shared memory (memfd with F_SEAL_WRITE), so that the PDF engine's processes
/// read them in place and nobody, the engine included, can change them. Copies share the memory; it
/// lives as long as the last copy or the last owner() handed out, and so long the file that was
/// read counts as opened (OpenedFiles) and is not written. Any thread may read.
class FileBytes
{
public:
    /// No bytes: view() is empty and descriptor() is -1.
    FileBytes() = default;

    /// Reads a whole file: a regular one or a block device, nothing that could keep the program
    /// waiting, as a pipe could.
    /// @param path the file's path in the file system's own encoding (QFile::decodeName).
    /// @param[out] failure why nothing was read: an errno (EISDIR of a folder), or
    ///   OutputFile::isNoRegularFile of what could keep the program waiting; errorText() says it.
    ///   Untouched on success.
    /// @param stop gives the reading up, between portions of 16 MB.
    /// @returns nothing when the file cannot be read whole.
    static std::optional<FileBytes> read(
        const QString& path, int* failure = nullptr, const std::stop_token& stop = {});

    /// A sealed copy of bytes in memory. @returns nothing when there is no memory for it.
    static std::optional<FileBytes> copy(std::string_view bytes);

    /// Takes over a memfd that another process has filled: cuts it to its first size bytes, seals
    /// it against every change and maps it. Closes the descriptor on failure.
    /// @returns nothing when it has fewer bytes, or cannot be cut, sealed or mapped: while anybody
    ///   has it mapped for writing, it cannot be sealed.
    static std::optional<FileBytes> adopt(int descriptor, std::size_t size);

    /// The first bytes of these, in the same memory: nothing is copied, and the file that was read
    /// counts as opened as long as they live.
    /// @param size all of them where there are fewer.
    FileBytes prefix(std::size_t size) const;

    /// The bytes; valid while a copy of this object or owner() lives.
    std::string_view view() const;
    std::size_t size() const { return theSize; }

    /// Keeps the memory alive for users that know nothing of this class.
    std::shared_ptr<const void> owner() const;

    /// Descriptor of the shared memory for a child process, which is to look at the first size()
    /// bytes of it alone; stays owned by this object.
    int descriptor() const;

private:
    class Mapping;
    static std::optional<FileBytes> adopt(
        int descriptor, std::size_t size, std::shared_ptr<const void> entry);

    std::shared_ptr<const Mapping> theMapping;
    std::size_t theSize = 0; ///< of theMapping's bytes
};

} // namespace tarnwick
