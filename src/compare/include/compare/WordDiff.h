#pragma once

#include "compare/SequenceDiff.h"

#include <cstddef>
#include <stop_token>
#include <string_view>
#include <vector>

namespace tarnwick {

/// Units of a text.
struct WordRange
{
    std::size_t begin = 0;
    std::size_t end = 0;

    bool isEmpty() const { return begin == end; }
    bool operator==(const WordRange&) const = default;
};

/// Words that stand in one text and not in the other, in the same place of both. Where one of the
/// ranges is empty, it lies where the words would stand.
struct WordChange
{
    WordRange before; ///< from the first removed word to the last
    WordRange after; ///< from the first added word to the last
    std::size_t removed = 0; ///< words
    std::size_t added = 0;

    bool operator==(const WordChange&) const = default;
};

struct WordDiff
{
    std::vector<WordChange> changes; ///< in order
    bool isRewritten = false; ///< as SequenceDiff has it

    bool isSame() const { return changes.empty(); }
};

/// The words of a text (UTF-16): what stands between white space. Of scripts that are written
/// without spaces between words (ideographs, kana) each character is one, so that a changed one
/// does not change the whole line.
std::vector<WordRange> wordsOf(std::u16string_view text);

/// Compares texts word by word; how words are set apart, and where lines end, does not count.
WordDiff compareWords(
    std::u16string_view before, std::u16string_view after, const std::stop_token& stop = {});

} // namespace tarnwick
