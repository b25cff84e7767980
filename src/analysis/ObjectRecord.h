#pragma once

#include "analysis/pdfObject.h"

#include <cstddef>
#include <cstdint>

/// What the catalog stores of an object: 32 bytes, which matters in a file of ten million objects.
/// What few objects have lies in an ObjectDetail beside it.
struct ObjectRecord
{
    static constexpr std::uint64_t farText = (std::uint64_t{1} << 24) - 1;
    /// Bytes of the longest page that is read again. Records can share their lines, so that reading
    /// longer ones again for each of them would take the square of a file's size.
    static constexpr std::size_t longestReadAgain = 4096;
    static constexpr std::uint32_t noDetail = 0xFFFFFFFFu;
    /// Longest text of a plain object that is shown whole, and one more: enough to tell whether it
    /// is longer.
    static constexpr std::size_t excerptLimit = 121;

    std::int64_t objNo = 0;
    std::uint64_t headerOffset : 40 = 0; ///< start of the first line's line
    std::uint64_t inXml : 1 = 0; ///< whether that line stands in an XML object
    std::uint64_t type : 3 = 0; ///< ObjectType
    std::uint64_t hasText : 1 = 0; ///< there is a line behind the first
    std::uint64_t excerptLength : 7 = 0; ///< length of that line, at most excerptLimit
    std::uint64_t endOffset : 40 = 0; ///< start of the line that ended the object
    std::uint64_t textDistance : 24 = 0; ///< from headerOffset to the second line, or farText
    std::uint32_t objVer = 1;
    std::uint32_t detail = noDetail; ///< index of its ObjectDetail

    ObjectType objType() const { return static_cast<ObjectType>(type); }

    /// Whether the object's entries are read from the file when they are asked for: files hold
    /// pages by the million, and hardly anybody looks at all of them.
    bool isReadAgain() const { return detail == noDetail && objType() == ObjectType::isPage; }
};
static_assert(sizeof(ObjectRecord) == 32);

struct ObjectDetail
{
    std::int64_t objGen = 0;
    std::size_t textOffset = 0; ///< of the second line
    std::size_t textLength = 0;
    ObjectEntries entries;
};
