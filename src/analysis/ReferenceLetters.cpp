#include "ReferenceLetters.h"

#include "analysis/SourceLexer.h"

#include <algorithm>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tarnwick {

namespace {

std::uint64_t portableLetters(std::string_view text, std::size_t offset)
{
    std::uint64_t letters = 0;
    const std::size_t count = std::min(letterBlock, text.size() - offset);
    for (std::size_t index = 0; index < count; ++index) {
        if (text[offset + index] == 'R' && isSourceSpace(text[offset + index - 1]))
            letters |= std::uint64_t{1} << index;
    }
    return letters;
}

} // namespace

#if defined(__SSE2__)

std::uint64_t referenceLetters(std::string_view text, std::size_t offset)
{
    if (text.size() - offset < letterBlock)
        return portableLetters(text, offset);
    std::uint64_t letters = 0;
    for (unsigned part = 0; part < letterBlock; part += 16) {
        const char* start = text.data() + offset + part;
        const auto load = [](const char* bytes) {
            return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
        };
        const __m128i before = load(start - 1);
        const __m128i isSpace = _mm_cmpeq_epi8(_mm_min_epu8(before, _mm_set1_epi8(' ')), before);
        const __m128i isLetter = _mm_cmpeq_epi8(load(start), _mm_set1_epi8('R'));
        const auto bits
            = static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_and_si128(isSpace, isLetter)));
        letters |= std::uint64_t{bits} << part;
    }
    return letters;
}

#else

std::uint64_t referenceLetters(std::string_view text, std::size_t offset)
{
    return portableLetters(text, offset);
}

#endif

} // namespace tarnwick
