#include "analysis/ObjectSource.h"

#include "analysis/StructureWords.h"

#include <algorithm>

namespace tarnwick {

ObjectSource::ObjectSource(std::string_view bytes, ByteRange range, std::size_t limit)
    : theBytes(bytes)
{
    const std::size_t end = range.begin + std::min(limit, range.size());
    theIsCut = end < range.end;
    readHeader(range, end);
}

/// "17 0 obj", or "trailer"; a line of the listing may hold more before and behind them.
void ObjectSource::readHeader(ByteRange range, std::size_t end)
{
    theValueBegin = theValueEnd = range.begin;
    SourceLexer lexer(theBytes, range.begin, end);
    for (;;) {
        const SourceToken token = lexer.next();
        if (token.kind == TokenKind::isEnd)
            return;
        const std::string_view word = theBytes.substr(token.begin, token.end - token.begin);
        if (token.kind != TokenKind::isKeyword
            || (word != LineWord::obj && word != LineWord::trailer))
            continue;
        theValueBegin = theValueEnd = token.end;
        readValue(lexer, end);
        return;
    }
}

void ObjectSource::readValue(SourceLexer& lexer, std::size_t end)
{
    for (;;) {
        const SourceToken token = lexer.next();
        const std::string_view word = theBytes.substr(token.begin, token.end - token.begin);
        if (token.kind == TokenKind::isEnd) {
            theValueEnd = end;
            return;
        }
        if (token.kind == TokenKind::isKeyword) {
            // Also within brackets that nobody closes.
            if (word == LineWord::stream)
                beginStream(token.end);
            if (word == LineWord::stream || word == LineWord::endobj || word == LineWord::endstream
                || word == LineWord::startxref || word == LineWord::xref || word == LineWord::obj) {
                theValueEnd = token.begin;
                theIsCut = false;
                return;
            }
        }
        takeToken(token);
    }
}

void ObjectSource::takeToken(const SourceToken& token)
{
    if (theTokens++ == 0)
        theFirstToken = token;
    const bool isOwn = theDepth == 1 && theFirstToken->kind == TokenKind::isDictionaryOpen;
    const bool closes
        = token.kind == TokenKind::isDictionaryClose || token.kind == TokenKind::isArrayClose;
    if (isOwn && !closes) {
        if (hasKey)
            theEntries.back().token = token;
        else if (token.kind == TokenKind::isName)
            theEntries.push_back(
                {nameText(theBytes.substr(token.begin, token.end - token.begin)), SourceToken()});
        hasKey = !hasKey && token.kind == TokenKind::isName;
    }
    if (token.kind == TokenKind::isDictionaryOpen || token.kind == TokenKind::isArrayOpen)
        ++theDepth;
    else if (closes && theDepth > 0)
        --theDepth;
}

/// "stream" is followed by CR LF or LF; a lone CR is written by some, blanks before the break too.
void ObjectSource::beginStream(std::size_t wordEnd)
{
    std::size_t begin = wordEnd;
    while (begin < theBytes.size() && (theBytes[begin] == ' ' || theBytes[begin] == '\t'))
        ++begin;
    const bool hasReturn = begin < theBytes.size() && theBytes[begin] == '\r';
    const std::size_t behind = begin + (hasReturn ? 1 : 0);
    const bool hasFeed = behind < theBytes.size() && theBytes[behind] == '\n';
    if (!hasReturn && !hasFeed)
        theStreamBegin = wordEnd;
    else
        theStreamBegin = behind + (hasFeed ? 1 : 0);
}

const SourceValue* ObjectSource::entry(std::string_view key) const
{
    const auto found = std::find_if(theEntries.rbegin(), theEntries.rend(),
        [key](const SourceValue& value) { return value.key == key; });
    return found == theEntries.rend() ? nullptr : &*found;
}

std::string ObjectSource::name(std::string_view key) const
{
    const SourceValue* value = entry(key);
    if (!value || value->token.kind != TokenKind::isName)
        return {};
    return nameText(theBytes.substr(value->token.begin, value->token.end - value->token.begin));
}

std::optional<std::int64_t> ObjectSource::integer(std::string_view key) const
{
    const SourceValue* value = entry(key);
    if (!value || value->token.kind != TokenKind::isInteger)
        return std::nullopt;
    return value->token.number;
}

std::optional<std::int64_t> ObjectSource::wholeNumber() const
{
    if (theTokens != 1 || theFirstToken->kind != TokenKind::isInteger)
        return std::nullopt;
    return theFirstToken->number;
}

namespace {

/// The way from an object's value down to where a walk over its tokens stands.
class ValuePath
{
public:
    /// To be called for each token before what it says is used.
    void take(const SourceToken& token, std::string_view text)
    {
        switch (token.kind) {
        case TokenKind::isDictionaryClose:
        case TokenKind::isArrayClose:
            leave();
            return;
        case TokenKind::isName:
            if (isKeyPlace()) {
                theLevels.back().key = nameText(text);
                theLevels.back().hasKey = true;
                return;
            }
            break;
        default:
            break;
        }
        if (token.kind == TokenKind::isDictionaryOpen || token.kind == TokenKind::isArrayOpen)
            enter(token.kind == TokenKind::isDictionaryOpen);
        else
            endValue();
    }

    /// Of the value that is being taken.
    std::string text() const
    {
        std::string path;
        for (const Level& level : theLevels)
            path += level.isDictionary ? '/' + level.key : '[' + std::to_string(level.index) + ']';
        return path;
    }

    /// To be called when a value has been used.
    void endValue()
    {
        if (theExcess > 0 || theLevels.empty())
            return;
        theLevels.back().hasKey = false;
        ++theLevels.back().index;
    }

private:
    struct Level
    {
        bool isDictionary = false;
        bool hasKey = false;
        std::string key;
        std::size_t index = 0;
    };
    static constexpr std::size_t mostLevels = 32;

    bool isKeyPlace() const
    {
        return theExcess == 0 && !theLevels.empty() && theLevels.back().isDictionary
            && !theLevels.back().hasKey;
    }
    void enter(bool isDictionary)
    {
        if (theLevels.size() == mostLevels)
            ++theExcess;
        else
            theLevels.push_back({isDictionary, false, {}, 0});
    }
    void leave()
    {
        if (theExcess > 0)
            --theExcess;
        else if (!theLevels.empty())
            theLevels.pop_back();
        endValue();
    }

    std::vector<Level> theLevels;
    std::size_t theExcess = 0; ///< levels that are not kept
};

} // namespace

void forEachReference(std::string_view bytes, const ObjectSource& source,
    const std::function<bool(const PlacedReference&)>& take)
{
    SourceLexer lexer(bytes, source.valueBegin(), source.valueEnd());
    ValuePath path;
    for (SourceToken token = lexer.next(); token.kind != TokenKind::isEnd; token = lexer.next()) {
        if (token.kind != TokenKind::isReference) {
            path.take(token, bytes.substr(token.begin, token.end - token.begin));
            continue;
        }
        if (!take({path.text(), token}))
            return;
        path.endValue();
    }
}

} // namespace tarnwick
