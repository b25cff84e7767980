#include "PlaceQuery.h"

#include <algorithm>
#include <charconv>

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

    template<class Number> Number number(int base = 10)
    {
        Number value{};
        const auto [end, error]
            = std::from_chars(theRest.data(), theRest.data() + theRest.size(), value, base);
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

} // namespace

std::variant<PlaceQuery, PlaceMistake> parsePlaceQuery(std::string_view text)
{
    Reader reader(text);
    if (reader.isAtEnd())
        return PlaceMistake::isEmpty;
    if (reader.take("@")) {
        const int base = reader.take("0x") ? 16 : 10;
        return reader.result(OffsetQuery{reader.number<std::size_t>(base)});
    }
    if (reader.take("p"))
        return reader.result(PageQuery{reader.number<int>()});
    return readObject(reader);
}

} // namespace tarnwick
