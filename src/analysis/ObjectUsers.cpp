#include "analysis/ObjectUsers.h"

#include "RecordCursor.h"
#include "analysis/ReferenceScan.h"
#include "analysis/SourceLexer.h"

#include <algorithm>
#include <bit>
#include <string>
#include <utility>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tarnwick {

namespace {

constexpr std::size_t blockSize = 64;
constexpr std::size_t slice = std::size_t{4} << 20; ///< between two looks at the stop token
constexpr std::size_t progressStep = std::size_t{16} << 20;

/// A bit for each byte of a block that is an "R" behind white space. Precondition: offset > 0.
std::uint64_t portableLetters(std::string_view text, std::size_t offset)
{
    std::uint64_t letters = 0;
    const std::size_t count = std::min(blockSize, text.size() - offset);
    for (std::size_t index = 0; index < count; ++index) {
        if (text[offset + index] == 'R' && isSourceSpace(text[offset + index - 1]))
            letters |= std::uint64_t{1} << index;
    }
    return letters;
}

#if defined(__SSE2__)

/// As above; what is no white space but below the space may count as such.
std::uint64_t lettersOf(std::string_view text, std::size_t offset)
{
    if (text.size() - offset < blockSize)
        return portableLetters(text, offset);
    std::uint64_t letters = 0;
    for (unsigned part = 0; part < blockSize; part += 16) {
        const char* start = text.data() + offset + part;
        const auto load = [](const char* bytes) {
            return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
        };
        const __m128i before = load(start - 1);
        const __m128i isSpace = _mm_cmpeq_epi8(_mm_min_epu8(before, _mm_set1_epi8(' ')), before);
        const __m128i isLetter = _mm_cmpeq_epi8(load(start), _mm_set1_epi8('R'));
        const auto bits
            = static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_and_si128(isSpace, isLetter)));
        letters |= std::uint64_t{bits} << part;
    }
    return letters;
}

#else

std::uint64_t lettersOf(std::string_view text, std::size_t offset)
{
    return portableLetters(text, offset);
}

#endif

/// One search.
class Search
{
public:
    Search(const pdfObjectCatalog& catalog, std::int64_t objNo)
        : theText(catalog.bytes())
        , theNumber(objNo)
        , theDigits(std::to_string(objNo))
        , theCursor(catalog)
    {
    }

    ObjectUses run(const ObjectUsers::Progress& progress, const std::stop_token& stop)
    {
        std::size_t told = 0;
        bool hasToldFirst = false;
        for (std::size_t offset = 1; offset < theText.size();) {
            if (stop.stop_requested())
                return std::move(theUses);
            const std::size_t goal = offset + std::min(slice, theText.size() - offset);
            for (; offset < goal; offset += std::min(blockSize, theText.size() - offset))
                takeBlock(offset);
            const bool isFirst = theUses.count > 0 && !hasToldFirst;
            if (progress && (isFirst || offset - told >= progressStep)) {
                progress(theUses, offset);
                told = offset;
                hasToldFirst = hasToldFirst || isFirst;
            }
        }
        theUses.isComplete = true;
        return std::move(theUses);
    }

private:
    void takeBlock(std::size_t offset)
    {
        for (std::uint64_t bits = lettersOf(theText, offset); bits != 0; bits &= bits - 1) {
            const std::size_t letter = offset + static_cast<std::size_t>(std::countr_zero(bits));
            if (isUsual(letter) ? endsWithNumber(letter - 3) : true)
                takeLetter(letter);
        }
    }

    /// Whether a reference ends here as nearly all are spelled, "17 0 R": with a generation of one
    /// digit between single blanks.
    bool isUsual(std::size_t letter) const
    {
        return letter > 3 && theText[letter - 1] == ' ' && isDecimalDigit(theText[letter - 2])
            && theText[letter - 3] == ' ' && isDecimalDigit(theText[letter - 4]);
    }
    bool endsWithNumber(std::size_t end) const
    {
        return theText[end - 1] == theDigits.back() && end >= theDigits.size()
            && theText.compare(end - theDigits.size(), theDigits.size(), theDigits) == 0;
    }

    void takeLetter(std::size_t letter)
    {
        const std::optional<ScannedReference> found = ReferenceScan::endingAt(theText, letter);
        if (!found || found->objNo != theNumber)
            return;
        if (!theCursor.isCode(found->begin))
            return;
        ++theUses.count;
        if (theUses.uses.size() < ObjectUses::mostKept)
            theUses.uses.push_back({found->begin, found->objGen, theCursor.owner(found->begin)});
    }

    std::string_view theText;
    std::int64_t theNumber;
    std::string theDigits;
    RecordCursor theCursor;
    ObjectUses theUses;
};

} // namespace

ObjectUses ObjectUsers::find(
    std::int64_t objNo, const Progress& progress, std::stop_token stop) const
{
    return Search(theCatalog, objNo).run(progress, stop);
}

} // namespace tarnwick
