#pragma once

#include <cstddef>
#include <optional>
#include <stop_token>
#include <string_view>

namespace tarnwick {

/// Which bytes of a file lie before its header and behind its last end-of-file marker, where a PDF
/// file has none (ISO 32000-2, 7.5.2 and 7.5.5).
struct StrayBytes
{
    /// Offset of the first "%PDF-"; nothing where the file has none, and no byte counts as before
    /// it then.
    std::optional<std::size_t> header;
    /// Where the line of the last "%%EOF" ends, its blanks and one line end included; nothing where
    /// the file has none, and no byte counts as behind it then.
    std::optional<std::size_t> end;

    bool isBefore(std::size_t offset) const { return header && offset < *header; }
    bool isBehind(std::size_t offset) const { return end && offset >= *end; }
    bool operator==(const StrayBytes&) const = default;
};

/// Looks for both. Without a header or a marker that reads the whole file; asked to stop, it comes
/// back with what it has.
StrayBytes findStrayBytes(std::string_view bytes, const std::stop_token& stop = {});

} // namespace tarnwick
