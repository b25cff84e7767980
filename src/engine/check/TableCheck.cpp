#include "TableCheck.h"

#include "Attempt.h"
#include "analysis/SourceLexer.h"
#include "analysis/StrayBytes.h"

#include <algorithm>
#include <vector>

namespace tarnwick {

namespace {

/// Whether the header of an object stands at an offset, or behind white space there.
bool standsAt(std::string_view bytes, std::int64_t offset, int number)
{
    constexpr std::size_t longest = 64;
    if (offset < 0 || static_cast<std::uint64_t>(offset) >= bytes.size())
        return false;
    const auto begin = static_cast<std::size_t>(offset);
    SourceLexer lexer(bytes, begin, begin + std::min(longest, bytes.size() - begin));
    const SourceToken first = lexer.next();
    const SourceToken second = lexer.next();
    const SourceToken word = lexer.next();
    return first.kind == TokenKind::isInteger && first.number == number
        && second.kind == TokenKind::isInteger && word.kind == TokenKind::isKeyword
        && bytes.substr(word.begin, word.end - word.begin).starts_with("obj");
}

/// The file's table, entry by entry.
class TableWalk
{
public:
    TableWalk(const EngineDocument& document, CheckNotes& notes)
        : theContext(document.context())
        , theFile(document.document())
        , theBytes(document.bytes())
        , theNotes(notes)
        , theHasStreams(
              document.repair() == EngineDocument::Repair::isNone && theFile->has_xref_streams != 0)
        , theHeader(static_cast<std::int64_t>(findStrayBytes(theBytes).header.value_or(0)))
    {
    }

    void walk(CheckResult& result)
    {
        int length = 0;
        if (attempt(theContext, [&] { length = pdf_xref_len(theContext, theFile); }) != 0)
            return;
        std::vector<bool> containers;
        for (int number = 1; number < length; ++number) {
            const pdf_xref_entry* entry = nullptr;
            const int error = attempt(theContext,
                [&] { entry = pdf_get_xref_entry_no_null(theContext, theFile, number); });
            if (error || !entry)
                continue;
            if (entry->type == 'o' && entry->ofs > 0 && entry->ofs < length) {
                ++result.members;
                containers.resize(static_cast<std::size_t>(length));
                containers[static_cast<std::size_t>(entry->ofs)] = true;
            } else if (entry->type == 'n' && theHasStreams) {
                checkEntry(*entry, number);
            }
        }
        result.objectStreams
            = static_cast<int>(std::count(containers.begin(), containers.end(), true));
    }

private:
    /// One that says 0 is of an object in memory, or leads nowhere for every reader.
    void checkEntry(const pdf_xref_entry& entry, int number)
    {
        if (entry.ofs <= 0 || standsAt(theBytes, entry.ofs, number)
            || standsAt(theBytes, entry.ofs + theHeader, number) || !isOfStream(number))
            return;
        EngineFinding finding;
        finding.code = EngineFindingCode::isEntryElsewhere;
        finding.object = number;
        finding.said = entry.ofs;
        theNotes.add(finding);
    }

    /// Whether a cross-reference stream has the entry. A section with a table of its own and a
    /// stream besides counts as a table.
    bool isOfStream(int number)
    {
        const int section = theFile->xref_index && number < theFile->max_xref_len
            ? theFile->xref_index[number]
            : -1;
        if (section < 0 || section >= theFile->num_xref_sections)
            return false;
        bool isStream = false;
        const int error = attempt(theContext, [&] {
            pdf_obj* const type
                = pdf_dict_get(theContext, theFile->xref_sections[section].trailer, PDF_NAME(Type));
            isStream = pdf_name_eq(theContext, type, PDF_NAME(XRef)) != 0;
        });
        return !error && isStream;
    }

    fz_context* theContext;
    pdf_document* theFile;
    std::string_view theBytes;
    CheckNotes& theNotes;
    bool theHasStreams;
    std::int64_t theHeader; ///< where it stands: many writers count from there
};

} // namespace

void checkTable(const EngineDocument& document, CheckNotes& notes, CheckResult& result)
{
    TableWalk(document, notes).walk(result);
}

} // namespace tarnwick
