#include "SyntaxWalk.h"

#include <algorithm>
#include <utility>

namespace tarnwick {

namespace {

constexpr std::size_t judgedBehindData = 32; ///< bytes

SyntaxRole roleOf(TokenKind kind)
{
    switch (kind) {
    case TokenKind::isName:
        return SyntaxRole::isName;
    case TokenKind::isString:
    case TokenKind::isHexString:
        return SyntaxRole::isString;
    default:
        return SyntaxRole::isPlain;
    }
}

bool isTextByte(char one)
{
    return (one >= ' ' && one <= '~') || (isSourceSpace(one) && one != '\0');
}

} // namespace

std::optional<SyntaxStretch> SyntaxWalk::next()
{
    if (thePlace == SyntaxPlace::isBeforeData)
        return data();
    if (!theAhead)
        theAhead = theLexer.nextPlain();
    if (const auto found = comment())
        return found;
    const SourceToken token = *std::exchange(theAhead, std::nullopt);
    if (token.kind == TokenKind::isEnd)
        return std::nullopt;
    thePosition = token.end;
    if (token.kind == TokenKind::isKeyword)
        return word(token);
    return SyntaxStretch{token.begin, token.end, roleOf(token.kind)};
}

/// One blank belongs to ID, the data follows.
SyntaxStretch SyntaxWalk::data()
{
    const std::size_t begin = thePosition;
    thePlace = SyntaxPlace::isUsual;
    thePosition = endOfData(std::min(begin + 1, theText.size()));
    theLexer = SourceLexer(theText, thePosition, theText.size());
    return {begin, thePosition, SyntaxRole::isData};
}

/// The lexer passes comments over: they are in what lies between two tokens.
std::optional<SyntaxStretch> SyntaxWalk::comment()
{
    const std::size_t end = theAhead->begin;
    const std::size_t begin = theText.substr(0, end).find('%', thePosition);
    if (begin == std::string_view::npos)
        return std::nullopt;
    thePosition = std::min(theText.find_first_of("\r\n", begin), end);
    return SyntaxStretch{begin, thePosition, SyntaxRole::isComment};
}

SyntaxStretch SyntaxWalk::word(const SourceToken& token)
{
    const std::string_view text = theText.substr(token.begin, token.end - token.begin);
    if (text == "BI")
        thePlace = SyntaxPlace::isInImage;
    else if (text == "ID" && thePlace == SyntaxPlace::isInImage)
        thePlace = SyntaxPlace::isBeforeData;
    else if (text == "EI")
        thePlace = SyntaxPlace::isUsual;
    const bool isBracket = text.size() == 1 && isSourceDelimiter(text.front());
    return {token.begin, token.end,
        isBracket || text == "R" ? SyntaxRole::isPlain : SyntaxRole::isOperator};
}

std::size_t SyntaxWalk::endOfData(std::size_t begin) const
{
    for (std::size_t place = theText.find("EI", begin); place != std::string_view::npos;
         place = theText.find("EI", place + 1)) {
        if (endsData(place) && (place == begin || isSourceSpace(theText[place - 1])))
            return place;
    }
    return theText.size();
}

/// Data may have these two letters as well: what follows the operator is content.
bool SyntaxWalk::endsData(std::size_t place) const
{
    const std::string_view behind = theText.substr(place + 2, judgedBehindData);
    return (behind.empty() || !isSourceRegular(behind.front()))
        && std::all_of(behind.begin(), behind.end(), isTextByte);
}

} // namespace tarnwick
