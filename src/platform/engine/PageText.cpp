#include "platform/engine/PageText.h"

#include "platform/engine/Attempt.h"
#include "platform/engine/UnreadObjects.h"

#include <cmath>
#include <vector>

namespace {

/// The look of characters; equal neighbours make one run.
struct Style
{
    fz_font* font = nullptr;
    float size = 0;
    std::uint32_t colour = 0;

    bool operator==(const Style&) const = default;
};

struct Run
{
    std::uint32_t start = 0;
    std::uint32_t length = 0;
    Style style;
};

/// Collects a page's characters in the order in which MuPDF lays them out.
class TextCollector
{
public:
    explicit TextCollector(int detail)
        : theDetail(detail)
    {
    }
    void add(const fz_stext_page& page)
    {
        for (const fz_stext_block* block = page.first_block; block; block = block->next) {
            if (block->type != FZ_STEXT_BLOCK_TEXT)
                continue;
            if (!theText.empty())
                addLineEnd(); // an empty line parts the blocks, as paragraphs in plain text
            for (const fz_stext_line* line = block->u.t.first_line; line; line = line->next) {
                for (const fz_stext_char* one = line->first_char; one; one = one->next)
                    addCharacter(*one);
                addLineEnd();
            }
        }
    }
    void write(fz_context* ctx, PayloadWriter& result) const;
    /// Whether characters were left out, the page having more than maximumPageCharacters.
    bool isCut() const { return theTextIsCut; }
    bool isEmpty() const { return theText.empty(); }

private:
    void addCharacter(const fz_stext_char& one);
    void addLineEnd() { add(U'\n', {}, theRuns.empty() ? Style{} : theRuns.back().style); }
    void add(char32_t character, const fz_quad& quad, const Style& style);

    int theDetail;
    bool theTextIsCut = false;
    std::u32string theText;
    std::vector<fz_quad> theQuads;
    std::vector<Run> theRuns;
};

/// NUL and halves of surrogate pairs come from broken ToUnicode maps; they are no characters.
char32_t soundCharacter(int number)
{
    const bool isSurrogate = number >= 0xd800 && number < 0xe000;
    return number > 0 && number <= 0x10ffff && !isSurrogate ? static_cast<char32_t>(number)
                                                            : 0xfffd;
}

void TextCollector::addCharacter(const fz_stext_char& one)
{
    const float size = std::isfinite(one.size) && one.size > 0 ? one.size : 1;
    add(soundCharacter(one.c), one.quad,
        {one.font, size, static_cast<std::uint32_t>(one.color) & 0xffffffu});
}

void TextCollector::add(char32_t character, const fz_quad& quad, const Style& style)
{
    if (theText.size() >= maximumPageCharacters) {
        theTextIsCut = theTextIsCut || character != U'\n';
        return;
    }
    if (theDetail == 2) {
        const bool isNew = theRuns.empty() || theRuns.back().style != style;
        if (isNew && theRuns.size() < maximumTextRuns)
            theRuns.push_back({static_cast<std::uint32_t>(theText.size()), 0, style});
        ++theRuns.back().length;
    }
    if (theDetail == 1)
        theQuads.push_back(quad);
    theText += character;
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
        collector.add(*text);
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
