#include "FoldedText.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <array>
#include <limits>

namespace tarnwick {

namespace {

constexpr std::size_t unitsBetweenStops = 1 << 16;
constexpr char16_t softHyphen = u'\u00ad';
// Real letters carry a handful of marks. A run of thousands is not a letter, and ordering its marks
// takes quadratic time, so it is folded in parts.
constexpr std::size_t longestPiece = 256;

bool isLineEnd(char16_t unit)
{
    return (unit >= 0x0A && unit <= 0x0D) || unit == 0x85 || unit == 0x2028 || unit == 0x2029;
}

bool isBlank(char16_t unit)
{
    return unit == u' ' || unit == u'\t';
}

/// What is not a character like others, found with one look: most are.
bool isSpecial(char16_t unit)
{
    static constexpr auto latin = [] {
        std::array<bool, 0x100> table{};
        for (const int special : {0x09, 0x0A, 0x0B, 0x0C, 0x0D, 0x20, 0x85, 0xAD})
            table[static_cast<std::size_t>(special)] = true;
        return table;
    }();
    return unit < latin.size() ? latin[unit] : unit == 0x2028 || unit == 0x2029;
}

bool isHyphen(char16_t unit)
{
    return unit == u'-' || unit == u'\u2010';
}

/// Whether a letter's shape has a code of its own: Hebrew and Arabic presentation forms.
bool isPresentationForm(char32_t character)
{
    return (character >= 0xFB1D && character <= 0xFDFF)
        || (character >= 0xFE70 && character <= 0xFEFC);
}

/// Whether lines break beside a character without a blank, as in Chinese, Japanese and Thai. Korean
/// has blanks, but breaks its words as well.
bool breaksWithoutBlank(char32_t character)
{
    if (character < 0x0E00)
        return false;
    const auto one = static_cast<UChar32>(character);
    switch (u_getIntPropertyValue(one, UCHAR_EAST_ASIAN_WIDTH)) {
    case U_EA_FULLWIDTH:
    case U_EA_HALFWIDTH:
    case U_EA_WIDE:
        return true;
    default:
        return u_getIntPropertyValue(one, UCHAR_LINE_BREAK) == U_LB_COMPLEX_CONTEXT;
    }
}

bool isMark(char32_t character)
{
    return (U_GET_GC_MASK(static_cast<UChar32>(character)) & U_GC_M_MASK) != 0;
}

bool isPartOfWord(char32_t character)
{
    return u_isalnum(static_cast<UChar32>(character)) || isMark(character);
}

const icu::Normalizer2* decomposition(bool isCompatible)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* normalizer = isCompatible ? icu::Normalizer2::getNFKDInstance(status)
                                                      : icu::Normalizer2::getNFDInstance(status);
    return U_SUCCESS(status) ? normalizer : nullptr;
}

} // namespace

/// Walks over a text piece by piece. A piece is a code point with the combining marks behind it:
/// normalisation never reaches across its ends.
class FoldedText::Folder
{
public:
    Folder(std::u16string_view text, SearchOptions options, FoldedText& target)
        : theText(text)
        , theOptions(options)
        , theTarget(target)
    {
    }

    bool isAtEnd() const { return thePosition >= theText.size(); }

    void foldPiece()
    {
        const char16_t unit = theText[thePosition];
        if (isSpecial(unit))
            foldSpecial(unit);
        else if (theOptions == SearchOptions::isLiteral)
            foldLiterally();
        else if (unit < 0x80
            && (thePosition + 1 == theText.size() || theText[thePosition + 1] < 0x300))
            append(foldedAscii(unit)), ++thePosition;
        else
            foldCanonically();
    }

private:
    void append(char16_t unit)
    {
        theTarget.theUnits.push_back(unit);
        theTarget.thePositions.push_back(static_cast<std::uint32_t>(thePosition));
    }

    void append(std::u16string_view units)
    {
        for (const char16_t unit : units)
            append(unit);
    }

