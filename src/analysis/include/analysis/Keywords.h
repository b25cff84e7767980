#pragma once

#include <cstddef>
#include <string_view>

namespace tarnwick {

/// The keywords that decide what the scan does with a line.
namespace Keyword {
enum Flag : unsigned
{
    stream = 1u << 0,
    endstream = 1u << 1,
    obj = 1u << 2,
    endobj = 1u << 3,
    endOfFile = 1u << 4, ///< %%EOF
    xref = 1u << 5,
    startxref = 1u << 6,
    trailer = 1u << 7,
    xml = 1u << 8, ///< /XML
    type = 1u << 9, ///< /Type
};
}

/// The keywords that stand around a suspect byte of BlockMasks, as Keyword flags: a keyword that
/// holds another ("endobj" and "obj") sets both. 0 when there is none.
/// @param suspect offset of the second byte of the pair.
unsigned keywordsAt(std::string_view text, std::size_t suspect);

} // namespace tarnwick
