#include "TableReader.h"

#include "Attempt.h"
#include "ObjectEntry.h"
#include "analysis/ObjectKind.h"

#include <algorithm>

namespace tarnwick {

namespace {

/// Bytes of objects that are looked at in one go.
constexpr std::size_t mostSpelled = 16u << 20;

/// The numbers that a value refers to; others than any object has are left out.
std::vector<std::uint32_t> referencesIn(std::string_view text)
{
    std::vector<std::uint32_t> numbers;
    SourceLexer lexer(text, 0, text.size());
    for (SourceToken token = lexer.next(); token.kind != TokenKind::isEnd; token = lexer.next()) {
        if (token.kind == TokenKind::isReference && token.number > 0
            && token.number <= maximumObjectNumber)
            numbers.push_back(static_cast<std::uint32_t>(token.number));
    }
    return numbers;
}

} // namespace

TableReader::TableReader(const EngineDocument& document)
    : theDocument(document)
    , theContext(document.context())
    , theText(document)
{
}

/// A table that turns out to be of no use on the way is told from the beginning of the portion on.
int TableReader::read(int first, TableResult& result)
{
    const int marked
        = attempt(theContext, [&] { pdf_mark_xref(theContext, theDocument.document()); });
    const bool wasRepairedBefore = wasRepaired();
    int error = readRows(first, result);
    if (!error && wasRepaired() != wasRepairedBefore)
        error = readRows(first, result);
    result.wasRepaired = wasRepaired();
    const int cleared = attempt(theContext, [&] {
        if (marked == FZ_ERROR_NONE)
            pdf_clear_xref_to_mark(theContext, theDocument.document());
    });
    return error ? error : cleared == FZ_ERROR_MEMORY ? cleared : FZ_ERROR_NONE;
}

int TableReader::readRows(int first, TableResult& result)
{
    theContainers.clear();
    theKinds.clear();
    theRows.clear();
    theReferences.clear();
    theSpelled = 0;
    theIsCut = false;
    findSections();
    const int length
        = std::clamp(pdf_xref_len(theContext, theDocument.document()), 0, maximumObjectNumber + 1);
    int number = std::max(first, 1); // 0 is where the list of free numbers begins
    for (; number < length && theRows.size() < maximumTableRows && !theError; ++number) {
        const Entry entry = entryOf(number);
        EngineTableRow row = rowOf(number, entry);
        if (row.container > 0 && !takeMember(entry, row))
            break;
        if (row.state != static_cast<std::uint8_t>(EngineObjectState::isMissing))
            theRows.push_back(row);
    }
    result.length = length;
    result.next = std::min(number, length);
    result.isCut = theIsCut;
    result.rows = std::move(theRows);
    result.references = std::move(theReferences);
    result.kinds.assign(theKinds.size(), {});
    for (const auto& [name, place] : theKinds)
        result.kinds[place].name = name;
    if (first == 0)
        readRoots(result);
    return theError;
}

bool TableReader::wasRepaired() const
{
    bool repaired = false;
    const int error = attempt(
        theContext, [&] { repaired = pdf_was_repaired(theContext, theDocument.document()) != 0; });
    return error || repaired;
}

TableReader::Entry TableReader::entryOf(int number) const
{
    Entry found;
    const int error = attempt(theContext, [&] {
        const pdf_xref_entry* const entry
            = pdf_get_xref_entry_no_null(theContext, theDocument.document(), number);
        if (entry)
            found = {entry->type, entry->gen, entry->ofs, entry->obj != nullptr};
    });
    return error ? Entry() : found;
}

EngineTableRow TableReader::rowOf(int number, const Entry& entry) const
{
    EngineTableRow row;
    row.number = static_cast<std::uint32_t>(number);
    const ObjectResult place = objectEntry(theDocument, number);
    row.generation = static_cast<std::uint16_t>(place.generation);
    row.container = static_cast<std::uint32_t>(place.container);
    row.index = static_cast<std::uint32_t>(place.index);
    row.offset = entry.type == 'f' ? sectionOf(number) : place.offset;
    EngineObjectState state = place.state;
    const bool isOutside = row.offset >= theDocument.bytes().size();
    if (isOutside) {
        row.offset = 0;
        if (state == EngineObjectState::isPresent)
            state = EngineObjectState::isUnreadable;
    }
    if (entry.type == 'o' && row.container == 0)
        state = EngineObjectState::isUnreadable;
    row.state = static_cast<std::uint8_t>(state);
    return row;
}

/// The library keeps a table for each save, the last one first, and each leads to the one before
/// it. One table alone that has another before it is made of several.
void TableReader::findSections()
{
    const pdf_document* const file = theDocument.document();
    theSections.clear();
    if (wasRepaired())
        return;
    std::int64_t begin = file->startxref;
    for (int section = 0; section < file->num_xref_sections; ++section) {
        theSections.push_back(static_cast<std::uint64_t>(std::max<std::int64_t>(begin, 0)));
        begin = 0;
        const int error = attempt(theContext, [&] {
            begin = pdf_to_int64(theContext,
                pdf_dict_get(theContext, file->xref_sections[section].trailer, PDF_NAME(Prev)));
        });
        if (error)
            begin = 0;
    }
    if (theSections.size() == 1 && begin > 0)
        theSections.clear();
}

std::uint64_t TableReader::sectionOf(int number) const
{
    const pdf_document* const file = theDocument.document();
    if (number >= file->max_xref_len || !file->xref_index)
        return 0;
    const auto section = static_cast<std::size_t>(std::max(file->xref_index[number], 0));
    return section < theSections.size() ? theSections[section] : 0;
}

/// @returns false where there is no room left: the next portion begins with it.
bool TableReader::takeMember(const Entry& entry, EngineTableRow& row)
{
    if (theSpelled >= mostSpelled)
        return false;
    // Unpacking an object stream brings all that it holds: what is not there then is not in it.
    const bool isThere = entry.isLoaded || theContainers.insert(entry.offset).second;
    const std::string text = isThere ? spelled(static_cast<int>(row.number)) : std::string();
    if (text.empty()) {
        row.state = static_cast<std::uint8_t>(EngineObjectState::isUnreadable);
        return true;
    }
    theSpelled += text.size();
    std::vector<std::uint32_t> numbers = referencesIn(text);
    const std::size_t room = maximumTableReferences - theReferences.size();
    const std::size_t kind = kindOf(text);
    if ((numbers.size() > room || kind >= maximumTableKinds) && !theRows.empty())
        return false;
    theIsCut = theIsCut || theText.isCut() || numbers.size() > room;
    numbers.resize(std::min(numbers.size(), room));
    row.kind = static_cast<std::uint16_t>(kind);
    row.references = static_cast<std::uint32_t>(numbers.size());
    theReferences.insert(theReferences.end(), numbers.begin(), numbers.end());
    return true;
}

/// What an object says, after "obj"; empty where there is none.
std::string TableReader::spelled(int number)
{
    pdf_obj* object = nullptr;
    fz_var(object);
    const int error = attempt(
        theContext, [&] { object = pdf_load_object(theContext, theDocument.document(), number); });
    if (error == FZ_ERROR_MEMORY)
        theError = error;
    if (error || !object)
        return {};
    std::string text = "obj " + theText.spelled(object);
    pdf_drop_obj(theContext, object);
    return text;
}

std::size_t TableReader::kindOf(const std::string& text)
{
    const ObjectSource source(text, {0, text.size()});
    const auto [place, isNew] = theKinds.emplace(objectKind(text, source), theKinds.size());
    const std::size_t kind = place->second;
    if (isNew && kind >= maximumTableKinds)
        theKinds.erase(place);
    return kind;
}

void TableReader::readRoots(TableResult& result)
{
    const std::string text = theText.spelled(pdf_trailer(theContext, theDocument.document()));
    std::vector<std::uint32_t> numbers = referencesIn(text);
    numbers.resize(std::min(numbers.size(), maximumTableReferences));
    result.roots = std::move(numbers);
}

} // namespace tarnwick
