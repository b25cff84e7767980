#pragma once

#include <QtGlobal>

#include <algorithm>
#include <compare>

namespace tarnwick {

/// A place between two characters of a text: a line and the number of UTF-16 units before it there.
struct TextPosition
{
    qsizetype line = 0;
    qsizetype unit = 0;

    auto operator<=>(const TextPosition&) const = default;
};

/// The characters between two places; begin <= end.
struct TextRange
{
    TextPosition begin;
    TextPosition end;

    static TextRange between(TextPosition one, TextPosition other)
    {
        return {std::min(one, other), std::max(one, other)};
    }

    bool isEmpty() const { return begin == end; }
    bool operator==(const TextRange&) const = default;
};

} // namespace tarnwick
