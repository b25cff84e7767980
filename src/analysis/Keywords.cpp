#include "analysis/Keywords.h"

namespace {

/// Whether word stands in the text so that its character number place falls on offset.
bool standsAt(std::string_view text, std::size_t offset, std::size_t place, std::string_view word)
{
    return offset >= place && text.substr(offset - place).starts_with(word);
}

unsigned withPrefix(std::string_view text, std::size_t offset, std::size_t place,
    std::string_view longWord, std::string_view shortWord, unsigned longFlag, unsigned shortFlag)
{
    if (!standsAt(text, offset, place, shortWord))
        return 0;
    const std::size_t prefix = longWord.size() - shortWord.size();
    return standsAt(text, offset, place + prefix, longWord) ? longFlag | shortFlag : shortFlag;
}

} // namespace

unsigned keywordsAt(std::string_view text, std::size_t suspect)
{
    switch (text[suspect]) {
    case 'j':
        return withPrefix(text, suspect, 2, "endobj", "obj", Keyword::endobj, Keyword::obj);
    case 'm':
        return withPrefix(
            text, suspect, 5, "endstream", "stream", Keyword::endstream, Keyword::stream);
    case 'r':
        return withPrefix(text, suspect, 1, "startxref", "xref", Keyword::startxref, Keyword::xref);
    case 'F':
        return standsAt(text, suspect, 4, "%%EOF") ? Keyword::endOfFile : 0u;
    case 'i':
        return standsAt(text, suspect, 3, "trailer") ? Keyword::trailer : 0u;
    case 'M':
        return standsAt(text, suspect, 2, "/XML") ? Keyword::xml : 0u;
    case 'y':
        return standsAt(text, suspect, 2, "/Type") ? Keyword::type : 0u;
    default:
        return 0;
    }
}
