#include "PageLinks.h"

#include "Attempt.h"
#include "PageGeometry.h"
#include "UnreadObjects.h"

#include <cmath>
#include <set>
#include <vector>

namespace tarnwick {

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
    /// @param damage of the outline, whatever was left out besides.
    void write(EngineLoss damage, PayloadWriter& result) const
    {
        const bool isCutAlone = theOutlineIsCut && damage == EngineLoss::isNone;
        result.put(static_cast<std::uint8_t>(isCutAlone ? EngineLoss::isCut : damage));
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

namespace {

/// Looks for entries that stand in the file but cannot be read: the library ends its list there.
class OutlineCheck
{
public:
    explicit OutlineCheck(const EngineDocument& document)
        : theDocument(document)
    {
    }
    bool isDamagedBelow(pdf_obj* outlines)
    {
        push(outlines, PDF_NAME(First));
        while (!theNext.empty() && theSeen.size() < maximumOutlineEntries && !theDamageIsFound) {
            pdf_obj* const entry = theNext.back();
            theNext.pop_back();
            push(entry, PDF_NAME(Next));
            push(entry, PDF_NAME(First));
        }
        return theDamageIsFound;
    }
    /// What a key of a dictionary leads to, borrowed; null when that cannot be read, or is nothing.
    pdf_obj* target(pdf_obj* dictionary, pdf_obj* key)
    {
        fz_context* const ctx = theDocument.context();
        pdf_obj* value = nullptr;
        bool isThere = false;
        int number = 0;
        const int error = attempt(ctx, [&] {
            value = pdf_dict_get(ctx, dictionary, key);
            number = pdf_to_num(ctx, value);
            isThere = pdf_is_dict(ctx, value);
        });
        theDamageIsFound = theDamageIsFound || error || isUnreadable(theDocument, number);
        return !error && isThere && theSeen.insert(number).second ? value : nullptr;
    }
    bool isDamageFound() const { return theDamageIsFound; }

private:
    void push(pdf_obj* entry, pdf_obj* key)
    {
        if (pdf_obj* const next = target(entry, key))
            theNext.push_back(next);
    }

    const EngineDocument& theDocument;
    std::set<int> theSeen;
    std::vector<pdf_obj*> theNext;
    bool theDamageIsFound = false;
};

EngineLoss outlineDamage(const EngineDocument& document)
{
    OutlineCheck check(document);
    pdf_obj* const root
        = trailerDictionary(document.context(), document.document(), PDF_NAME(Root));
    pdf_obj* const outlines = check.target(root, PDF_NAME(Outlines));
    if (check.isDamageFound())
        return EngineLoss::isDamaged;
    return outlines && check.isDamagedBelow(outlines) ? EngineLoss::isDamagedInPart
                                                      : EngineLoss::isNone;
}

} // namespace

int readOutline(const EngineDocument& document, PayloadWriter& result)
{
    fz_context* const ctx = document.context();
    fz_outline* outline = nullptr;
    const int error = attempt(ctx, [&] { outline = pdf_load_outline(ctx, document.document()); });
    if (error)
        return error;
    OutlineWriter writer(document);
    writer.add(outline);
    writer.write(outlineDamage(document), result);
    fz_drop_outline(ctx, outline);
    return FZ_ERROR_NONE;
}

} // namespace tarnwick
