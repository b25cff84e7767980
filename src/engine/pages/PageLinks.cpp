#include "PageLinks.h"

#include "Attempt.h"
#include "PageGeometry.h"
#include "UnreadObjects.h"

#include <cmath>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace tarnwick {

namespace {

/// The titles and addresses of one answer, which have limits each and in all.
class TargetTexts
{
public:
    /// As much of a text as an answer may hold; a byte more shows that there is more.
    std::string take(const char* text)
    {
        const std::string_view whole = text ? std::string_view(text) : std::string_view();
        const std::string_view taken = whole.substr(0, longestTargetText + 1);
        theSize += taken.size();
        return std::string(taken);
    }
    /// Whether there may be one of each more.
    bool hasRoom() const { return theSize + 2 * (longestTargetText + 1) <= maximumTargetTexts; }

private:
    std::size_t theSize = 0;
};

float sound(float number)
{
    return std::isfinite(number) ? number : 0;
}

/// Where an address of MuPDF's leads: "#page=..." within the document, anything else outside.
EngineTarget targetOf(const EngineDocument& document, const char* address, TargetTexts& texts)
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
    if (isOutside)
        return {-1, 0, 0, texts.take(address)};
    if (error || page < 0 || page >= document.pageCount())
        return {};
    return {page, sound(target.x), sound(target.y), {}};
}

/// Walks an outline without recursion; the tree was built by MuPDF, which cuts its cycles.
class OutlineWalk
{
public:
    OutlineWalk(const EngineDocument& document, std::vector<EngineOutlineEntry>& entries)
        : theDocument(document)
        , theEntries(entries)
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
            if (theEntries.size() == maximumOutlineEntries || !theTexts.hasRoom()) {
                theIsCut = true;
                return;
            }
            branch[depth] = entry->next;
            put(*entry, depth);
            if (!entry->down)
                continue;
            if (depth + 1 < maximumOutlineDepth)
                branch[++depth] = entry->down;
            else
                theIsCut = true;
        }
    }
    /// Whether entries were left out.
    bool isCut() const { return theIsCut; }

private:
    void put(const fz_outline& entry, int depth)
    {
        std::string title = theTexts.take(entry.title);
        theEntries.push_back({depth, std::move(title), targetOf(theDocument, entry.uri, theTexts)});
    }

    const EngineDocument& theDocument;
    std::vector<EngineOutlineEntry>& theEntries;
    TargetTexts theTexts;
    bool theIsCut = false;
};

} // namespace

int readLinks(const EngineDocument& document, int page, LinksResult& result)
{
    fz_context* const ctx = document.context();
    const LoadedPage loaded(document, page);
    if (!loaded.page())
        return loaded.error();
    fz_link* links = nullptr;
    const int error = attempt(ctx, [&] { links = pdf_load_links(ctx, loaded.page()); });
    if (error)
        return error;
    TargetTexts texts;
    for (const fz_link* link = links; link && result.links.size() < maximumLinks && texts.hasRoom();
         link = link->next) {
        const fz_rect& area = link->rect;
        result.links.push_back({sound(area.x0), sound(area.y0), sound(area.x1), sound(area.y1),
            targetOf(document, link->uri, texts)});
    }
    fz_drop_link(ctx, links);
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
        while (!theNext.empty() && theSeen.size() < maximumOutlineEntries && !isDamaged) {
            pdf_obj* const entry = theNext.back();
            theNext.pop_back();
            push(entry, PDF_NAME(Next));
            push(entry, PDF_NAME(First));
        }
        return isDamaged;
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
        isDamaged = isDamaged || error || isUnreadable(theDocument, number);
        return !error && isThere && theSeen.insert(number).second ? value : nullptr;
    }
    bool isDamageFound() const { return isDamaged; }

private:
    void push(pdf_obj* entry, pdf_obj* key)
    {
        if (pdf_obj* const next = target(entry, key))
            theNext.push_back(next);
    }

    const EngineDocument& theDocument;
    std::set<int> theSeen;
    std::vector<pdf_obj*> theNext;
    bool isDamaged = false;
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

int readOutline(const EngineDocument& document, OutlineResult& result)
{
    fz_context* const ctx = document.context();
    fz_outline* outline = nullptr;
    const int error = attempt(ctx, [&] { outline = pdf_load_outline(ctx, document.document()); });
    if (error)
        return error;
    OutlineWalk walk(document, result.entries);
    walk.add(outline);
    fz_drop_outline(ctx, outline);
    result.loss = outlineDamage(document);
    if (walk.isCut() && result.loss == EngineLoss::isNone)
        result.loss = EngineLoss::isCut;
    return FZ_ERROR_NONE;
}

} // namespace tarnwick
