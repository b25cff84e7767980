#include "viewer/FoldedText.h"

#include <unicode/normalizer2.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <array>
#include <limits>

namespace {

constexpr std::size_t unitsBetweenStops = 1 << 16;
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

const icu::Normalizer2* canonicalDecomposition()
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* normalizer = icu::Normalizer2::getNFDInstance(status);
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
        if (isBlank(unit) || isLineEnd(unit))
            foldWhiteSpace();
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

    void foldWhiteSpace()
    {
        std::size_t end = thePosition;
        bool hasLineEnd = false;
        for (; end < theText.size() && (isBlank(theText[end]) || isLineEnd(theText[end])); ++end)
            hasLineEnd = hasLineEnd || isLineEnd(theText[end]);
        if (hasLineEnd)
            append(u' ');
        for (; !hasLineEnd && thePosition < end; ++thePosition)
            append(theText[thePosition]);
        thePosition = end;
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
        const bool isPlain = end == nextCodePoint(thePosition)
            && theNormalizer->isInert(static_cast<UChar32>(codePoint(thePosition)));
        if (!isPlain)
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

    std::u16string_view theText;
    SearchOptions theOptions;
    FoldedText& theTarget;
    std::size_t thePosition = 0;
    const icu::Normalizer2* theNormalizer = canonicalDecomposition();

public:
    std::size_t position() const { return thePosition; }
};

void FoldedText::fold(std::u16string_view text, SearchOptions options, const std::stop_token& stop)
{
    theUnits.clear();
    thePositions.clear();
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
