#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tarnwick {

/// The source analysis once more, as slow and as plain as it can be: the second opinion that the
/// tests hold against the real one. Lines are strings, every record has a copy of its lines, and
/// each rule is written out where it applies. It shares no code with the analysis.
namespace plain {

struct ColouredText
{
    char role; ///< 'd' default, 'r' red, 'g' green, 'b' blue
    std::u16string text;

    bool operator==(const ColouredText&) const = default;
};

struct Analysis
{
    std::vector<ColouredText> listing; ///< every piece of the listing, in order
    std::vector<ColouredText> objectList; ///< one piece for each record, sorted
    std::string summary;
};

/// @param bytes a file's bytes, any whatever.
Analysis analyse(const std::string& bytes);

/// The lengths of the saved versions.
std::vector<std::size_t> cuts(const std::string& bytes);

} // namespace plain

} // namespace tarnwick
