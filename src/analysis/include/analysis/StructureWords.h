#pragma once

#include "analysis/pdfObject.h"

#include <array>
#include <string_view>

namespace tarnwick {

/// The words that the analysis reads a file's structure from. Whoever writes a file that is to be
/// read so spells it by the same lists.

/// Words that decide what a line is, wherever they stand in it.
namespace LineWord {
inline constexpr char stream[] = "stream";
inline constexpr char endstream[] = "endstream";
inline constexpr char obj[] = "obj";
inline constexpr char endobj[] = "endobj";
inline constexpr char endOfFile[] = "%%EOF";
inline constexpr char xref[] = "xref";
inline constexpr char startxref[] = "startxref";
inline constexpr char trailer[] = "trailer";
inline constexpr char xml[] = "/XML"; ///< begins a stream whose lines are shown
inline constexpr char type[] = "/Type"; ///< the line may say what kind the object is of

/// A line without any of these is a plain one: every other word of structure holds one of them.
inline constexpr std::array<std::string_view, 5> shortest{stream, obj, xref, trailer, endOfFile};
}

/// Dictionary keys whose values the analysis reads; those that an object has depend on its kind.
namespace StructureKey {
inline constexpr char pages[] = "Pages";
inline constexpr char metadata[] = "Metadata";
inline constexpr char names[] = "Names";
inline constexpr char kids[] = "Kids";
inline constexpr char count[] = "Count";
inline constexpr char parent[] = "Parent";
inline constexpr char content[] = "Content"; ///< begins "Contents"
inline constexpr char info[] = "Info";
inline constexpr char root[] = "Root";
inline constexpr char size[] = "Size";
}

/// A name that says what kind an object is of, in a line that holds "/Type" anywhere.
struct ObjectTypeName
{
    std::string_view name; ///< with its slash
    ObjectType type = ObjectType::isPlain;
};

/// In the order of their test: every line that holds "/Pages" holds "/Page" too.
inline constexpr std::array objectTypeNames{
    ObjectTypeName{"/Catalog", ObjectType::isCatalog},
    ObjectTypeName{"/Pages", ObjectType::isPages},
    ObjectTypeName{"/Page", ObjectType::isPage},
    ObjectTypeName{"/Info", ObjectType::isInfo},
    ObjectTypeName{"/Names", ObjectType::isNames},
};

/// The kind that the names in a line stand for: that of the first in objectTypeNames which the line
/// holds. @returns isPlain when it holds none.
ObjectType objectTypeNamed(std::string_view line);

} // namespace tarnwick
