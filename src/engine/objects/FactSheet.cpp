#include "FactSheet.h"

#include <algorithm>

namespace tarnwick {

namespace {

constexpr std::size_t longestValue = 200; ///< characters of a value before it is cut

} // namespace

void FactSheet::add(EngineFactKind kind, std::string_view text)
{
    if (!text.empty())
        theResult.facts.push_back({kind, std::string(text)});
}

void FactSheet::addCount(EngineFactKind kind, std::int64_t count, std::string_view word)
{
    add(kind, std::to_string(count) + (word.empty() ? "" : " ") + std::string(word));
}

void FactSheet::addValue(EngineFactKind kind, const ObjectView& value)
{
    if (!value.isNone())
        add(kind, valueText(value));
}

std::string FactSheet::valueText(const ObjectView& value)
{
    const auto cut = [](std::string text) {
        if (text.size() > longestValue)
            text = text.substr(0, longestValue) + "...";
        return text;
    };
    std::string text = cut(theText.spelledShort(value.object()));
    if (value.isReference() && !value.isStream()) {
        fz_context* const ctx = theDocument.context();
        pdf_obj* resolved = nullptr;
        const int error
            = attempt(ctx, [&] { resolved = pdf_resolve_indirect_chain(ctx, value.object()); });
        if (!error && resolved && !pdf_is_indirect(ctx, resolved))
            text += ": " + cut(theText.spelledShort(resolved));
    }
    return text;
}

std::string decodedBeginning(const EngineDocument& document, int number, std::size_t limit)
{
    fz_context* const ctx = document.context();
    std::string bytes;
    fz_stream* stream = nullptr;
    if (attempt(ctx, [&] { stream = pdf_open_stream_number(ctx, document.document(), number); }))
        return bytes;
    while (bytes.size() < limit) {
        std::size_t got = 0;
        if (attempt(ctx, [&] { got = fz_available(ctx, stream, limit - bytes.size()); }) != 0
            || got == 0)
            break;
        got = std::min(got, limit - bytes.size());
        bytes.append(reinterpret_cast<const char*>(stream->rp), got);
        stream->rp += got;
    }
    fz_drop_stream(ctx, stream);
    return bytes;
}

} // namespace tarnwick
