#include "FindingList.h"
#include "analysis/ObjectSource.h"
#include "analysis/SourceLexer.h"
#include "analysis/StrayBytes.h"
#include "analysis/StructureWords.h"

#include <algorithm>
#include <set>

namespace tarnwick {

namespace {

/// Looks at everything that says where something stands: startxref, tables, Prev.
class CrossReferences
{
public:
    CrossReferences(const pdfObjectCatalog& catalog, FindingList& list)
        : theCatalog(catalog)
        , theBytes(catalog.bytes())
        , theList(list)
        , theHeader(findStrayBytes(theBytes).header.value_or(0))
    {
    }

    void check()
    {
        std::optional<std::size_t> last;
        for (std::size_t word = theBytes.find(LineWord::xref); word != std::string_view::npos;
             word = theBytes.find(LineWord::xref, word + 1)) {
            const std::size_t start = startOfWord(word);
            if (start < word && isStartxref(start) && !theCatalog.recordAt(start)) {
                last = checkStartxref(start);
                theHasStartxref = true;
            } else if (start == word && isWholeWord(word) && !theCatalog.recordAt(word)) {
                checkTable(word);
            }
        }
        if (!theHasStartxref)
            theList.add(FindingCode::isNoStartxref, theBytes.size(), std::nullopt,
                "The file has no startxref, from which its objects are found.");
        if (last)
            followPrev(*last);
    }

private:
    std::size_t startOfWord(std::size_t word) const
    {
        constexpr std::string_view before = "start";
        return word >= before.size() && theBytes.substr(word - before.size()).starts_with(before)
            ? word - before.size()
            : word;
    }
    bool isStartxref(std::size_t start) const
    {
        return theBytes.substr(start).starts_with(LineWord::startxref);
    }
    bool isWholeWord(std::size_t word) const
    {
        const std::size_t end = word + std::string_view(LineWord::xref).size();
        return (word == 0 || isSourceSpace(theBytes[word - 1]))
            && (end == theBytes.size() || isSourceSpace(theBytes[end]));
    }

    /// Where a cross-reference stands that is said to be at an offset: there, or as far behind as
    /// the header is behind the file's start, since many count from the header.
    std::optional<std::size_t> crossReferenceAt(std::int64_t said)
    {
        if (said < 0 || static_cast<std::uint64_t>(said) >= theBytes.size())
            return std::nullopt;
        const auto offset = static_cast<std::size_t>(said);
        for (const std::size_t place : {offset, offset + theHeader}) {
            std::size_t begin = place;
            while (begin < theBytes.size() && isSourceSpace(theBytes[begin]))
                ++begin;
            if (begin >= theBytes.size())
                continue;
            if (theBytes.substr(begin).starts_with(LineWord::xref) || isStreamAt(begin))
                return begin;
        }
        return std::nullopt;
    }

    /// What the last object was is kept: millions of places may lead into one of 64 KB.
    bool isStreamAt(std::size_t offset)
    {
        const std::optional<pdfObject> object = theCatalog.recordAt(offset);
        if (!object || !headerAt(theBytes, offset))
            return false;
        if (theLastObject != object->range().begin) {
            theLastObject = object->range().begin;
            isLastStream = ObjectSource(theBytes, object->range()).name("Type") == "XRef";
        }
        return isLastStream;
    }

    /// @returns where the cross-reference stands that it leads to.
    std::optional<std::size_t> checkStartxref(std::size_t word)
    {
        const std::size_t begin = word + std::string_view(LineWord::startxref).size();
        SourceLexer lexer(
            theBytes, begin, begin + std::min<std::size_t>(64, theBytes.size() - begin));
        const SourceToken number = lexer.next();
        const bool isNumber = number.kind == TokenKind::isInteger;
        const std::optional<std::size_t> target
            = isNumber ? crossReferenceAt(number.number) : std::nullopt;
        // The one that a linearized file has near its beginning may say 0.
        if (target || (isNumber && number.number == 0 && !isLast(word)))
            return target;
        theList.add(FindingCode::isStartxrefElsewhere, word, std::nullopt,
            isNumber ? "startxref says " + std::to_string(number.number)
                    + ", where no cross-reference stands."
                     : "startxref is not followed by a number.");
        return std::nullopt;
    }

    bool isLast(std::size_t word) const
    {
        return theBytes.find(LineWord::startxref, word + 1) == std::string_view::npos;
    }

