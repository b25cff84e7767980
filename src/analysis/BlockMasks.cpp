#include "analysis/BlockMasks.h"

#include "analysis/ByteClasses.h"

#include <algorithm>
#include <bit>

namespace tarnwick {

namespace {

bool isSuspect(char before, char character)
{
    switch (character) {
    case 'j':
        return before == 'b';
    case 'm':
    case 'i':
        return before == 'a';
    case 'F':
        return before == 'O';
    case 'r':
        return before == 'x';
    case 'M':
        return before == 'X';
    case 'y':
        return before == 'T';
    default:
        return false;
    }
}

} // namespace

BlockMasks portableBlockMasks(std::string_view text, std::size_t offset)
{
    const std::size_t count = std::min(BlockMasks::blockSize, text.size() - offset);
    BlockMasks masks;
    char before = offset > 0 ? text[offset - 1] : '\0';
    for (std::size_t i = 0; i < count; ++i) {
        const char character = text[offset + i];
        masks.breaks |= std::uint64_t{isLineBreak(character)} << i;
        masks.suspects |= std::uint64_t{isSuspect(before, character)} << i;
        before = character;
    }
    return masks;
}

std::size_t nextLineBreak(std::string_view text, std::size_t offset)
{
    while (offset < text.size()) {
        const std::uint64_t breaks = blockMasks(text, offset).breaks;
        if (breaks != 0)
            return offset + static_cast<std::size_t>(std::countr_zero(breaks));
        offset += std::min(BlockMasks::blockSize, text.size() - offset);
    }
    return text.size();
}

} // namespace tarnwick
