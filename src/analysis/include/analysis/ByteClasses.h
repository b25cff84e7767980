#pragma once

#include <cstddef>
#include <string_view>

namespace tarnwick {

/// Which bytes end lines and which are white space, the characters being numbered as the bytes.

/// Line feed, vertical tab, form feed, carriage return and NEL each end a line on their own, so
/// that CR LF leaves an empty line between the two.
constexpr bool isLineBreak(char character)
{
    const auto byte = static_cast<unsigned char>(character);
    return (byte >= 0x0A && byte <= 0x0D) || byte == 0x85;
}

/// White space that can stand inside a line: space, tab and no-break space.
constexpr bool isLineSpace(char character)
{
    const auto byte = static_cast<unsigned char>(character);
    return byte == 0x20 || byte == 0x09 || byte == 0xA0;
}

/// A line without the white space at its ends.
constexpr std::string_view trimmed(std::string_view line)
{
    std::size_t begin = 0;
    std::size_t end = line.size();
    while (begin < end && isLineSpace(line[begin]))
        ++begin;
    while (end > begin && isLineSpace(line[end - 1]))
        --end;
    return line.substr(begin, end - begin);
}

} // namespace tarnwick
