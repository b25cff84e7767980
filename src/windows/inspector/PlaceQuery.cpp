#include "PlaceQuery.h"

#include "files/OffsetInput.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace tarnwick {

namespace {

using Result = std::variant<PlaceQuery, PlaceMistake>;

char lowered(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Takes a text from its front, part by part, and keeps the first mistake.
class Reader
{
public:
    explicit Reader(std::string_view text)
        : theRest(text)
    {
        skipSpace();
    }

    bool isAtEnd() const { return theRest.empty(); }
    bool isAtDigit() const { return !isAtEnd() && theRest[0] >= '0' && theRest[0] <= '9'; }

    /// Takes a word, in lower case here, if it is next.
    bool take(std::string_view word)
    {
        if (theRest.size() < word.size())
            return false;
        for (std::size_t at = 0; at < word.size(); ++at) {
            if (lowered(theRest[at]) != word[at])
                return false;
        }
        theRest.remove_prefix(word.size());
        skipSpace();
        return true;
    }

    template<class Number> Number number()
    {
        Number value{};
        const auto [end, error]
            = std::from_chars(theRest.data(), theRest.data() + theRest.size(), value);
        if (error != std::errc() || theRest.starts_with('-'))
            note(error == std::errc::result_out_of_range ? PlaceMistake::isTooLarge
                                                         : PlaceMistake::isNoPlace);
        theRest.remove_prefix(static_cast<std::size_t>(end - theRest.data()));
        skipSpace();
        return value;
    }

    Result result(const PlaceQuery& query)
    {
        if (!isAtEnd())
            note(PlaceMistake::isNoPlace);
        if (isWrong)
            return theMistake;
        return query;
    }

private:
    void skipSpace()
    {
        theRest.remove_prefix(std::min(theRest.find_first_not_of(" \t\n\v\f\r"), theRest.size()));
    }
    void note(PlaceMistake mistake)
    {
        if (!isWrong)
            theMistake = mistake;
        isWrong = true;
    }

    std::string_view theRest;
    bool isWrong = false;
    PlaceMistake theMistake = PlaceMistake::isNoPlace;
};

Result readObject(Reader& reader)
{
    ObjectQuery query;
    query.objNo = reader.number<std::int64_t>();
    if (reader.isAtDigit()) {
        query.objGen = reader.number<std::int64_t>();
        reader.take("r");
    }
    if (reader.take("v"))
        query.objVer = reader.number<std::int64_t>();
    return reader.result(query);
}

Result readPlace(std::u16string_view text)
{
    constexpr std::size_t noEnd
        = std::numeric_limits<std::size_t>::max(); // the pane's is not known
    const OffsetInput input = readOffset(text, noEnd);
    if (input.offset)
        return OffsetQuery{static_cast<std::size_t>(*input.offset)};
    return input.problem == OffsetInput::Problem::isBehindEnd ? PlaceMistake::isTooLarge
                                                              : PlaceMistake::isNoPlace;
}

/// Of what is no ASCII only blanks belong to a place, and the signs of an offset.
std::string asciiOf(std::u16string_view text)
{
    std::string ascii;
    for (const char16_t unit : text) {
        const bool isBlank = unit == u'\u00A0' || unit == u'\u202F';
        ascii += isBlank ? ' ' : unit < 0x80 ? static_cast<char>(unit) : '?';
    }
    return ascii;
}

} // namespace

std::variant<PlaceQuery, PlaceMistake> parsePlaceQuery(std::u16string_view text)
{
    const std::string ascii = asciiOf(text);
    Reader reader(ascii);
    if (reader.isAtEnd())
        return PlaceMistake::isEmpty;
    if (reader.take("@"))
        return readPlace(text);
    if (reader.take("p"))
        return reader.result(PageQuery{reader.number<int>()});
    return readObject(reader);
}

} // namespace tarnwick
