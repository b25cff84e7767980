#include "platform/engine/UnreadObjects.h"

#include "platform/engine/Attempt.h"

bool isUnreadable(const EngineDocument& document, int number)
{
    fz_context* const ctx = document.context();
    pdf_document* const file = document.document();
    bool stands = false;
    const int error = attempt(ctx, [&] {
        if (number <= 0 || number >= pdf_xref_len(ctx, file))
            return;
        const pdf_xref_entry* const entry = pdf_get_xref_entry_no_null(ctx, file, number);
        stands = entry && (entry->type == 'n' || entry->type == 'o');
    });
    return !error && stands && attempt(ctx, [&] { pdf_cache_object(ctx, file, number); }) != 0;
}

namespace {

/// Counts the parts of a page's content, and those of them that cannot be read.
struct ContentCount
{
    int parts = 0;
    int lost = 0;

    void add(const EngineDocument& document, pdf_obj* part)
    {
        ++parts;
        if (isUnreadable(document, pdf_to_num(document.context(), part)))
            ++lost;
    }
};

} // namespace

EngineLoss contentLoss(const EngineDocument& document, pdf_obj* page)
{
    fz_context* const ctx = document.context();
    pdf_obj* contents = nullptr;
    int length = 0;
    const int error = attempt(ctx, [&] {
        contents = pdf_dict_get(ctx, page, PDF_NAME(Contents));
        length = pdf_array_len(ctx, contents);
    });
    if (error || !contents)
        return EngineLoss::isNone;
    ContentCount count;
    if (length == 0)
        count.add(document, contents);
    for (int index = 0; index < length; ++index) {
        pdf_obj* part = nullptr;
        if (attempt(ctx, [&] { part = pdf_array_get(ctx, contents, index); }) == 0)
            count.add(document, part);
    }
    if (count.lost == 0)
        return EngineLoss::isNone;
    return count.lost == count.parts ? EngineLoss::isDamaged : EngineLoss::isDamagedInPart;
}
