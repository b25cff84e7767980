#include "analysis/ObjectUsers.h"

#include "RecordCursor.h"
#include "ReferenceLetters.h"
#include "analysis/ReferenceScan.h"
#include "analysis/SourceLexer.h"

#include <algorithm>
#include <bit>
#include <string>
#include <utility>

namespace tarnwick {

namespace {

constexpr std::size_t slice = std::size_t{4} << 20; ///< between two looks at the stop token
constexpr std::size_t progressStep = std::size_t{16} << 20;

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
            for (; offset < goal; offset += std::min(letterBlock, theText.size() - offset))
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
        for (std::uint64_t bits = referenceLetters(theText, offset); bits != 0; bits &= bits - 1) {
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
