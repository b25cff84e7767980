#include "ReadingDirection.h"

#include "LogicalOrder.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarnwick {

namespace {

/// Whether the letter that stands farthest along a line is one of a left-to-right script.
bool endsLeftToRight(const TextLine& line, const fz_point& direction)
{
    float farthest = -std::numeric_limits<float>::infinity();
    bool result = false;
    for (const TextCharacter& one : line) {
        const bool isLeftToRight = isLeftToRightLetter(one.character);
        if (!isLeftToRight && !isRightToLeftLetter(one.character))
            continue;
        const float place = direction.x * one.quad.ll.x + direction.y * one.quad.ll.y;
        if (place >= farthest) {
            farthest = place;
            result = isLeftToRight;
        }
    }
    return result;
}

float distance(const fz_point& one, const fz_point& other)
{
    return std::hypot(other.x - one.x, other.y - one.y);
}

bool isSamePlace(const fz_point& one, const fz_point& other)
{
    return one.x == other.x && one.y == other.y;
}

/// Whether no space parts two characters that were drawn one after the other, from either side.
bool areNeighbours(const TextCharacter& one, const TextCharacter& next)
{
    const float gap
        = std::min(distance(one.quad.lr, next.quad.ll), distance(one.quad.ll, next.quad.lr));
    return gap < static_cast<float>(smallestSpace) * next.style.size;
}

} // namespace

void WordCount::add(const TextLine& line)
{
    const TextCharacter* before = nullptr;
    bool isInWord = false;
    for (const TextCharacter& one : line) {
        if (isSamePlace(one.quad.ll, one.quad.lr))
            continue; // a mark, or what else a glyph stands for
        isInWord = isInWord && one.character != U' ' && areNeighbours(*before, one);
        before = &one;
        const bool isRightToLeft = isRightToLeftLetter(one.character);
        if (isInWord || !(isRightToLeft || isLeftToRightLetter(one.character)))
            continue;
        isInWord = true;
        ++(isRightToLeft ? rightToLeft : leftToRight);
    }
}

void WordCount::add(const WordCount& other)
{
    rightToLeft += other.rightToLeft;
    leftToRight += other.leftToRight;
}

bool readsFromRight(const WordCount& page, const WordCount& block, const TextLine& firstLine,
    const fz_point& direction)
{
    if (block.rightToLeft > block.leftToRight)
        return true;
    const bool isForeign = block.leftToRight >= 2 * block.rightToLeft;
    return page.rightToLeft > page.leftToRight
        && !(isForeign && endsLeftToRight(firstLine, direction));
}

} // namespace tarnwick
