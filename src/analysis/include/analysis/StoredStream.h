#pragma once

#include "analysis/ObjectSource.h"
#include "analysis/pdfObjectCatalog.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace tarnwick {

/// Where a stream's data lies.
struct StoredStream
{
    /// What says where the data ends.
    enum class End
    {
        isLength, ///< its Length, behind which "endstream" follows
        isKeyword, ///< "endstream": there is no Length, or one that leads somewhere else
        isMissing, ///< the object's end: there is no "endstream" either
    };

    ByteRange range;
    End end = End::isLength;
    std::optional<std::int64_t> length; ///< what Length says, where it can be read
};

/// Finds the data of a stream: as long as its Length says if "endstream" follows there, else up to
/// the first "endstream" without the line break before it (ISO 32000-2, 7.3.8).
/// @param length the value of Length; nothing where it is missing or cannot be read.
/// Precondition: source.streamBegin() has a value, object is the range that source was read from.
StoredStream findStream(std::string_view bytes, ByteRange object, const ObjectSource& source,
    std::optional<std::int64_t> length);

/// The data of an object's stream. A Length that is a reference is looked up in the saved version
/// of the object or the latest one before it. @returns nothing for an object without a stream.
std::optional<StoredStream> storedStream(
    const pdfObjectCatalog& catalog, const pdfObject& object, const ObjectSource& source);

} // namespace tarnwick