    char16_t foldedAscii(char16_t unit) const
    {
        const bool isFolded
            = theOptions == SearchOptions::isIgnoringCase && unit >= u'A' && unit <= u'Z';
        return isFolded ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
    }

    void foldSpecial(char16_t unit)
    {
        if (unit != softHyphen)
            foldWhiteSpace();
        else if (!isMark(thePosition + 1))
            foldSoftHyphen();
        else if (theOptions == SearchOptions::isLiteral)
            foldLiterally();
        else
            foldCanonically();
    }

    bool isMark(std::size_t position) const
    {
        return position < theText.size() && tarnwick::isMark(codePoint(position));
    }

    void foldWhiteSpace()
    {
        std::size_t end = thePosition;
        bool hasLineEnd = false;
        for (; end < theText.size() && (isBlank(theText[end]) || isLineEnd(theText[end])); ++end)
            hasLineEnd = hasLineEnd || isLineEnd(theText[end]);
        if (hasLineEnd)
            foldLineEnd(end);
        for (; !hasLineEnd && thePosition < end; ++thePosition)
            append(theText[thePosition]);
        thePosition = end;
    }

    /// @param end of the white space.
    void foldLineEnd(std::size_t end)
    {
        const std::size_t space = theTarget.theUnits.size();
        append(u' ');
        if (thePosition == 0 || end == theText.size())
            return;
        const char32_t next = codePoint(end);
        const char16_t last = theText[thePosition - 1];
        // A hyphen with a mark is none; it would have been folded with it.
        const bool isBare = theTarget.theUnits[space - 1] == last;
        if (isBare && (last == softHyphen || (isHyphen(last) && endsWord()))
            && isPartOfWord(next)) {
            addDetour(space - 1, space + 1, false);
            if (last != u'-')
                addDetour(space - 1, space + 1, true);
            addDetour(space, space + 1, false);
        } else if (breaksWithoutBlank(codePointBefore(thePosition)) || breaksWithoutBlank(next)) {
            addDetour(space, space + 1, false);
        }
    }

    /// Whether a word stands before the hyphen before this position.
    bool endsWord() const
    {
        return thePosition > 1 && isPartOfWord(codePointBefore(thePosition - 1));
    }

    void foldSoftHyphen()
    {
        const std::size_t index = theTarget.theUnits.size();
        append(softHyphen);
        addDetour(index, index + 1, false);
        addDetour(index, index + 1, true);
        ++thePosition;
    }

    void addDetour(std::size_t begin, std::size_t end, bool isHyphen)
    {
        theTarget.theDetours.push_back(
            {static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(end), isHyphen});
    }

    void foldLiterally()
    {
        const std::size_t end = nextCodePoint(thePosition);
        append(theText.substr(thePosition, end - thePosition));
        thePosition = end;
    }

    std::size_t nextCodePoint(std::size_t position) const
    {
        const bool isPair = position + 1 < theText.size() && U16_IS_LEAD(theText[position])
            && U16_IS_TRAIL(theText[position + 1]);
        return position + (isPair ? 2 : 1);
    }

    char32_t codePoint(std::size_t position) const
    {
        const char16_t unit = theText[position];
        return nextCodePoint(position) == position + 2
            ? static_cast<char32_t>(U16_GET_SUPPLEMENTARY(unit, theText[position + 1]))
            : unit;
    }

    char32_t codePointBefore(std::size_t position) const
    {
        const char16_t unit = theText[position - 1];
        return position >= 2 && U16_IS_TRAIL(unit) && U16_IS_LEAD(theText[position - 2])
            ? static_cast<char32_t>(U16_GET_SUPPLEMENTARY(theText[position - 2], unit))
            : unit;
    }

    std::size_t pieceEnd() const
    {
        std::size_t end = nextCodePoint(thePosition);
        while (end < theText.size() && end - thePosition < longestPiece
            && !theNormalizer->hasBoundaryBefore(static_cast<UChar32>(codePoint(end))))
            end = nextCodePoint(end);
        return end;
    }

