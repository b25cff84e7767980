#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace tarnwick {

/// What a row of a cross-reference says of an object's number (ISO 32000-2, 7.5.4 and 7.5.8).
enum class RowUse : std::uint8_t
{
    isFree,
    isPlain, ///< the object stands in the file by itself
    isPacked, ///< it stands in an object stream
};

/// One row.
struct CrossReferenceRow
{
    std::uint64_t place = 0; ///< isPlain: offset of the object; isPacked: number of its stream
    std::uint32_t number = 0; ///< of the object
    std::uint32_t detail = 0; ///< isPacked: place in the stream, from 0; else the generation
    RowUse use = RowUse::isFree;

    bool operator==(const CrossReferenceRow&) const = default;
};

/// A cross-reference table with its trailer, or a cross-reference stream, as it stands in the file.
struct CrossReferenceSection
{
    enum class Form : std::uint8_t
    {
        isNone, ///< nothing that can be read as one stands there
        isTable,
        isStream,
    };

    std::uint64_t offset = 0; ///< where it was looked for
    Form form = Form::isNone;
    std::optional<std::uint64_t> prev; ///< where Prev leads
    std::optional<std::uint64_t> stream; ///< where a table's XRefStm leads (7.5.8.4)
    std::optional<std::uint32_t> root; ///< number of the catalog
    std::optional<std::uint32_t> info; ///< number of the Info dictionary
    bool isEncrypted = false;
    std::vector<CrossReferenceRow> rows; ///< in the order of the file
};

} // namespace tarnwick
