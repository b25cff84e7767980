#include "ObjectEntry.h"

#include "Attempt.h"

#include <algorithm>
#include <string>

namespace tarnwick {

namespace {

struct Entry
{
    char type = 0;
    int generation = 0;
    std::int64_t offset = 0;
};

/// All zero without one.
Entry entryOf(const EngineDocument& document, int number)
{
    fz_context* const ctx = document.context();
    Entry found;
    const int error = attempt(ctx, [&] {
        if (number < 0 || number >= pdf_xref_len(ctx, document.document()))
            return;
        const pdf_xref_entry* const entry
            = pdf_get_xref_entry_no_null(ctx, document.document(), number);
        if (entry)
            found = {entry->type, entry->gen, entry->ofs};
    });
    return error ? Entry() : found;
}

/// An object that was made in memory has no offset. In a file without a header one may begin at 0.
bool isMade(const EngineDocument& document, int number, const Entry& entry)
{
    return entry.type == 'n' && entry.offset <= 0
        && !document.bytes().starts_with(std::to_string(number) + " ");
}

int bounded(std::int64_t number, int most)
{
    return static_cast<int>(std::clamp<std::int64_t>(number, 0, most));
}

} // namespace

bool isMadeHere(const EngineDocument& document, int number)
{
    return isMade(document, number, entryOf(document, number));
}

pdf_obj* valueMadeHere(const EngineDocument& document, pdf_obj* reference)
{
    fz_context* const ctx = document.context();
    if (!isMadeHere(document, pdf_to_num(ctx, reference)))
        return nullptr;
    pdf_obj* value = nullptr;
    const int error = attempt(ctx, [&] { value = pdf_resolve_indirect(ctx, reference); });
    return error || pdf_is_indirect(ctx, value) ? nullptr : value;
}

ObjectResult objectEntry(const EngineDocument& document, int number)
{
    const Entry entry = entryOf(document, number);
    ObjectResult result;
    switch (entry.type) {
    case 'f':
        result.state = EngineObjectState::isFree;
        result.generation = bounded(entry.generation, 65535);
        break;
    case 'n':
        if (isMade(document, number, entry))
            break;
        result.state = EngineObjectState::isPresent;
        result.generation = bounded(entry.generation, 65535);
        result.offset = static_cast<std::uint64_t>(entry.offset);
        break;
    case 'o':
        result.state = EngineObjectState::isPresent;
        result.container = bounded(entry.offset, maximumObjectNumber);
        result.index = bounded(entry.generation, maximumObjectNumber);
        break;
    default:
        break;
    }
    return result;
}

} // namespace tarnwick
