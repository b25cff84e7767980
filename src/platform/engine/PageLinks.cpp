#include "platform/engine/PageLinks.h"

#include "platform/engine/Attempt.h"
#include "platform/engine/PageGeometry.h"

#include <cmath>

namespace {

constexpr std::uint32_t maximumLinks = 20'000;
constexpr std::uint32_t maximumEntries = 100'000;
constexpr int maximumDepth = 64;
constexpr std::size_t longestText = 4096;

std::string_view shortened(const char* text)
{
    std::string_view view = text ? std::string_view(text) : std::string_view();
    return view.substr(0, longestText);
}

float sound(float number)
{
    return std::isfinite(number) ? number : 0;
}

/// Where an address of MuPDF's leads: "#page=..." within the document, anything else outside.
void putTarget(const EngineDocument& document, const char* address, PayloadWriter& result)
{
    fz_context* const ctx = document.context();
    int page = -1;
    fz_link_dest target = {};
    bool isOutside = false;
    const int error = attempt(ctx, [&] {
        isOutside = address && fz_is_external_link(ctx, address);
        if (!address || isOutside)
            return;
        target = pdf_resolve_link_dest(ctx, document.document(), address);
        page = target.loc.page;
    });
    if (error || page < 0 || page >= document.pageCount())
        page = -1;
    result.put(page);
    result.put(page < 0 ? 0.0f : sound(target.x));
    result.put(page < 0 ? 0.0f : sound(target.y));
    result.putText(isOutside ? shortened(address) : std::string_view());
}

/// Walks an outline without recursion; the tree was built by MuPDF, which cuts its cycles.
class OutlineWriter
{
public:
    explicit OutlineWriter(const EngineDocument& document)
        : theDocument(document)
    {
    }
    void add(const fz_outline* first)
    {
        const fz_outline* branch[maximumDepth] = {first};
        int depth = 0;
        while (depth >= 0 && theCount < maximumEntries) {
            const fz_outline* entry = branch[depth];
            if (!entry) {
                --depth;
                continue;
            }
            branch[depth] = entry->next;
            put(*entry, depth);
            if (entry->down && depth + 1 < maximumDepth)
                branch[++depth] = entry->down;
        }
    }
    void write(PayloadWriter& result) const
    {
        result.put(theCount);
        result.putBytes(theEntries.bytes().data(), theEntries.bytes().size());
    }

private:
    void put(const fz_outline& entry, int depth)
    {
        ++theCount;
        theEntries.put(depth);
        theEntries.putText(shortened(entry.title));
        putTarget(theDocument, entry.uri, theEntries);
    }

    const EngineDocument& theDocument;
    std::uint32_t theCount = 0;
    PayloadWriter theEntries;
};

} // namespace

int readLinks(const EngineDocument& document, int page, PayloadWriter& result)
{
    fz_context* const ctx = document.context();
    const LoadedPage loaded(document, page);
    if (!loaded.page())
        return loaded.error();
    fz_link* links = nullptr;
    const int error = attempt(ctx, [&] { links = pdf_load_links(ctx, loaded.page()); });
    if (error)
        return error;
    PayloadWriter items;
    std::uint32_t count = 0;
    for (const fz_link* link = links; link && count < maximumLinks; link = link->next, ++count) {
        for (const float edge : {link->rect.x0, link->rect.y0, link->rect.x1, link->rect.y1})
            items.put(sound(edge));
        putTarget(document, link->uri, items);
    }
    fz_drop_link(ctx, links);
    result.put(count);
    result.putBytes(items.bytes().data(), items.bytes().size());
    return FZ_ERROR_NONE;
}

int readOutline(const EngineDocument& document, PayloadWriter& result)
{
    fz_context* const ctx = document.context();
    fz_outline* outline = nullptr;
    const int error = attempt(ctx, [&] { outline = pdf_load_outline(ctx, document.document()); });
    if (error)
        return error;
    OutlineWriter writer(document);
    writer.add(outline);
    writer.write(result);
    fz_drop_outline(ctx, outline);
    return FZ_ERROR_NONE;
}
