#pragma once

#include "compare/WordDiff.h"

#include <string>
#include <vector>

namespace tarnwick {

/// Two texts in one: the later one, and before each of its changes what stood there earlier. What
/// was removed stands in "[-" and "-]", what was added in "{+" and "+}": so it can be told apart
/// without colours, and where it is copied to.
struct MergedText
{
    enum class Kind
    {
        isRemoved,
        isAdded,
    };
    /// Units that are in one of the texts alone, brackets included; the rest is in both.
    struct Stretch
    {
        std::size_t begin = 0;
        std::size_t end = 0;
        Kind kind = Kind::isAdded;

        bool operator==(const Stretch&) const = default;
    };

    std::u16string text;
    std::vector<Stretch> stretches; ///< in order
    std::vector<WordRange> changes; ///< where each of the changes stands, in their order
};

/// @param diff of these texts.
MergedText mergedText(std::u16string_view before, std::u16string_view after, const WordDiff& diff);

} // namespace tarnwick
