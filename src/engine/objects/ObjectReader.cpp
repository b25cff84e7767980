#include "ObjectReader.h"

#include "Attempt.h"
#include "ObjectEntry.h"
#include "ObjectText.h"
#include "WrittenStream.h"

#include <algorithm>

namespace tarnwick {

namespace {

/// What the dictionary of a stream says of its data.
void readStreamFacts(const EngineDocument& document, pdf_obj* dictionary, ObjectResult& result)
{
    fz_context* const ctx = document.context();
    ObjectText text(document);
    for (const WrittenStream::Filter& filter : readFilters(ctx, dictionary)) {
        std::string parameters;
        if (filter.parameters)
            parameters = text.spelledShort(filter.parameters);
        result.filters.push_back({ObjectText::name(filter.name), std::move(parameters)});
    }
    result.filterCount = countFilters(ctx, dictionary);
    std::int64_t length = -1;
    const int error = attempt(ctx, [&] {
        pdf_obj* const stated = pdf_dict_get(ctx, dictionary, PDF_NAME(Length));
        if (pdf_is_int(ctx, stated))
            length = pdf_to_int64(ctx, stated);
    });
    result.statedLength = error ? -1 : std::max<std::int64_t>(length, -1);
}

} // namespace

int readObject(const EngineDocument& document, int number, ObjectResult& result)
{
    fz_context* const ctx = document.context();
    result = objectEntry(document, number);
    if (result.state != EngineObjectState::isPresent)
        return FZ_ERROR_NONE;
    pdf_obj* object = nullptr;
    fz_var(object);
    bool isStream = false;
    const int error = attempt(ctx, [&] {
        object = pdf_load_object(ctx, document.document(), number);
        isStream = pdf_obj_num_is_stream(ctx, document.document(), number) != 0;
    });
    // Damage that shows only now may have had the library look for all objects anew.
    result = objectEntry(document, number);
    if (error || result.state != EngineObjectState::isPresent) {
        if (error)
            result.state = EngineObjectState::isUnreadable;
        pdf_drop_obj(ctx, object);
        return error == FZ_ERROR_MEMORY ? error : FZ_ERROR_NONE;
    }
    ObjectText text(document);
    result.text = text.spelled(object);
    result.isCut = text.isCut();
    result.isStream = isStream;
    if (isStream)
        readStreamFacts(document, object, result);
    pdf_drop_obj(ctx, object);
    return FZ_ERROR_NONE;
}

} // namespace tarnwick
