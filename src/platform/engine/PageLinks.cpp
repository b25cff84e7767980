#include "platform/engine/PageLinks.h"

#include "platform/engine/Attempt.h"
#include "platform/engine/PageGeometry.h"

#include <cmath>

namespace {

/// The beginning of a text that an answer may hold, whole characters of UTF-8.
std::string_view shortened(const char* text)
{
    const std::string_view view = text ? std::string_view(text) : std::string_view();
    if (view.size() <= longestTargetText)
        return view;
    std::size_t end = longestTargetText;
    while (end > longestTargetText - 4 && (static_cast<unsigned char>(view[end]) & 0xc0u) == 0x80u)
        --end;
    return view.substr(0, end);
}

/// Puts a title or an address and counts its bytes.
void putTargetText(std::string_view text, std::size_t& targetTexts, PayloadWriter& result)
{
    result.putText(text);
    targetTexts += text.size();
}

/// Whether an answer that holds so many bytes of titles and addresses may have one of each more.
bool hasRoom(std::size_t targetTexts)
{
    return targetTexts + 2 * longestTargetText <= maximumTargetTexts;
}

float sound(float number)
{
    return std::isfinite(number) ? number : 0;
}

/// Where an address of MuPDF's leads: "#page=..." within the document, anything else outside.
void putTarget(const EngineDocument& document, const char* address, std::size_t& targetTexts,
    PayloadWriter& result)
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
    putTargetText(isOutside ? shortened(address) : std::string_view(), targetTexts, result);
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
        const fz_outline* branch[maximumOutlineDepth] = {first};
        int depth = 0;
        while (depth >= 0) {
            const fz_outline* entry = branch[depth];
            if (!entry) {
                --depth;
                continue;
            }
            if (theCount == maximumOutlineEntries || !hasRoom(theTargetTexts)) {
                theOutlineIsCut = true;
                return;
            }
            branch[depth] = entry->next;
            put(*entry, depth);
            if (!entry->down)
                continue;
            if (depth + 1 < maximumOutlineDepth)
                branch[++depth] = entry->down;
            else
                theOutlineIsCut = true;
        }
    }
    void write(PayloadWriter& result) const
    {
        result.put(static_cast<std::uint8_t>(theOutlineIsCut));
        result.put(theCount);
        result.putBytes(theEntries.bytes().data(), theEntries.bytes().size());
    }

private:
    void put(const fz_outline& entry, int depth)
    {
        ++theCount;
        theEntries.put(depth);
        putTargetText(shortened(entry.title), theTargetTexts, theEntries);
        putTarget(theDocument, entry.uri, theTargetTexts, theEntries);
    }

    const EngineDocument& theDocument;
    bool theOutlineIsCut = false;
    std::uint32_t theCount = 0;
    std::size_t theTargetTexts = 0;
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
    std::size_t targetTexts = 0;
    for (const fz_link* link = links; link && count < maximumLinks && hasRoom(targetTexts);
         link = link->next, ++count) {
        for (const float edge : {link->rect.x0, link->rect.y0, link->rect.x1, link->rect.y1})
            items.put(sound(edge));
        putTarget(document, link->uri, targetTexts, items);
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
