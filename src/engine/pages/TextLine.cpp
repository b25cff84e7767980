#include "TextLine.h"

#include "LogicalOrder.h"

#include <algorithm>
#include <cmath>

namespace tarnwick {

namespace {

bool isHighSurrogate(int number)
{
    return number >= 0xd800 && number < 0xdc00;
}

bool isLowSurrogate(int number)
{
    return number >= 0xdc00 && number < 0xe000;
}

/// NUL and lone halves of surrogate pairs come from broken ToUnicode maps; they are no characters.
char32_t soundCharacter(int number)
{
    const bool isSurrogate = isHighSurrogate(number) || isLowSurrogate(number);
    return number > 0 && number <= 0x10ffff && !isSurrogate ? static_cast<char32_t>(number)
                                                            : 0xfffd;
}

TextStyle styleOf(const fz_stext_char& one)
{
    const float size = std::isfinite(one.size) && one.size > 0 ? one.size : 1;
    return {one.font, size, static_cast<std::uint32_t>(one.color) & 0xffffffu};
}

/// The axis of a line from what a reader sees on the left to what stands on the right. In text that
/// is drawn as in a mirror, it runs against the line's direction.
class SightAxis
{
public:
    SightAxis(const fz_point& direction, const fz_quad& letter)
    {
        const fz_point down = {letter.ll.x - letter.ul.x, letter.ll.y - letter.ul.y};
        isMirrored = direction.x * down.y - direction.y * down.x < 0;
        const float sign = isMirrored ? -1 : 1;
        theAxis = {sign * direction.x, sign * direction.y};
    }

    DrawnCharacter drawn(const TextCharacter& one) const
    {
        const double start = place(one.quad.ll);
        const double end = place(one.quad.lr);
        return {one.character, std::min(start, end), std::max(start, end)};
    }

    /// What lies to the right of a quad.
    fz_quad gapBehind(const fz_quad& quad, double width) const
    {
        const fz_point& upper = isMirrored ? quad.ul : quad.ur;
        const fz_point& lower = isMirrored ? quad.ll : quad.lr;
        const fz_point farUpper = moved(upper, width);
        const fz_point farLower = moved(lower, width);
        return isMirrored ? fz_quad{farUpper, upper, farLower, lower}
                          : fz_quad{upper, farUpper, lower, farLower};
    }

private:
    /// Hostile files place glyphs at infinity.
    double place(const fz_point& point) const
    {
        const double along
            = double{theAxis.x} * double{point.x} + double{theAxis.y} * double{point.y};
        return std::isfinite(along) ? std::clamp(along, -1e9, 1e9) : 0;
    }

    fz_point moved(const fz_point& point, double distance) const
    {
        const auto by = static_cast<float>(distance);
        return {point.x + theAxis.x * by, point.y + theAxis.y * by};
    }

    fz_point theAxis = {1, 0};
    bool isMirrored = false;
};

bool isSamePlace(const fz_point& one, const fz_point& other)
{
    constexpr float precision = 2e-6F;
    return std::abs(one.x - other.x) <= precision * (1 + std::abs(one.x))
        && std::abs(one.y - other.y) <= precision * (1 + std::abs(one.y));
}

/// MuPDF lets a space bridge the way to the next glyph where it is wide. In a line that is drawn
/// from both sides that means nothing: what belongs there may be drawn later.
TextLine withoutBridges(const TextLine& line)
{
    TextLine result;
    result.reserve(line.size());
    for (std::size_t index = 0; index < line.size(); ++index) {
        const TextCharacter& one = line[index];
        const bool isBridge = one.character == U' ' && index > 0 && index + 1 < line.size()
            && isSamePlace(one.quad.ll, line[index - 1].quad.lr)
            && isSamePlace(one.quad.lr, line[index + 1].quad.ll)
            && std::hypot(one.quad.lr.x - one.quad.ll.x, one.quad.lr.y - one.quad.ll.y)
                > smallestSpace * one.style.size;
        if (!isBridge)
            result.push_back(one);
    }
    return result;
}

} // namespace

/// MuPDF joins a pair that is all that a glyph stands for. Of a glyph that stands for several
/// characters it hands over UTF-16 units (ISO 32000-2, 9.10.3): the first as wide as the glyph, the
/// others without width where the glyph ends.
void appendDrawn(const fz_stext_line& drawn, TextLine& line)
{
    for (const fz_stext_char* one = drawn.first_char; one; one = one->next) {
        const fz_stext_char* const next = one->next;
        if (!isHighSurrogate(one->c) || !next || !isLowSurrogate(next->c)) {
            line.push_back({soundCharacter(one->c), one->quad, styleOf(*one)});
            continue;
        }
        const int character = 0x10000 + ((one->c - 0xd800) << 10) + (next->c - 0xdc00);
        const fz_quad both = {one->quad.ul, next->quad.ur, one->quad.ll, next->quad.lr};
        line.push_back({static_cast<char32_t>(character), both, styleOf(*one)});
        one = next;
    }
}

TextLine inLogicalOrder(const TextLine& drawnLine, const fz_point& direction, bool readsFromRight)
{
    const TextLine line = withoutBridges(drawnLine);
    const auto letter = std::find_if(line.begin(), line.end(),
        [](const TextCharacter& one) { return isRightToLeftLetter(one.character); });
    if (letter == line.end())
        return drawnLine;
    const SightAxis axis(direction, letter->quad);
    std::vector<DrawnCharacter> drawn;
    drawn.reserve(line.size());
    for (const TextCharacter& one : line)
        drawn.push_back(axis.drawn(one));
    const std::vector<LogicalPlace> order
        = logicalOrder(drawn, double{letter->style.size}, readsFromRight);
    if (order.empty())
        return drawnLine;
    TextLine result;
    result.reserve(order.size());
    for (const LogicalPlace& place : order) {
        TextCharacter one = line[place.index];
        one.character = place.character;
        if (place.kind == LogicalPlace::Kind::isSpace)
            one.quad = axis.gapBehind(one.quad, place.width);
        if (place.kind == LogicalPlace::Kind::isLineEnd)
            one = {U'\n', {}, result.back().style};
        result.push_back(one);
    }
    return result;
}

} // namespace tarnwick
