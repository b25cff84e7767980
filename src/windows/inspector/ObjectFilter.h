#pragma once

#include "ObjectStates.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

/// What the table of objects tells of each, in the order of its columns.
enum class ObjectColumn : unsigned char
{
    isNumber,
    isGeneration,
    isVersion,
    isKind,
    isOffset, ///< of its first line in the file
    isSize, ///< bytes from there to the line that ends it
    isContainer, ///< object stream that holds it
    isUses, ///< how many references name it
    isState,
};
inline constexpr int objectColumnCount = 9;

/// What a filter takes isContainer for: the object stream's number, and the object's place in it.
constexpr std::int64_t containerValue(std::int64_t container, std::int64_t index)
{
    return container << 32 | index;
}

/// Which objects somebody wants to see. All that it has must hold of an object; of several numbers,
/// whole kinds or states one.
struct ObjectFilter
{
    /// A column whose value is to lie between two numbers, both included.
    struct Range
    {
        ObjectColumn column = ObjectColumn::isNumber;
        std::int64_t least = 0;
        std::int64_t most = 0;

        bool operator==(const Range&) const = default;
    };

    std::vector<Range> numbers; ///< of objects
    std::vector<Range> ranges;
    std::vector<std::string> kinds; ///< in lower case, whole
    std::vector<std::string> words; ///< in lower case, parts of the kind
    std::vector<ObjectStanding> states;

    bool isEmpty() const { return *this == ObjectFilter(); }
    bool asksForKinds() const { return !kinds.empty() || !words.empty(); }
    bool asksFor(ObjectColumn column) const;
    bool operator==(const ObjectFilter&) const = default;
};

/// A filter as typed, and the parts of it that were not understood.
struct ObjectFilterReading
{
    ObjectFilter filter;
    std::vector<std::string> mistakes;
};

/// Reads a filter. Its words stand between blanks, upper and lower case do not matter:
/// "17" and "17-20" (object numbers), "font" (part of the kind), "type:font" (the whole kind),
/// "v:2", "gen:0", "offset>5000", "size>1000", "uses:0", "in:45" (object stream) with one of
/// : = < > <= >=, and "state:current", "state:unreachable", "state:replaced", "state:freed",
/// "state:duplicate" or "state:unreadable". "unreachable" and "unused" alone are a state too.
ObjectFilterReading readObjectFilter(std::string_view text);

/// ASCII letters in lower case, the rest as it is.
std::string inLowerCase(std::string_view text);

} // namespace tarnwick
