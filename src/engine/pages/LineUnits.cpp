#include "LineUnits.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <cmath>

namespace tarnwick {

namespace {

bool isMark(char32_t character)
{
    return (U_GET_GC_MASK(static_cast<UChar32>(character)) & (U_GC_MN_MASK | U_GC_ME_MASK)) != 0;
}

/// Goes over a line once.
class UnitFinder
{
public:
    explicit UnitFinder(std::span<const DrawnCharacter> line)
        : theLine(line)
    {
    }

    std::vector<LineUnit> units()
    {
        while (thePosition < theLine.size()) {
            if (!theUnits.empty() && (isOfGlyphBefore(thePosition) || isMarkOfUnitBefore()))
                theUnits.back().end = ++thePosition;
            else
                addUnit();
        }
        return std::move(theUnits);
    }

private:
    /// MuPDF puts what else a glyph stands for at the glyph's end, which is the left one in
    /// mirrored text. Places have the precision of a float.
    bool isOfGlyphBefore(std::size_t index) const
    {
        const DrawnCharacter& one = theLine[index];
        const double precision = 2e-6 * (1 + std::abs(one.left));
        return index > 0 && one.left == one.right
            && (std::abs(one.left - theLine[index - 1].left) <= precision
                || std::abs(one.left - theLine[index - 1].right) <= precision);
    }

    /// Where a mark has its own place is no help: it may be anywhere around the letter.
    bool isMarkOfUnitBefore()
    {
        if (!isMark(theLine[thePosition].character))
            return false;
        findNextLetter();
        if (theNextLetter == theLine.size())
            return true;
        const LineUnit& before = theUnits.back();
        const DrawnCharacter& next = theLine[theNextLetter];
        const bool runsRight = (next.left + next.right) / 2 > before.middle();
        return !runsRight || u_isWhitespace(static_cast<UChar32>(next.character))
            || isLeftToRightLetter(theLine[before.base].character);
    }

    /// Looks at each character once, however many marks there are.
    void findNextLetter()
    {
        theNextLetter = std::max(theNextLetter, thePosition);
        while (theNextLetter < theLine.size() && isMark(theLine[theNextLetter].character))
            ++theNextLetter;
    }

    /// A letter, with the marks that were drawn before it.
    void addUnit()
    {
        const std::size_t begin = thePosition;
        findNextLetter();
        const std::size_t letter = std::min(theNextLetter, theLine.size() - 1);
        thePosition = letter + 1;
        theUnits.push_back(
            {begin, thePosition, letter, theLine[letter].left, theLine[letter].right});
    }

    std::span<const DrawnCharacter> theLine;
    std::vector<LineUnit> theUnits;
    std::size_t thePosition = 0;
    std::size_t theNextLetter = 0;
};

} // namespace

bool isRightToLeftLetter(char32_t character)
{
    if (character < 0x590) // the first of them; most text needs no table
        return false;
    const UCharDirection direction = u_charDirection(static_cast<UChar32>(character));
    return direction == U_RIGHT_TO_LEFT || direction == U_RIGHT_TO_LEFT_ARABIC;
}

bool isLeftToRightLetter(char32_t character)
{
    return u_charDirection(static_cast<UChar32>(character)) == U_LEFT_TO_RIGHT;
}

std::vector<LineUnit> lineUnits(std::span<const DrawnCharacter> line)
{
    return UnitFinder(line).units();
}

} // namespace tarnwick
