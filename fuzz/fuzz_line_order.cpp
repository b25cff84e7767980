// Lines with right-to-left letters, put into logical order. The input: a byte for the paragraph, a
// byte for the letters' size, and for each character a byte that chooses it, or the two behind it
// that spell it, two bytes for its place and one for its width.

#include "FuzzTarget.h"

#include "LogicalOrder.h"
#include "SightOrder.h"
#include "protocol/Payload.h"

#include <iterator>

using namespace tarnwick;

namespace {

char32_t characterFrom(PayloadReader& input)
{
    constexpr char32_t usual[] = {0x5d0, 0x5d1, 0x5b7, 0x627, 0x644, 0x64b, 0x661, U'a', U'Z', U'1',
        U'.', U'%', U'-', U'(', U')', U'[', U' ', 0xfffd, 0x202e, 0x10900};
    const auto choice = input.take<std::uint8_t>();
    return choice < std::size(usual) ? usual[choice] : input.take<std::uint16_t>();
}

std::vector<DrawnCharacter> lineFrom(PayloadReader& input)
{
    std::vector<DrawnCharacter> line;
    while (!input.isDone() && input.isGood()) {
        DrawnCharacter one;
        one.character = characterFrom(input);
        one.left = input.take<std::int16_t>() / 4.0;
        one.right = one.left + input.take<std::uint8_t>() / 4.0;
        line.push_back(one);
    }
    return line;
}

/// Ends the process where a number from 0 on is missing or comes twice.
void requireEachOnce(std::vector<int>& counts)
{
    for (const int count : counts)
        require(count == 1, "a character lost, or there twice");
}

void checkUnits(const std::vector<DrawnCharacter>& line, double size)
{
    std::size_t end = 0;
    const std::vector<LineUnit> units = lineUnits(line);
    for (const LineUnit& unit : units) {
        require(unit.begin == end && unit.end > end, "units that do not cover the line");
        require(unit.base >= unit.begin && unit.base < unit.end, "a unit's letter");
        end = unit.end;
    }
    require(end == line.size(), "units that end early");
    std::vector<int> counts(line.size());
    for (const std::vector<LineUnit>& sight : sightOrder(units, size))
        for (const LineUnit& unit : sight)
            for (std::size_t index = unit.begin; index < unit.end; ++index)
                ++counts.at(index);
    requireEachOnce(counts);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    PayloadReader input(textOf(data, size));
    const bool readsFromRight = input.take<std::uint8_t>() & 1;
    const double letters = 0.25 + input.take<std::uint8_t>();
    const std::vector<DrawnCharacter> line = lineFrom(input);
    checkUnits(line, letters);
    const std::vector<LogicalPlace> order = logicalOrder(line, letters, readsFromRight);
    if (order.empty())
        return 0;
    std::vector<int> counts(line.size());
    for (const LogicalPlace& place : order)
        if (place.kind == LogicalPlace::Kind::isCharacter)
            ++counts.at(place.index);
        else if (place.kind == LogicalPlace::Kind::isSpace)
            require(place.width >= smallestSpace * letters, "a space for no gap");
    requireEachOnce(counts);
    return 0;
}