    /// Subsections, each with the number of its first object and a count, until something else.
    void checkTable(std::size_t word)
    {
        SourceLexer lexer(theBytes, word + 4, theBytes.size());
        for (;;) {
            const SourceToken first = lexer.next();
            if (first.kind != TokenKind::isInteger)
                return checkTrailer(word, first.begin);
            const SourceToken count = lexer.next();
            if (count.kind != TokenKind::isInteger)
                return broken(word, first.begin, "a line that is no head of a subsection");
            for (std::int64_t entry = 0; entry < count.number; ++entry) {
                const SourceToken offset = lexer.next();
                const SourceToken generation = lexer.next();
                const SourceToken use = lexer.next();
                const char letter = use.end - use.begin == 1 ? theBytes[use.begin] : '\0';
                if (offset.kind != TokenKind::isInteger || generation.kind != TokenKind::isInteger
                    || (letter != 'n' && letter != 'f'))
                    return broken(word, offset.begin,
                        "behind " + std::to_string(entry) + " of " + std::to_string(count.number)
                            + " entries something that is none");
                if (letter == 'n')
                    checkEntry(offset, first.number + entry, generation.number);
            }
        }
    }

    /// @param begin of what follows the table.
    void checkTrailer(std::size_t table, std::size_t begin)
    {
        if (!theBytes.substr(begin).starts_with(LineWord::trailer))
            return;
        const std::optional<std::int64_t> stream
            = ObjectSource(theBytes, {begin, theBytes.size()}).integer("XRefStm");
        if (stream)
            theList.add(FindingCode::isHybrid, begin, std::nullopt,
                "The cross-reference table at offset " + std::to_string(table)
                    + " goes with a stream at offset " + std::to_string(*stream)
                    + ", whose objects are hidden from readers that know tables alone.");
    }

    void broken(std::size_t table, std::size_t offset, const std::string& what)
    {
        theList.add(FindingCode::isTableBroken, offset, std::nullopt,
            "The cross-reference table at offset " + std::to_string(table) + " has " + what + '.');
    }

    void checkEntry(const SourceToken& entry, std::int64_t objNo, std::int64_t objGen)
    {
        std::optional<PlacedHeader> there;
        for (const std::size_t shift : {std::size_t{0}, theHeader}) {
            if (entry.number < 0 || static_cast<std::uint64_t>(entry.number) >= theBytes.size())
                break;
            there = headerAt(theBytes, static_cast<std::size_t>(entry.number) + shift);
            if (there && there->objNo == objNo && there->objGen == objGen)
                return;
        }
        theList.add(FindingCode::isTableEntryElsewhere, entry.begin, std::nullopt,
            "The cross-reference table says that " + objectName(objNo, objGen) + " is at offset "
                + std::to_string(entry.number) + ", where "
                + (there ? objectName(there->objNo, there->objGen) : "no object") + " stands.");
    }

    /// What a cross-reference says of the one before it. A table's trailer has no record where
    /// another table follows it, as in files for readers with and without cross-reference streams.
    std::optional<std::int64_t> prevOf(std::size_t offset) const
    {
        if (theBytes.substr(offset).starts_with(LineWord::xref)) {
            const std::size_t trailer = theBytes.find(LineWord::trailer, offset);
            if (trailer == std::string_view::npos)
                return std::nullopt;
            return ObjectSource(theBytes, {trailer, theBytes.size()}).integer("Prev");
        }
        const std::optional<pdfObject> stream = theCatalog.recordAt(offset);
        return stream ? ObjectSource(theBytes, stream->range()).integer("Prev") : std::nullopt;
    }

    void followPrev(std::size_t start)
    {
        std::set<std::size_t> seen;
        std::size_t offset = start;
        while (seen.insert(offset).second) {
            const std::optional<std::int64_t> prev = prevOf(offset);
            if (!prev)
                return;
            const std::optional<std::size_t> target = crossReferenceAt(*prev);
            if (!target) {
                theList.add(FindingCode::isPrevElsewhere, offset, std::nullopt,
                    "Prev says " + std::to_string(*prev)
                        + ", where no cross-reference stands: what earlier saves hold is not "
                          "found.");
                return;
            }
            offset = *target;
        }
        theList.add(FindingCode::isPrevLoop, offset, std::nullopt,
            "The cross-references lead to each other in a ring, by way of Prev.");
    }

    const pdfObjectCatalog& theCatalog;
    std::string_view theBytes;
    FindingList& theList;
    std::size_t theHeader; ///< where %PDF- stands
    bool theHasStartxref = false;
    std::optional<std::size_t> theLastObject; ///< start of the object last looked into
    bool isLastStream = false;
};

} // namespace

void checkCrossReferences(const pdfObjectCatalog& catalog, FindingList& list)
{
    CrossReferences(catalog, list).check();
}

} // namespace tarnwick
