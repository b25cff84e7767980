#include "UnreadObjects.h"

#include "Attempt.h"

namespace tarnwick {

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
        fz_context* const ctx = document.context();
        bool isOther = false;
        const int error
            = attempt(ctx, [&] { isOther = !pdf_is_null(ctx, part) && !pdf_is_stream(ctx, part); });
        ++parts;
        if (error || isOther || isUnreadable(document, pdf_to_num(ctx, part)))
            ++lost;
    }
};

} // namespace

EngineLoss contentLoss(const EngineDocument& document, pdf_obj* page)
{
    fz_context* const ctx = document.context();
    pdf_obj* contents = nullptr;
    bool isArray = false;
    int length = 0;
    const int error = attempt(ctx, [&] {
        contents = pdf_dict_get(ctx, page, PDF_NAME(Contents));
        isArray = pdf_is_array(ctx, contents);
        length = pdf_array_len(ctx, contents);
    });
    if (error || !contents)
        return EngineLoss::isNone;
    ContentCount count;
    if (!isArray)
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

} // namespace tarnwick
