#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace tarnwick {

/// A character of a line in the order in which it was drawn. Places are measured along the line,
/// in any unit, from what a reader sees on the left to what stands on the right.
struct DrawnCharacter
{
    char32_t character = 0;
    double left = 0;
    double right = 0; ///< at least left; equal for what has no width of its own
};

/// Characters of a line that no reordering parts: those of one glyph, and a letter with its marks.
struct LineUnit
{
    std::size_t begin = 0; ///< drawn characters [begin, end)
    std::size_t end = 0;
    /// The letter, in [begin, end). Its marks stand behind it, or before it in the other order.
    std::size_t base = 0;
    double left = 0; ///< place of the letter
    double right = 0;

    double middle() const { return (left + right) / 2; }
};

/// Whether a character is a letter of a script that runs from the right (Unicode Standard Annex 9:
/// classes R and AL).
bool isRightToLeftLetter(char32_t character);
/// Whether it is one of a script that runs from the left (class L).
bool isLeftToRightLetter(char32_t character);

/// The units of a line in the order in which they were drawn; together they cover the line.
///
/// A character without width where the glyph before it ends belongs to that glyph. A mark with a
/// place of its own belongs to the letter drawn before it; but what is drawn from left to right
/// behind other than left-to-right letters comes after its marks, as everything there comes in
/// reverse.
std::vector<LineUnit> lineUnits(std::span<const DrawnCharacter> line);

} // namespace tarnwick
