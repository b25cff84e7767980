#include "PageCheck.h"

#include "Attempt.h"
#include "PageLabels.h"

#include <algorithm>
#include <cmath>

namespace tarnwick {

namespace {

EngineFinding findingOn(EngineFindingCode code, int page)
{
    EngineFinding finding;
    finding.code = code;
    finding.page = page;
    return finding;
}

bool hasArea(const fz_rect& box)
{
    const float width = box.x1 - box.x0;
    const float height = box.y1 - box.y0;
    return std::isfinite(width) && std::isfinite(height) && width != 0 && height != 0;
}

/// UTF-16 units of a text in UTF-8.
std::int64_t unitsOf(const std::string& text)
{
    std::int64_t units = 0;
    for (const char byte : text) {
        const auto code = static_cast<unsigned char>(byte);
        units += (code & 0xc0u) != 0x80u ? 1 : 0;
        units += code >= 0xf0u ? 1 : 0;
    }
    return units;
}

} // namespace

void checkPage(const EngineDocument& document, int page, CheckNotes& notes)
{
    fz_context* const ctx = document.context();
    bool isSized = false;
    pdf_obj* object = nullptr;
    fz_rect box = fz_empty_rect;
    const int error = attempt(ctx, [&] {
        object = pdf_lookup_page_obj(ctx, document.document(), page);
        pdf_obj* const media = pdf_dict_get_inheritable(ctx, object, PDF_NAME(MediaBox));
        isSized = pdf_array_len(ctx, media) >= 4;
        if (isSized)
            box = pdf_to_rect(ctx, media);
    });
    if (error || !isSized || !hasArea(box))
        notes.add(findingOn(EngineFindingCode::isPageSizeUnknown, page));
    int count = 0;
    const int failure = attempt(
        ctx, [&] { count = pdf_array_len(ctx, pdf_dict_get(ctx, object, PDF_NAME(Annots))); });
    if (!failure && count <= static_cast<int>(maximumLinks))
        return;
    EngineFinding finding = findingOn(EngineFindingCode::isLinksLost, page);
    finding.said = failure ? -1 : count;
    notes.add(std::move(finding));
}

void checkLabels(const EngineDocument& document, CheckNotes& notes)
{
    if (std::int64_t{document.pageCount()} * longestShownLabel <= maximumLabelUnits)
        return;
    const std::vector<PageLabelRange> ranges
        = readPageLabels(document.context(), document.document());
    std::int64_t units = 0;
    for (int page = 0; page < document.pageCount(); ++page) {
        const std::optional<std::string> label = pageLabel(ranges, page);
        units += label ? std::min<std::int64_t>(unitsOf(*label), longestShownLabel) : 0;
        if (units > maximumLabelUnits)
            return notes.add(findingOn(EngineFindingCode::isLabelsLost, page));
    }
}

} // namespace tarnwick
