#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tarnwick {

/// What a token of PDF source is (ISO 32000-2, 7.2 and 7.3).
enum class TokenKind : unsigned char
{
    isEnd, ///< the source is finished
    isDictionaryOpen, ///< <<
    isDictionaryClose, ///< >>
    isArrayOpen,
    isArrayClose,
    isName, ///< with its slash
    isInteger,
    isReal,
    isString, ///< with its parentheses; to the end of the source where it is not closed
    isHexString, ///< with its angle brackets, likewise
    isReference, ///< "17 0 R" as a whole
    isKeyword, ///< any other run of characters: obj, stream, true, damaged numbers
};

struct SourceToken
{
    TokenKind kind = TokenKind::isEnd;
    std::size_t begin = 0; ///< offset in the text
    std::size_t end = 0;
    /// Of an integer its value, of a reference its object's number. What does not fit into 64 bits
    /// is the largest number that does.
    std::int64_t number = 0;
    std::int64_t generation = 0; ///< of a reference
};

/// White space of PDF source: NUL, tab, line feed, form feed, carriage return, space.
constexpr bool isSourceSpace(char character)
{
    return character == ' ' || character == '\n' || character == '\r' || character == '\t'
        || character == '\f' || character == '\0';
}

/// Characters that end a token and begin another.
constexpr bool isSourceDelimiter(char character)
{
    return character == '(' || character == ')' || character == '<' || character == '>'
        || character == '[' || character == ']' || character == '{' || character == '}'
        || character == '/' || character == '%';
}

constexpr bool isSourceRegular(char character)
{
    return !isSourceSpace(character) && !isSourceDelimiter(character);
}

constexpr bool isDecimalDigit(char character)
{
    return character >= '0' && character <= '9';
}

/// Takes PDF source apart into tokens; has an answer for any bytes whatever. Comments are passed
/// over. A stretch takes time in proportion to its length.
class SourceLexer
{
public:
    /// Reads text from begin to end; what token it stands in at begin is nobody's business.
    /// Precondition: begin <= end <= text.size(). The text is borrowed.
    SourceLexer(std::string_view text, std::size_t begin, std::size_t end)
        : theText(text.substr(0, end))
        , thePosition(begin)
    {
    }

    /// The next token; isEnd from the end of the source on.
    SourceToken next();
    /// The next token where references are taken for the two numbers and the word that they are made
    /// of, as in content streams, which have none (ISO 32000-2, 7.8.2).
    SourceToken nextPlain() { return simpleToken(); }
    /// Where the next token is looked for.
    std::size_t position() const { return thePosition; }

private:
    SourceToken simpleToken();
    SourceToken angleToken(std::size_t begin);
    SourceToken stringToken(std::size_t begin);
    SourceToken wordToken(std::size_t begin);
    SourceToken finish(TokenKind kind, std::size_t begin, std::size_t end);
    void skipSpace();
    bool referenceFollows(SourceToken& number);

    std::string_view theText;
    std::size_t thePosition;
};

/// A name without its slash, its "#xx" resolved (ISO 32000-2, 7.3.5).
/// @param name with its slash.
std::string nameText(std::string_view name);

/// The value of a run of digits; the largest 64-bit number where it does not fit.
/// Precondition: digits holds decimal digits only.
std::int64_t saturatedNumber(std::string_view digits);

} // namespace tarnwick
