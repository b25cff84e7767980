#include "LogicalOrder.h"

#include "SightOrder.h"

#include <unicode/ubidi.h>
#include <unicode/uchar.h>

#include <algorithm>
#include <memory>
#include <string>

namespace tarnwick {

namespace {

UCharDirection directionOf(char32_t character)
{
    return u_charDirection(static_cast<UChar32>(character));
}

bool isBracket(char32_t character)
{
    const auto bracket = static_cast<UChar32>(character);
    return u_getBidiPairedBracket(bracket) != bracket;
}

bool isOpeningBracket(char32_t character)
{
    return isBracket(character)
        && u_charType(static_cast<UChar32>(character)) == U_START_PUNCTUATION;
}

bool isBlank(char32_t character)
{
    return u_isWhitespace(static_cast<UChar32>(character));
}

/// A unit of UTF-16 that stands for a character in the bidirectional algorithm: one for each keeps
/// counting simple, and controls that a file contains have no power over the line.
char16_t proxy(char32_t character)
{
    switch (directionOf(character)) {
    case U_LEFT_TO_RIGHT:
        return u'a';
    case U_RIGHT_TO_LEFT:
        return u'\u05d0';
    case U_RIGHT_TO_LEFT_ARABIC:
        return u'\u0627';
    case U_EUROPEAN_NUMBER:
        return u'1';
    case U_EUROPEAN_NUMBER_SEPARATOR:
        return u'-';
    case U_EUROPEAN_NUMBER_TERMINATOR:
        return u'%';
    case U_ARABIC_NUMBER:
        return u'\u0661';
    case U_COMMON_NUMBER_SEPARATOR:
        return u'.';
    case U_WHITE_SPACE_NEUTRAL:
    case U_BLOCK_SEPARATOR:
    case U_SEGMENT_SEPARATOR:
        return u' ';
    default:
        return isBracket(character) ? static_cast<char16_t>(character) : u'*';
    }
}

/// Makes numbers part of the left-to-right text to whose right they stand, as in "PDF 2.0": in
/// sight they could as well come before it, but are rarely meant to. Brackets part them.
void joinNumbers(std::u16string& proxies)
{
    bool followsLetter = false;
    for (std::size_t index = 0; index < proxies.size(); ++index) {
        const char16_t one = proxies[index];
        const bool isTerminator = one == u'%'
            && ((index > 0 && proxies[index - 1] == u'a')
                || (index + 1 < proxies.size() && proxies[index + 1] == u'1'));
        if (followsLetter && (one == u'1' || isTerminator))
            proxies[index] = u'a';
        else if (one == u'a' || one == u'\u05d0' || one == u'\u0627' || one == u'\u0661'
            || isBracket(one))
            followsLetter = one == u'a';
    }
}

/// Positions of a text in the order of sight, in logical order.
struct Inversion
{
    std::vector<std::int32_t> order;
    std::vector<UBiDiLevel> levels; ///< by position in the order of sight; odd ones run leftwards
};

Inversion inverted(const std::u16string& text, bool readsFromRight)
{
    const auto length = static_cast<std::int32_t>(text.size());
    Inversion result;
    const std::unique_ptr<UBiDi, decltype(&ubidi_close)> bidi(ubidi_open(), &ubidi_close);
    UErrorCode status = U_ZERO_ERROR;
    ubidi_setReorderingMode(bidi.get(), UBIDI_REORDER_INVERSE_LIKE_DIRECT);
    ubidi_setPara(bidi.get(), text.data(), length, readsFromRight ? 1 : 0, nullptr, &status);
    result.order.resize(text.size());
    ubidi_getVisualMap(bidi.get(), result.order.data(), &status);
    const UBiDiLevel* const levels = ubidi_getLevels(bidi.get(), &status);
    if (U_SUCCESS(status)) {
        result.levels.assign(levels, levels + length);
        return result;
    }
    for (std::int32_t index = 0; index < length; ++index) // no memory: the order of sight
        result.order[static_cast<std::size_t>(index)] = index;
    result.levels.assign(text.size(), 0);
    return result;
}

/// A text in the order of sight, with the spaces that its gaps stand for.
class LineOfSight
{
public:
    LineOfSight(
        std::span<const DrawnCharacter> line, const std::vector<LineUnit>& units, double size)
        : theLine(line)
        , theSmallestSpace(smallestSpace * size)
    {
        for (const LineUnit& unit : units) {
            addGapBefore(unit);
            thePieces.push_back({unit, false});
            theProxies += proxy(line[unit.base].character);
        }
        joinNumbers(theProxies);
    }

