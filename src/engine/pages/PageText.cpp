#include "PageText.h"

#include "Attempt.h"
#include "TextLines.h"
#include "UnreadObjects.h"

#include <string>
#include <vector>

namespace tarnwick {

namespace {

/// Characters of the same look.
struct Run
{
    std::uint32_t start = 0;
    std::uint32_t length = 0;
    TextStyle style;
};

/// Collects a page's characters.
class TextCollector
{
public:
    explicit TextCollector(int detail)
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
    void write(fz_context* ctx, PayloadWriter& result) const;
    /// Whether characters were left out, the page having more than maximumPageCharacters.
    bool isCut() const { return theTextIsCut; }
    bool isEmpty() const { return theText.empty(); }

private:
    void addLineEnd() { add({U'\n', {}, theRuns.empty() ? TextStyle{} : theRuns.back().style}); }
    void add(const TextCharacter& one);

    int theDetail;
    bool theTextIsCut = false;
    std::u32string theText;
    std::vector<fz_quad> theQuads;
    std::vector<Run> theRuns;
};

void TextCollector::add(const TextCharacter& one)
{
    if (theText.size() >= maximumPageCharacters) {
        theTextIsCut = theTextIsCut || one.character != U'\n';
        return;
    }
    if (theDetail == 2) {
        const bool isNew = theRuns.empty() || theRuns.back().style != one.style;
        if (isNew && theRuns.size() < maximumTextRuns)
            theRuns.push_back({static_cast<std::uint32_t>(theText.size()), 0, one.style});
        ++theRuns.back().length;
    }
    if (theDetail == 1)
        theQuads.push_back(one.quad);
    theText += one.character;
}

std::string_view fontName(fz_context* ctx, fz_font* font)
{
    return font ? std::string_view(fz_font_name(ctx, font)).substr(0, longestFontName)
                : std::string_view();
}

void TextCollector::write(fz_context* ctx, PayloadWriter& result) const
{
    result.put(static_cast<std::uint32_t>(theText.size()));
    result.putBytes(theText.data(), theText.size() * sizeof(char32_t));
    for (const fz_quad& quad : theQuads) {
        for (const fz_point& corner : {quad.ul, quad.ur, quad.lr, quad.ll}) {
            result.put(corner.x);
            result.put(corner.y);
        }
    }
    if (theDetail != 2)
        return;
    result.put(static_cast<std::uint32_t>(theRuns.size()));
    for (const Run& run : theRuns) {
        fz_font* const font = run.style.font;
        const bool isBold = font && fz_font_is_bold(ctx, font);
        const bool isItalic = font && fz_font_is_italic(ctx, font);
        result.put(run.start);
        result.put(run.length);
        result.put(run.style.size);
        result.put(static_cast<std::uint8_t>((isBold ? 1 : 0) | (isItalic ? 2 : 0)));
        result.put(run.style.colour);
        result.putText(fontName(ctx, font));
    }
}

} // namespace

int readPageText(const EngineDocument& document, int page, int detail, PayloadWriter& result)
{
    fz_context* const ctx = document.context();
    const LoadedPage loaded(document, page);
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
        TextCollector collector(detail);
        visitLines(*text, [&collector](const TextLine& line, bool beginsBlock) {
            collector.addLine(line, beginsBlock);
        });
        EngineLoss loss = contentLoss(document, loaded.page()->obj);
        if (collector.isCut())
            loss = EngineLoss::isCut;
        else if (isDamaged || (loss == EngineLoss::isDamaged && !collector.isEmpty()))
            loss = EngineLoss::isDamagedInPart;
        result.put(static_cast<std::uint8_t>(loss));
        collector.write(ctx, result);
    }
    fz_drop_stext_page(ctx, text);
    return error;
}

} // namespace tarnwick
