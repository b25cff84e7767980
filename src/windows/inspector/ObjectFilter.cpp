#include "ObjectFilter.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

namespace tarnwick {

namespace {

using Range = ObjectFilter::Range;

constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t highest = std::numeric_limits<std::int64_t>::max();
constexpr std::string_view blanks = " \t\n\v\f\r";

struct Field
{
    std::string_view name;
    ObjectColumn column;
};
constexpr std::array fields{
    Field{"v", ObjectColumn::isVersion},
    Field{"version", ObjectColumn::isVersion},
    Field{"gen", ObjectColumn::isGeneration},
    Field{"offset", ObjectColumn::isOffset},
    Field{"size", ObjectColumn::isSize},
    Field{"in", ObjectColumn::isContainer},
    Field{"uses", ObjectColumn::isUses},
};

struct State
{
    std::string_view name;
    ObjectStanding standing;
};
constexpr std::array states{
    State{"current", ObjectStanding::isCurrent},
    State{"unreachable", ObjectStanding::isUnreachable},
    State{"unused", ObjectStanding::isUnreachable},
    State{"unreadable", ObjectStanding::isUnreadable},
    State{"replaced", ObjectStanding::isReplaced},
    State{"freed", ObjectStanding::isFreed},
    State{"duplicate", ObjectStanding::isDuplicate},
};

template<class List> auto named(const List& list, std::string_view name)
{
    return std::find_if(
        list.begin(), list.end(), [name](const auto& entry) { return entry.name == name; });
}

std::optional<std::int64_t> number(std::string_view text)
{
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || text.starts_with('-'))
        return std::nullopt;
    return value;
}

bool beginsWithDigit(std::string_view word)
{
    return !word.empty() && word[0] >= '0' && word[0] <= '9';
}

/// "17" or "17-20".
bool takeNumbers(std::string_view word, ObjectFilter& filter)
{
    const std::size_t dash = word.find('-');
    const auto least = number(word.substr(0, dash));
    const auto most = dash == word.npos ? least : number(word.substr(dash + 1));
    if (!least || !most)
        return false;
    filter.numbers.push_back({ObjectColumn::isNumber, *least, *most});
    return true;
}

/// The values that an operator leaves; nothing for one that there is not.
std::optional<Range> rangeOf(ObjectColumn column, std::string_view operation, std::int64_t value)
{
    if (operation == ":" || operation == "=")
        return Range{column, value, value};
    if (operation == "<")
        return Range{column, lowest, value - 1};
    if (operation == "<=")
        return Range{column, lowest, value};
    if (operation == ">")
        return value == highest ? Range{column, highest, lowest}
                                : Range{column, value + 1, highest};
    if (operation == ">=")
        return Range{column, value, highest};
    return std::nullopt;
}

/// Numbers of object streams as the column has them: with a place in each.
Range containersIn(const Range& range)
{
    constexpr std::int64_t largest = std::numeric_limits<std::int32_t>::max();
    const std::int64_t least = std::clamp<std::int64_t>(range.least, 1, largest);
    const std::int64_t most = std::clamp<std::int64_t>(range.most, 0, largest);
    return {range.column, containerValue(least, 0), containerValue(most, largest)};
}

/// "size>1000" and its like. @param operation begins and ends in the word.
bool takeField(
    std::string_view name, std::string_view operation, std::string_view value, ObjectFilter& filter)
{
    const bool isEqual = operation == ":" || operation == "=";
    if (name == "type" && isEqual && !value.empty()) {
        filter.kinds.emplace_back(value);
        return true;
    }
    if (const auto state = named(states, value); name == "state" && isEqual) {
        if (state != states.end())
            filter.states.push_back(state->standing);
        return state != states.end();
    }
    const auto field = named(fields, name);
    const std::optional<std::int64_t> limit = number(value);
    if (field == fields.end() || !limit)
        return false;
    std::optional<Range> range = rangeOf(field->column, operation, *limit);
    if (range && field->column == ObjectColumn::isContainer)
        range = containersIn(*range);
    if (range)
        filter.ranges.push_back(*range);
    return range.has_value();
}

bool takeWord(std::string_view word, ObjectFilter& filter)
{
    constexpr std::string_view operators = ":=<>";
    const std::size_t begin = word.find_first_of(operators);
    if (begin != word.npos) {
        const std::size_t end = std::min(word.find_first_not_of(operators, begin), word.size());
        return takeField(
            word.substr(0, begin), word.substr(begin, end - begin), word.substr(end), filter);
    }
    if (beginsWithDigit(word))
        return takeNumbers(word, filter);
    if (word == "unreachable" || word == "unused")
        filter.states.push_back(ObjectStanding::isUnreachable);
    else
        filter.words.emplace_back(word);
    return true;
}

} // namespace

bool ObjectFilter::asksFor(ObjectColumn column) const
{
    if (column == ObjectColumn::isState && !states.empty())
        return true;
    return std::any_of(ranges.begin(), ranges.end(),
        [column](const Range& range) { return range.column == column; });
}

std::string inLowerCase(std::string_view text)
{
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
        [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return lower;
}

ObjectFilterReading readObjectFilter(std::string_view text)
{
    ObjectFilterReading reading;
    for (;;) {
        text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
        if (text.empty())
            return reading;
        const std::string_view word = text.substr(0, text.find_first_of(blanks));
        text.remove_prefix(word.size());
        if (!takeWord(inLowerCase(word), reading.filter))
            reading.mistakes.emplace_back(word);
    }
}

} // namespace tarnwick