    void appendLogical(bool readsFromRight, std::vector<LogicalPlace>& result) const
    {
        const Inversion inversion = inverted(theProxies, readsFromRight);
        const bool areReversed[]
            = {bracketsAreReversed(inversion, 0), bracketsAreReversed(inversion, 1)};
        for (const std::int32_t index : inversion.order) {
            const auto place = static_cast<std::size_t>(index);
            append(thePieces[place], areReversed[inversion.levels[place] % 2], result);
        }
    }

private:
    struct Piece
    {
        LineUnit unit; ///< of a gap: the one to its left, and the gap's place
        bool isGap = false;
    };

    void addGapBefore(const LineUnit& unit)
    {
        if (thePieces.empty())
            return;
        const LineUnit& before = thePieces.back().unit;
        if (unit.left - before.right < theSmallestSpace || isBlank(theLine[before.base].character)
            || isBlank(theLine[unit.base].character))
            return;
        thePieces.push_back(
            {{before.begin, before.end, before.base, before.right, unit.left}, true});
        theProxies += u' ';
    }

    /// Whether more brackets of one direction find their partners when mirrored. A font has one
    /// name for a glyph that opens in one direction and closes in the other.
    /// @param direction 0 for what runs to the right, 1 to the left.
    bool bracketsAreReversed(const Inversion& inversion, int direction) const
    {
        int lonely = 0;
        int lonelyIfMirrored = 0;
        int open = 0;
        int openIfMirrored = 0;
        const auto meet = [](bool opens, int& depth, int& unmatched) {
            if (opens)
                ++depth;
            else if (depth > 0)
                --depth;
            else
                ++unmatched;
        };
        for (const std::int32_t index : inversion.order) {
            const auto place = static_cast<std::size_t>(index);
            if (!isBracket(theProxies[place]) || inversion.levels[place] % 2 != direction)
                continue;
            meet(isOpeningBracket(theProxies[place]), open, lonely);
            meet(!isOpeningBracket(theProxies[place]), openIfMirrored, lonelyIfMirrored);
        }
        return lonelyIfMirrored + openIfMirrored < lonely + open;
    }

    void append(const Piece& piece, bool isMirrored, std::vector<LogicalPlace>& result) const
    {
        using Kind = LogicalPlace::Kind;
        const LineUnit& unit = piece.unit;
        if (piece.isGap) {
            result.push_back({Kind::isSpace, unit.base, U' ', unit.right - unit.left});
            return;
        }
        const auto appendCharacter = [&](std::size_t index) {
            const auto drawn = static_cast<UChar32>(theLine[index].character);
            const UChar32 character = isMirrored ? u_charMirror(drawn) : drawn;
            result.push_back({Kind::isCharacter, index, static_cast<char32_t>(character), 0});
        };
        for (std::size_t index = unit.base; index < unit.end; ++index)
            appendCharacter(index);
        for (std::size_t index = unit.base; index > unit.begin; --index)
            appendCharacter(index - 1);
    }

    std::span<const DrawnCharacter> theLine;
    double theSmallestSpace;
    std::vector<Piece> thePieces;
    std::u16string theProxies;
};

/// Some programs let one glyph stand for a whole stretch of text, and the others for nothing.
bool runsBothWays(std::span<const DrawnCharacter> line, const LineUnit& unit)
{
    bool runsLeft = false;
    bool runsRight = false;
    for (const DrawnCharacter& one : line.subspan(unit.begin, unit.end - unit.begin)) {
        runsLeft = runsLeft || isRightToLeftLetter(one.character);
        runsRight = runsRight || isLeftToRightLetter(one.character);
    }
    return runsLeft && runsRight;
}

} // namespace

std::vector<LogicalPlace> logicalOrder(
    std::span<const DrawnCharacter> line, double size, bool readsFromRight)
{
    std::vector<LogicalPlace> result;
    result.reserve(line.size());
    const std::vector<LineUnit> drawn = lineUnits(line);
    if (std::any_of(drawn.begin(), drawn.end(),
            [line](const LineUnit& unit) { return runsBothWays(line, unit); }))
        return result;
    for (const std::vector<LineUnit>& units : sightOrder(drawn, size)) {
        if (!result.empty())
            result.push_back({LogicalPlace::Kind::isLineEnd, 0, U'\n', 0});
        LineOfSight(line, units, size).appendLogical(readsFromRight, result);
    }
    return result;
}

} // namespace tarnwick
