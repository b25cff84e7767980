#include "analysis/ReferenceScan.h"

#include "analysis/SourceLexer.h"

#include <algorithm>
#include <string>

namespace tarnwick::ReferenceScan {

namespace {

/// Characters beyond the bytes are no part of any reference, and regular.
char narrow(char character)
{
    return character;
}
char narrow(char16_t character)
{
    return character < 0x100 ? static_cast<char>(static_cast<unsigned char>(character)) : '\x80';
}

/// Reads a text backwards, down to a floor.
template<class Text> class Backwards
{
public:
    Backwards(Text text, std::size_t position, std::size_t floor)
        : theText(text)
        , thePosition(position)
        , theFloor(floor)
    {
    }

    std::size_t position() const { return thePosition; }
    char before() const { return narrow(theText[thePosition - 1]); }
    bool atFloor() const { return thePosition == theFloor; }

    std::size_t skipSpace()
    {
        const std::size_t from = thePosition;
        while (!atFloor() && isSourceSpace(before()))
            --thePosition;
        return from - thePosition;
    }
    bool skip(char character)
    {
        if (atFloor() || before() != character)
            return false;
        --thePosition;
        return true;
    }
    /// Digits before the position. @returns nothing where there are none.
    std::optional<std::int64_t> number()
    {
        const std::size_t from = thePosition;
        while (!atFloor() && isDecimalDigit(before()))
            --thePosition;
        if (from == thePosition)
            return std::nullopt;
        constexpr std::size_t digitsThatFit = 18;
        if (from - thePosition > digitsThatFit)
            return longNumber(from);
        std::int64_t value = 0;
        for (std::size_t index = thePosition; index < from; ++index)
            value = value * 10 + (narrow(theText[index]) - '0');
        return value;
    }
    /// Whether a word can begin here: what stands before is no part of one, or nothing does. At the
    /// floor it is not known what stands before, unless that is the text's start.
    bool isWordStart() const
    {
        return thePosition == 0 || (!atFloor() && !isSourceRegular(before()));
    }

private:
    std::int64_t longNumber(std::size_t end) const
    {
        std::string digits;
        for (std::size_t index = thePosition; index < end; ++index)
            digits += narrow(theText[index]);
        return saturatedNumber(digits);
    }

    Text theText;
    std::size_t thePosition;
    std::size_t theFloor;
};

std::size_t floorOf(std::size_t position)
{
    return position > reach ? position - reach : 0;
}

/// "17 0 R", the letter at an offset.
struct SourceForm
{
    static constexpr char last = 'R';

    template<class Text>
    static std::optional<ScannedReference> endingAt(Text text, std::size_t letter)
    {
        if (narrow(text[letter]) != last
            || (letter + 1 < text.size() && isSourceRegular(narrow(text[letter + 1]))))
            return std::nullopt;
        Backwards<Text> walk(text, letter, floorOf(letter));
        if (walk.skipSpace() == 0)
            return std::nullopt;
        const std::optional<std::int64_t> generation = walk.number();
        if (!generation || walk.skipSpace() == 0)
            return std::nullopt;
        const std::optional<std::int64_t> number = walk.number();
        if (!number || !walk.isWordStart())
            return std::nullopt;
        return ScannedReference{walk.position(), letter + 1, *number, *generation, std::nullopt};
    }
};

/// "(17, 0, 2)", the closing parenthesis at an offset.
struct ListForm
{
    static constexpr char last = ')';

    template<class Text>
    static std::optional<ScannedReference> endingAt(Text text, std::size_t parenthesis)
    {
        if (narrow(text[parenthesis]) != last)
            return std::nullopt;
        Backwards<Text> walk(text, parenthesis, floorOf(parenthesis));
        const std::optional<std::int64_t> version = walk.number();
        if (!version || !walk.skip(' ') || !walk.skip(','))
            return std::nullopt;
        const std::optional<std::int64_t> generation = walk.number();
        if (!generation || !walk.skip(' ') || !walk.skip(','))
            return std::nullopt;
        const std::optional<std::int64_t> number = walk.number();
        if (!number || !walk.skip('('))
            return std::nullopt;
        return ScannedReference{walk.position(), parenthesis + 1, *number, *generation, version};
    }
};

/// Every reference that touches a stretch ends in it or soon behind it.
template<class Form, class Text>
std::vector<ScannedReference> touching(Text text, std::size_t begin, std::size_t count)
{
    const std::size_t stretchEnd = begin + std::min(count, text.size() - begin);
    const std::size_t end = stretchEnd + std::min(reach, text.size() - stretchEnd);
    std::vector<ScannedReference> references;
    for (std::size_t index = begin; index < end; ++index) {
        if (narrow(text[index]) != Form::last)
            continue;
        const std::optional<ScannedReference> found = Form::endingAt(text, index);
        if (found && found->begin < stretchEnd)
            references.push_back(*found);
    }
    return references;
}

template<class Form, class Text> std::optional<ScannedReference> at(Text text, std::size_t position)
{
    const std::size_t begin = position > 0 ? position - 1 : 0;
    const std::size_t count = position < text.size() ? position + 1 - begin : position - begin;
    for (const ScannedReference& found : touching<Form>(text, begin, count)) {
        if (found.begin <= position && position <= found.end)
            return found;
    }
    return std::nullopt;
}

} // namespace

std::vector<ScannedReference> inSource(std::string_view text, std::size_t begin, std::size_t count)
{
    return touching<SourceForm>(text, begin, count);
}

std::vector<ScannedReference> inSource(
    std::u16string_view text, std::size_t begin, std::size_t count)
{
    return touching<SourceForm>(text, begin, count);
}

std::vector<ScannedReference> inObjectList(
    std::u16string_view text, std::size_t begin, std::size_t count)
{
    return touching<ListForm>(text, begin, count);
}

std::optional<ScannedReference> sourceReferenceAt(std::string_view text, std::size_t position)
{
    return at<SourceForm>(text, position);
}

std::optional<ScannedReference> sourceReferenceAt(std::u16string_view text, std::size_t position)
{
    return at<SourceForm>(text, position);
}

std::optional<ScannedReference> listReferenceAt(std::u16string_view text, std::size_t position)
{
    return at<ListForm>(text, position);
}

std::optional<ScannedReference> endingAt(std::string_view text, std::size_t letter)
{
    return SourceForm::endingAt(text, letter);
}

} // namespace tarnwick::ReferenceScan
