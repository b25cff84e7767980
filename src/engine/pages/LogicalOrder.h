#pragma once

#include "LineUnits.h"

#include <cstddef>
#include <span>
#include <vector>

namespace tarnwick {

/// The narrowest gap that is a space, in sizes of the letters. MuPDF has the same for letters that
/// run from the left; between others it finds no spaces.
constexpr double smallestSpace = 0.15;

/// A place of a line in logical order.
struct LogicalPlace
{
    enum class Kind
    {
        isCharacter,
        isSpace, ///< one that nobody drew: the gap to the right of a drawn character
        isLineEnd, ///< between texts drawn over each other; index and character mean nothing
    };

    Kind kind = Kind::isCharacter;
    std::size_t index = 0; ///< of the drawn character
    char32_t character = 0; ///< the drawn one or its mirror image; a space
    double width = 0; ///< of the gap
};

/// Puts a line into the order in which it is read, spoken and searched.
///
/// A PDF file draws glyphs where they belong and in any order; most files draw Hebrew and Arabic
/// from left to right, in the order of sight. So what stands where is all that counts here:
/// whatever the order of drawing, the line is taken in the order of sight, and that is turned into
/// the logical one by the inverted bidirectional algorithm. Each character occurs once.
/// - The characters of one glyph, and a letter and its marks, stay together in logical order.
/// - Gaps of smallestSpace and more become spaces.
/// - Brackets that the file names the wrong way round for their direction, so that they close
/// before
///   they open, are mirrored.
///
/// Only lines with right-to-left letters need this. Time grows with n log n.
/// @param size of the letters, in the unit of the places; positive.
/// @param readsFromRight whether the paragraph does: an Arabic one has a Latin word to the left of
///   the Arabic word that it follows.
/// @returns nothing where one glyph stands for letters of both directions: then places say nothing,
///   and the order of drawing is the best there is.
std::vector<LogicalPlace> logicalOrder(
    std::span<const DrawnCharacter> line, double size, bool readsFromRight);

} // namespace tarnwick
