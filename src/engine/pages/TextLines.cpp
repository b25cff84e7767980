#include "TextLines.h"

#include "LogicalOrder.h"
#include "ReadingDirection.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <numeric>
#include <span>
#include <utility>

namespace tarnwick {

namespace {

/// Parts of a line that are next to each other in MuPDF's list, put together.
struct JoinedLine
{
    TextLine characters;
    fz_point direction = {1, 0};
    bool isVertical = false;
    bool hasRightToLeft = false;
    float size = 1;
    fz_point origin = {0, 0}; ///< a place on the baseline
    float begin = 0; ///< along the direction, from the origin of the page
    float end = 0;
};

/// Hostile files place glyphs at infinity.
float along(const fz_point& direction, const fz_point& point)
{
    const float place = direction.x * point.x + direction.y * point.y;
    return std::isfinite(place) ? place : 0;
}

JoinedLine lineOf(const fz_stext_line& drawn)
{
    JoinedLine line;
    appendDrawn(drawn, line.characters);
    line.direction = drawn.dir;
    line.isVertical = drawn.wmode != 0;
    if (line.characters.empty())
        return line;
    line.hasRightToLeft = std::any_of(line.characters.begin(), line.characters.end(),
        [](const TextCharacter& one) { return isRightToLeftLetter(one.character); });
    line.size = line.characters.front().style.size;
    line.origin = drawn.first_char->origin;
    line.begin = line.end = along(line.direction, line.characters.front().quad.ll);
    for (const TextCharacter& one : line.characters) {
        for (const fz_point& corner : {one.quad.ll, one.quad.lr}) {
            line.begin = std::min(line.begin, along(line.direction, corner));
            line.end = std::max(line.end, along(line.direction, corner));
        }
    }
    return line;
}

/// Whether two lines have one baseline.
bool areLevel(const JoinedLine& one, const JoinedLine& next)
{
    if (one.isVertical || next.isVertical || along(one.direction, next.direction) < 0.999F)
        return false;
    const float across = one.direction.x * (next.origin.y - one.origin.y)
        - one.direction.y * (next.origin.x - one.origin.x);
    return std::abs(across) < 0.3F * std::max(one.size, next.size);
}

void append(JoinedLine&& part, JoinedLine& line)
{
    line.characters.insert(line.characters.end(), part.characters.begin(), part.characters.end());
    line.hasRightToLeft = line.hasRightToLeft || part.hasRightToLeft;
    line.begin = std::min(line.begin, part.begin);
    line.end = std::max(line.end, part.end);
}

/// Numbers for lines on one baseline, the same for those that stand no farther apart than the words
/// of a line, or over each other: some programs draw all blanks of a line first, and fill the
/// holes.
std::vector<std::size_t> groups(std::span<const JoinedLine> lines)
{
    std::vector<std::size_t> order(lines.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&lines](std::size_t one, std::size_t other) {
        return lines[one].begin < lines[other].begin;
    });
    std::vector<std::size_t> result(lines.size());
    std::size_t group = 0;
    float end = lines[order.front()].end;
    for (const std::size_t index : order) {
        if (lines[index].begin - end > 0.8F * lines[index].size)
            ++group;
        result[index] = group;
        end = std::max(end, lines[index].end);
    }
    return result;
}

/// Appends lines on one baseline, groups of them that need a common order as one.
void appendJoined(std::span<JoinedLine> level, std::vector<JoinedLine>& result)
{
    const auto hasRightToLeft = [](const JoinedLine& line) { return line.hasRightToLeft; };
    if (level.size() == 1 || std::none_of(level.begin(), level.end(), hasRightToLeft)) {
        std::move(level.begin(), level.end(), std::back_inserter(result));
        return;
    }
    const std::vector<std::size_t> groupOf = groups(level);
    std::vector<bool> needsOrder(level.size());
    for (std::size_t index = 0; index < level.size(); ++index)
        needsOrder[groupOf[index]] = needsOrder[groupOf[index]] || level[index].hasRightToLeft;
    constexpr std::size_t none = std::numeric_limits<std::size_t>::max();
    std::vector<std::size_t> placeOf(level.size(), none); // of a group in the result
    for (std::size_t index = 0; index < level.size(); ++index) {
        std::size_t& place = placeOf[groupOf[index]];
        if (needsOrder[groupOf[index]] && place != none) {
            append(std::move(level[index]), result[place]);
        } else {
            place = result.size();
            result.push_back(std::move(level[index]));
        }
    }
}

std::vector<JoinedLine> linesOf(const fz_stext_block& block)
{
    std::vector<JoinedLine> drawn;
    for (const fz_stext_line* line = block.u.t.first_line; line; line = line->next)
        drawn.push_back(lineOf(*line));
    std::vector<JoinedLine> lines;
    for (std::size_t begin = 0; begin < drawn.size();) {
        std::size_t end = begin + 1;
        while (end < drawn.size() && areLevel(drawn[end - 1], drawn[end]))
            ++end;
        appendJoined(std::span(drawn).subspan(begin, end - begin), lines);
        begin = end;
    }
    return lines;
}

/// Calls a function with each text block of a page.
template<typename Take> void visitBlocks(const fz_stext_page& page, Take&& take)
{
    for (const fz_stext_block* block = page.first_block; block; block = block->next) {
        if (block->type == FZ_STEXT_BLOCK_TEXT)
            take(*block);
    }
}

/// A first look that costs little: most pages have none.
bool mayHaveRightToLeft(const fz_stext_page& page)
{
    const auto mayBe = [](const fz_stext_char& one) {
        const bool isHalf = one.c >= 0xd800 && one.c < 0xdc00;
        return isHalf || (one.c > 0 && isRightToLeftLetter(static_cast<char32_t>(one.c)));
    };
    bool result = false;
    visitBlocks(page, [&](const fz_stext_block& block) {
        for (const fz_stext_line* line = block.u.t.first_line; line; line = line->next) {
            for (const fz_stext_char* one = line->first_char; one && !result; one = one->next)
                result = mayBe(*one);
        }
    });
    return result;
}

WordCount wordsOf(const std::vector<JoinedLine>& lines)
{
    WordCount count;
    for (const JoinedLine& line : lines)
        count.add(line.characters);
    return count;
}

void visitDrawn(const fz_stext_page& page, const TakeLine& take)
{
    TextLine line;
    visitBlocks(page, [&](const fz_stext_block& block) {
        for (const fz_stext_line* drawn = block.u.t.first_line; drawn; drawn = drawn->next) {
            line.clear();
            appendDrawn(*drawn, line);
            take(line, drawn == block.u.t.first_line);
        }
    });
}

void visitOrdered(const fz_stext_page& page, const TakeLine& take)
{
    WordCount pageWords;
    visitBlocks(page,
        [&pageWords](const fz_stext_block& block) { pageWords.add(wordsOf(linesOf(block))); });
    visitBlocks(page, [&](const fz_stext_block& block) {
        const std::vector<JoinedLine> lines = linesOf(block);
        if (lines.empty())
            return;
        const bool fromRight = readsFromRight(
            pageWords, wordsOf(lines), lines.front().characters, lines.front().direction);
        bool beginsBlock = true;
        for (const JoinedLine& line : lines) {
            take(line.hasRightToLeft && !line.isVertical
                    ? inLogicalOrder(line.characters, line.direction, fromRight)
                    : line.characters,
                std::exchange(beginsBlock, false));
        }
    });
}

} // namespace

void visitLines(const fz_stext_page& page, const TakeLine& take)
{
    if (mayHaveRightToLeft(page))
        visitOrdered(page, take);
    else
        visitDrawn(page, take);
}

} // namespace tarnwick
