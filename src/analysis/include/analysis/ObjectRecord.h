#pragma once

#include "analysis/pdfObject.h"

#include <cstddef>
#include <cstdint>

namespace tarnwick {

/// What the catalog stores of an object: 16 bytes, which matters in a file of ten million objects.
///
/// Most objects are a few lines, which are read again when somebody asks what they say: hardly
/// anybody looks at all of them. The others have an ObjectDetail.
struct ObjectRecord
{
    /// Bytes of the longest object that is read again. Records can share their lines, so that
    /// reading longer ones again for each of them would take the square of a file's size.
    static constexpr std::size_t longestReadAgain = 4096;

    /// Files up to 1 TiB.
    static constexpr unsigned offsetBits = 40;

    std::uint64_t offset : offsetBits
                           = 0; ///< start of the object's first line; with a detail, its end
    std::uint64_t size : 13 = 0; ///< from there to its end; 0 with a detail
    std::uint64_t type : 3 = 0; ///< ObjectType
    std::uint64_t inXml : 1 = 0; ///< whether the first line stands in an XML object
    std::uint64_t hasDetail : 1 = 0;
    /// Bits without a name keep what the memory held, which reads a page before it is written and
    /// so brings it in twice.
    std::uint64_t unused : 6 = 0;
    std::uint32_t number = 0; ///< object number, or the index of its ObjectDetail
    std::uint32_t objVer = 1;

    ObjectType objType() const { return static_cast<ObjectType>(type); }
    /// Start of the line that ended the object.
    std::size_t end() const { return std::size_t{offset} + size; }
};
static_assert(sizeof(ObjectRecord) == 16);

/// What an object's lines say. Records that share their lines share it while it stays the same.
struct ObjectDetail
{
    std::int64_t objNo = 0;
    std::int64_t objGen = 0;
    std::size_t start = 0; ///< offset of the first line's line
    std::size_t textOffset = 0; ///< of the second line, trimmed
    std::size_t textLength = 0; ///< 0 where there is none
    ObjectEntries entries;

    bool operator==(const ObjectDetail&) const = default;
};

} // namespace tarnwick
