#include "CodeScan.h"

#include "analysis/SourceLexer.h"
#include "analysis/StructureWords.h"

#include <algorithm>
#include <array>

namespace tarnwick {

namespace {

/// Bytes that open what is no code, and those that stand for a keyword: "m" for "stream", "j" for
/// "endobj". Most objects have none of them before what is asked about.
constexpr std::array<bool, 256> openers = [] {
    std::array<bool, 256> table{};
    table['('] = table['%'] = table['m'] = table['j'] = true;
    return table;
}();

bool isOpener(std::string_view source, std::size_t index)
{
    switch (source[index]) {
    case 'm':
        return index > 0 && source[index - 1] == 'a';
    case 'j':
        return source.substr(0, index + 1).ends_with(LineWord::endobj);
    default:
        return true;
    }
}

bool isPlain(std::string_view source)
{
    for (std::size_t index = 0; index < source.size(); ++index) {
        if (openers[static_cast<unsigned char>(source[index])] && isOpener(source, index))
            return false;
    }
    return true;
}

} // namespace

bool CodeScan::isCode(ByteRange region, std::size_t offset)
{
    if (region.begin != theStart) {
        theStart = region.begin;
        thePosition = region.begin;
        theIsBehindEnd = false;
    }
    if (thePosition > offset)
        return false;
    if (isPlain(theText.substr(thePosition, offset - thePosition)))
        thePosition = offset;
    else
        goOn(region.end, offset);
    return thePosition <= offset;
}

/// Passes over what ends before the offset, and over what holds it and is no code.
void CodeScan::goOn(std::size_t end, std::size_t offset)
{
    SourceLexer lexer(theText, thePosition, end);
    for (;;) {
        const SourceToken token = lexer.next();
        const bool isText
            = token.kind == TokenKind::isString || token.kind == TokenKind::isHexString;
        // Between two tokens there is room for comments alone.
        thePosition = token.begin <= offset && isText ? token.end : token.begin;
        if (token.kind == TokenKind::isEnd || token.end > offset)
            return;
        if (token.kind != TokenKind::isKeyword)
            continue;
        const std::string_view word = theText.substr(token.begin, token.end - token.begin);
        theIsBehindEnd = theIsBehindEnd || word == LineWord::endobj;
        if (word == LineWord::stream) {
            thePosition = token.end;
            skipStream(end);
            if (thePosition > offset)
                return;
            lexer = SourceLexer(theText, thePosition, end);
        }
    }
}

void CodeScan::skipStream(std::size_t end)
{
    const std::size_t close = theText.substr(0, end).find(LineWord::endstream, thePosition);
    thePosition = std::min(close, end);
}

} // namespace tarnwick