    void foldCanonically()
    {
        if (!theNormalizer)
            return foldLiterally();
        const std::size_t end = pieceEnd();
        const std::u16string_view piece = theText.substr(thePosition, end - thePosition);
        const char32_t character = codePoint(thePosition);
        const bool isPlain = end == nextCodePoint(thePosition)
            && theNormalizer->isInert(static_cast<UChar32>(character));
        if (isPresentationForm(character) && theLetterNormalizer)
            appendLetters(piece);
        else if (!isPlain)
            appendNormalized(piece);
        else if (theOptions == SearchOptions::isIgnoringCase)
            appendCaseFolded(piece);
        else
            append(piece);
        thePosition = end;
    }

    /// For a piece that normalisation leaves alone.
    void appendCaseFolded(std::u16string_view piece)
    {
        std::array<char16_t, 8> folded{}; // full case folding makes at most three of one
        UErrorCode status = U_ZERO_ERROR;
        const std::int32_t length
            = u_strFoldCase(folded.data(), static_cast<std::int32_t>(folded.size()), piece.data(),
                static_cast<std::int32_t>(piece.size()), U_FOLD_CASE_DEFAULT, &status);
        append(U_SUCCESS(status)
                ? std::u16string_view(folded.data(), static_cast<std::size_t>(length))
                : piece);
    }

    void appendNormalized(std::u16string_view piece)
    {
        UErrorCode status = U_ZERO_ERROR;
        // ICU takes lengths of 32 bits; fold() sees to it.
        const icu::UnicodeString original(
            false, piece.data(), static_cast<std::int32_t>(piece.size()));
        icu::UnicodeString result = theNormalizer->normalize(original, status);
        if (theOptions == SearchOptions::isIgnoringCase) {
            // Folding can undo the normal form, as of U+0345, so it is made again (Unicode 3.13).
            result.foldCase(U_FOLD_CASE_DEFAULT);
            result = theNormalizer->normalize(result, status);
        }
        if (U_FAILURE(status))
            return append(piece);
        append({result.getBuffer(), static_cast<std::size_t>(result.length())});
    }

    /// For a piece that begins with a presentation form. Forms of marks alone stand on a space.
    void appendLetters(std::u16string_view piece)
    {
        UErrorCode status = U_ZERO_ERROR;
        const icu::UnicodeString original(
            false, piece.data(), static_cast<std::int32_t>(piece.size()));
        const icu::UnicodeString result = theLetterNormalizer->normalize(original, status);
        if (U_FAILURE(status))
            return append(piece);
        const std::u16string_view letters(
            result.getBuffer(), static_cast<std::size_t>(result.length()));
        append(letters.starts_with(u' ') ? letters.substr(1) : letters);
    }

    std::u16string_view theText;
    SearchOptions theOptions;
    FoldedText& theTarget;
    std::size_t thePosition = 0;
    const icu::Normalizer2* theNormalizer = decomposition(false);
    const icu::Normalizer2* theLetterNormalizer = decomposition(true);

public:
    std::size_t position() const { return thePosition; }
};

void FoldedText::fold(std::u16string_view text, SearchOptions options, const std::stop_token& stop)
{
    theUnits.clear();
    thePositions.clear();
    theDetours.clear();
    theUnits.reserve(text.size());
    thePositions.reserve(text.size() + 1);
    // Positions have 32 bits and ICU's lengths 31: no page comes near.
    Folder folder(text.substr(0, std::numeric_limits<std::int32_t>::max()), options, *this);
    std::size_t nextStop = unitsBetweenStops;
    while (!folder.isAtEnd()) {
        folder.foldPiece();
        if (folder.position() < nextStop)
            continue;
        if (stop.stop_requested())
            break;
        nextStop = folder.position() + unitsBetweenStops;
    }
    thePositions.push_back(static_cast<std::uint32_t>(folder.position()));
}

} // namespace tarnwick
