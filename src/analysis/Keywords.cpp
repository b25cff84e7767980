#include "analysis/Keywords.h"

#include "analysis/StructureWords.h"

#include <cstring>

namespace tarnwick {

namespace {

/// Whether word stands in the text so that its character number place falls on offset. The word's
/// length is known to the compiler, which compares without a loop.
template<std::size_t size>
bool standsAt(
    std::string_view text, std::size_t offset, std::size_t place, const char (&word)[size])
{
    constexpr std::size_t length = size - 1;
    return offset >= place && text.size() - (offset - place) >= length
        && std::memcmp(text.data() + (offset - place), word, length) == 0;
}

/// As standsAt() for a word that may begin with a prefix, which makes another word of it.
template<std::size_t longSize, std::size_t shortSize>
unsigned withPrefix(std::string_view text, std::size_t offset, std::size_t place,
    const char (&longWord)[longSize], const char (&shortWord)[shortSize], unsigned longFlag,
    unsigned shortFlag)
{
    if (!standsAt(text, offset, place, shortWord))
        return 0;
    constexpr std::size_t prefix = longSize - shortSize;
    return standsAt(text, offset, place + prefix, longWord) ? longFlag | shortFlag : shortFlag;
}

} // namespace

unsigned keywordsAt(std::string_view text, std::size_t suspect)
{
    switch (text[suspect]) {
    case 'j':
        return withPrefix(
            text, suspect, 2, LineWord::endobj, LineWord::obj, Keyword::endobj, Keyword::obj);
    case 'm':
        return withPrefix(text, suspect, 5, LineWord::endstream, LineWord::stream,
            Keyword::endstream, Keyword::stream);
    case 'r':
        return withPrefix(text, suspect, 1, LineWord::startxref, LineWord::xref, Keyword::startxref,
            Keyword::xref);
    case 'F':
        return standsAt(text, suspect, 4, LineWord::endOfFile) ? Keyword::endOfFile : 0u;
    case 'i':
        return standsAt(text, suspect, 3, LineWord::trailer) ? Keyword::trailer : 0u;
    case 'M':
        return standsAt(text, suspect, 2, LineWord::xml) ? Keyword::xml : 0u;
    case 'y':
        return standsAt(text, suspect, 2, LineWord::type) ? Keyword::type : 0u;
    default:
        return 0;
    }
}

} // namespace tarnwick
