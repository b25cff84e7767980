#include "PageText.h"

#include "Attempt.h"
#include "TextLines.h"
#include "UnreadObjects.h"

#include <utility>
#include <vector>

namespace tarnwick {

namespace {

/// Characters of the same look.
struct Run
{
    TextStyle style;
    std::uint32_t length = 0;
};

EngineQuad quadOf(const fz_quad& quad)
{
    const auto point = [](const fz_point& corner) { return EngineQuad::Point{corner.x, corner.y}; };
    return {{point(quad.ul), point(quad.ur), point(quad.lr), point(quad.ll)}};
}

/// Collects a page's characters.
class TextCollector
{
public:
    explicit TextCollector(EngineTextDetail detail)
        : theDetail(detail)
    {
    }
    void addLine(const TextLine& line, bool beginsBlock)
    {
        if (beginsBlock && !theText.empty())
            addLineEnd(); // an empty line parts the blocks, as paragraphs in plain text
        for (const TextCharacter& one : line)
            add(one);
        addLineEnd();
    }
    /// Hands over what has been collected, for good.
    void finish(fz_context* ctx, TextResult& result);
    /// Whether characters were left out, the page having more than maximumPageCharacters.
    bool isCut() const { return theIsCut; }
    bool isEmpty() const { return theText.empty(); }

private:
    void addLineEnd() { add({U'\n', {}, theRuns.empty() ? TextStyle{} : theRuns.back().style}); }
    void add(const TextCharacter& one);

    EngineTextDetail theDetail;
    bool theIsCut = false;
    std::vector<char32_t> theText;
    std::vector<EngineQuad> theQuads;
    std::vector<Run> theRuns;
};

void TextCollector::add(const TextCharacter& one)
{
    if (theText.size() >= maximumPageCharacters) {
        theIsCut = theIsCut || one.character != U'\n';
        return;
    }
    if (theDetail == EngineTextDetail::isWithAttributes) {
        const bool isNew = theRuns.empty() || theRuns.back().style != one.style;
        if (isNew && theRuns.size() < maximumTextRuns)
            theRuns.push_back({one.style});
        ++theRuns.back().length;
    }
    if (theDetail == EngineTextDetail::isWithQuads)
        theQuads.push_back(quadOf(one.quad));
    theText.push_back(one.character);
}

EngineTextRun runOf(fz_context* ctx, const TextStyle& style)
{
    EngineTextRun run;
    run.size = style.size;
    run.colour = style.colour;
    if (style.font) {
        run.isBold = fz_font_is_bold(ctx, style.font) != 0;
        run.isItalic = fz_font_is_italic(ctx, style.font) != 0;
        run.fontName = fz_font_name(ctx, style.font);
    }
    return run;
}

void TextCollector::finish(fz_context* ctx, TextResult& result)
{
    result.characters = std::move(theText);
    result.quads = std::move(theQuads);
    for (const Run& run : theRuns) {
        result.runs.push_back(runOf(ctx, run.style));
        result.runs.back().length = run.length;
    }
}

} // namespace

int readPageText(const EngineDocument& document, const TextRequest& request, TextResult& result)
{
    fz_context* const ctx = document.context();
    const LoadedPage loaded(document, request.page);
    if (!loaded.page())
        return loaded.error();
    fz_stext_page* text = nullptr;
    fz_device* device = nullptr;
    fz_var(text);
    fz_var(device);
    // Zero options: ligatures are spelled out, hyphens at line ends stay, white space is spaces.
    const fz_stext_options options = {0, 1};
    fz_cookie cookie = {}; // counts what the library passes over
    int error = attempt(ctx, [&] {
        text = fz_new_stext_page(ctx, pdf_bound_page(ctx, loaded.page()));
        device = fz_new_stext_device(ctx, text, &options);
        pdf_run_page(ctx, loaded.page(), device, fz_identity, &cookie);
        fz_close_device(ctx, device);
    });
    fz_drop_device(ctx, device);
    const bool isDamaged = error || cookie.errors > 0;
    if (error != FZ_ERROR_MEMORY && device)
        error = FZ_ERROR_NONE; // what came before the damage is text as well
    if (!error) {
        TextCollector collector(request.detail);
        visitLines(*text, [&collector](const TextLine& line, bool beginsBlock) {
            collector.addLine(line, beginsBlock);
        });
        result.loss = contentLoss(document, loaded.page()->obj);
        if (collector.isCut())
            result.loss = EngineLoss::isCut;
        else if (isDamaged || (result.loss == EngineLoss::isDamaged && !collector.isEmpty()))
            result.loss = EngineLoss::isDamagedInPart;
        collector.finish(ctx, result);
    }
    fz_drop_stext_page(ctx, text);
    return error;
}

} // namespace tarnwick
