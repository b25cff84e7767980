#include "analysis/SourceLexer.h"

#include <charconv>
#include <limits>
#include <system_error>

namespace tarnwick {

namespace {

/// "12", "+12", "-12".
bool isInteger(std::string_view word)
{
    const std::size_t first = word.front() == '+' || word.front() == '-' ? 1u : 0u;
    if (first == word.size())
        return false;
    for (const char character : word.substr(first)) {
        if (!isDecimalDigit(character))
            return false;
    }
    return true;
}

/// What else is made of digits, a sign and one point, and has a digit.
bool isReal(std::string_view word)
{
    std::size_t digits = 0;
    std::size_t points = 0;
    for (std::size_t index = word.front() == '+' || word.front() == '-' ? 1u : 0u;
         index < word.size(); ++index) {
        digits += isDecimalDigit(word[index]) ? 1u : 0u;
        points += word[index] == '.' ? 1u : 0u;
        if (!isDecimalDigit(word[index]) && word[index] != '.')
            return false;
    }
    return digits > 0 && points == 1;
}

std::int64_t integerValue(std::string_view word)
{
    const bool isNegative = word.front() == '-';
    if (isNegative || word.front() == '+')
        word.remove_prefix(1);
    return isNegative ? -saturatedNumber(word) : saturatedNumber(word);
}

int hexDigit(char character)
{
    if (isDecimalDigit(character))
        return character - '0';
    if (character >= 'a' && character <= 'f')
        return character - 'a' + 10;
    return character >= 'A' && character <= 'F' ? character - 'A' + 10 : -1;
}

} // namespace

std::int64_t saturatedNumber(std::string_view digits)
{
    std::int64_t value = 0;
    const auto [stop, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return error == std::errc::result_out_of_range ? std::numeric_limits<std::int64_t>::max()
                                                   : value;
}

std::string nameText(std::string_view name)
{
    std::string text;
    for (std::size_t index = 1; index < name.size(); ++index) {
        const int high
            = name[index] == '#' && index + 2 < name.size() ? hexDigit(name[index + 1]) : -1;
        const int low = high >= 0 ? hexDigit(name[index + 2]) : -1;
        text += low >= 0 ? static_cast<char>(high * 16 + low) : name[index];
        index += low >= 0 ? 2 : 0;
    }
    return text;
}

SourceToken SourceLexer::finish(TokenKind kind, std::size_t begin, std::size_t end)
{
    thePosition = end;
    return {kind, begin, end, 0, 0};
}

void SourceLexer::skipSpace()
{
    while (thePosition < theText.size()) {
        const char character = theText[thePosition];
        if (character == '%') {
            while (thePosition < theText.size() && theText[thePosition] != '\n'
                && theText[thePosition] != '\r')
                ++thePosition;
        } else if (isSourceSpace(character)) {
            ++thePosition;
        } else {
            return;
        }
    }
}

SourceToken SourceLexer::next()
{
    SourceToken token = simpleToken();
    if (token.kind == TokenKind::isInteger && token.number >= 0
        && isDecimalDigit(theText[token.begin]) && referenceFollows(token))
        thePosition = token.end;
    return token;
}

SourceToken SourceLexer::simpleToken()
{
    skipSpace();
    const std::size_t begin = thePosition;
    if (begin == theText.size())
        return finish(TokenKind::isEnd, begin, begin);
    switch (theText[begin]) {
    case '[':
        return finish(TokenKind::isArrayOpen, begin, begin + 1);
    case ']':
        return finish(TokenKind::isArrayClose, begin, begin + 1);
    case '<':
    case '>':
        return angleToken(begin);
    case '(':
        return stringToken(begin);
    case ')':
    case '{':
    case '}':
        return finish(TokenKind::isKeyword, begin, begin + 1);
    default:
        return wordToken(begin);
    }
}

SourceToken SourceLexer::angleToken(std::size_t begin)
{
    const char bracket = theText[begin];
    if (begin + 1 < theText.size() && theText[begin + 1] == bracket)
        return finish(bracket == '<' ? TokenKind::isDictionaryOpen : TokenKind::isDictionaryClose,
            begin, begin + 2);
    if (bracket == '>')
        return finish(TokenKind::isKeyword, begin, begin + 1);
    const std::size_t close = theText.find('>', begin);
    return finish(TokenKind::isHexString, begin,
        close == std::string_view::npos ? theText.size() : close + 1);
}

SourceToken SourceLexer::stringToken(std::size_t begin)
{
    std::size_t depth = 0;
    for (std::size_t index = begin; index < theText.size(); ++index) {
        if (theText[index] == '\\')
            ++index;
        else if (theText[index] == '(')
            ++depth;
        else if (theText[index] == ')' && --depth == 0)
            return finish(TokenKind::isString, begin, index + 1);
    }
    return finish(TokenKind::isString, begin, theText.size());
}

SourceToken SourceLexer::wordToken(std::size_t begin)
{
    std::size_t end = begin + 1;
    while (end < theText.size() && isSourceRegular(theText[end]))
        ++end;
    const std::string_view word = theText.substr(begin, end - begin);
    if (word.front() == '/')
        return finish(TokenKind::isName, begin, end);
    if (isInteger(word)) {
        SourceToken token = finish(TokenKind::isInteger, begin, end);
        token.number = integerValue(word);
        return token;
    }
    return finish(isReal(word) ? TokenKind::isReal : TokenKind::isKeyword, begin, end);
}

/// Looks no further than a reference can: past two words.
bool SourceLexer::referenceFollows(SourceToken& number)
{
    const std::size_t behind = thePosition;
    const SourceToken generation = simpleToken();
    const bool isNumber
        = generation.kind == TokenKind::isInteger && isDecimalDigit(theText[generation.begin]);
    const SourceToken letter = isNumber ? simpleToken() : SourceToken();
    thePosition = behind;
    if (letter.kind != TokenKind::isKeyword || letter.end - letter.begin != 1
        || theText[letter.begin] != 'R')
        return false;
    number.kind = TokenKind::isReference;
    number.end = letter.end;
    number.generation = generation.number;
    return true;
}

} // namespace tarnwick
