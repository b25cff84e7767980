#include "compare/WordDiff.h"

#include <cstdint>
#include <string>
#include <unordered_map>

namespace tarnwick {

namespace {

bool isSpace(char16_t unit)
{
    return unit <= 0x20 || (unit >= 0x7F && unit <= 0xA0) || unit == 0x1680
        || (unit >= 0x2000 && unit <= 0x200B) || unit == 0x2028 || unit == 0x2029 || unit == 0x202F
        || unit == 0x205F || unit == 0x3000 || unit == 0xFEFF;
}

bool isHighSurrogate(char16_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

/// Kana, and ideographs of the first plane and of those behind it (two units each).
bool standsAlone(char16_t unit)
{
    return (unit >= 0x3041 && unit <= 0x30FF) || (unit >= 0x3400 && unit <= 0x9FFF)
        || (unit >= 0xF900 && unit <= 0xFAFF) || (unit >= 0xD840 && unit <= 0xD888);
}

/// Numbers for words: equal ones for equal words.
class Vocabulary
{
public:
    std::vector<std::uint32_t> numbers(
        std::u16string_view text, const std::vector<WordRange>& words)
    {
        std::vector<std::uint32_t> result;
        result.reserve(words.size());
        for (const WordRange& word : words) {
            const auto number = static_cast<std::uint32_t>(theNumbers.size());
            const auto place
                = theNumbers.emplace(text.substr(word.begin, word.end - word.begin), number);
            result.push_back(place.first->second);
        }
        return result;
    }

private:
    std::unordered_map<std::u16string_view, std::uint32_t> theNumbers;
};

/// The units from the first of some words to the last; without any, the place where they would be.
WordRange rangeOf(const std::vector<WordRange>& words, std::size_t first, std::size_t count)
{
    if (count > 0)
        return {words[first].begin, words[first + count - 1].end};
    const std::size_t place = first > 0 ? words[first - 1].end
        : words.empty()                 ? 0
                                        : words.front().begin;
    return {place, place};
}

} // namespace

std::vector<WordRange> wordsOf(std::u16string_view text)
{
    std::vector<WordRange> words;
    std::size_t place = 0;
    while (place < text.size()) {
        if (isSpace(text[place])) {
            ++place;
            continue;
        }
        const std::size_t begin = place;
        if (standsAlone(text[place])) {
            const bool isPair = isHighSurrogate(text[place]) && place + 1 < text.size();
            place += isPair ? 2 : 1;
        } else {
            while (place < text.size() && !isSpace(text[place]) && !standsAlone(text[place]))
                ++place;
        }
        words.push_back({begin, place});
    }
    return words;
}

WordDiff compareWords(
    std::u16string_view before, std::u16string_view after, const std::stop_token& stop)
{
    const std::vector<WordRange> words = wordsOf(before);
    const std::vector<WordRange> others = wordsOf(after);
    Vocabulary vocabulary;
    const std::vector<std::uint32_t> numbers = vocabulary.numbers(before, words);
    const std::vector<std::uint32_t> otherNumbers = vocabulary.numbers(after, others);
    const SequenceDiff diff = compareSequences(numbers, otherNumbers, usualEdits, stop);
    WordDiff result;
    result.isRewritten = diff.isRewritten;
    result.changes.reserve(diff.changes.size());
    for (const SequenceChange& change : diff.changes)
        result.changes.push_back({rangeOf(words, change.before, change.removed),
            rangeOf(others, change.after, change.added), change.removed, change.added});
    return result;
}

} // namespace tarnwick
