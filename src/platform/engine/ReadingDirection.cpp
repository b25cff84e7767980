#include "platform/engine/ReadingDirection.h"

#include "platform/engine/LineUnits.h"

#include <limits>

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

} // namespace

void WordCount::add(const TextLine& line)
{
    bool isInWord = false;
    for (const TextCharacter& one : line) {
        if (one.character == U' ') {
            isInWord = false;
        } else if (!isInWord && isRightToLeftLetter(one.character)) {
            ++rightToLeft;
            isInWord = true;
        } else if (!isInWord && isLeftToRightLetter(one.character)) {
            ++leftToRight;
            isInWord = true;
        }
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
