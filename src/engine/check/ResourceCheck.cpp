#include "ResourceCheck.h"

#include "Attempt.h"
#include "LibraryListener.h"
#include "PageCheck.h"
#include "UnreadObjects.h"
#include "WrittenStream.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <unordered_set>

namespace tarnwick {

namespace {

/// Pages that are looked at, and fonts and images of them all: the library keeps what it has read.
constexpr int maximumPages = 20'000;
constexpr int maximumResources = 200'000;

/// Fonts that every reader has (ISO 32000-2, 9.6.2.2).
constexpr std::array<std::string_view, 14> standardFonts
    = {"Courier", "Courier-Bold", "Courier-BoldOblique", "Courier-Oblique", "Helvetica",
        "Helvetica-Bold", "Helvetica-BoldOblique", "Helvetica-Oblique", "Symbol", "Times-Bold",
        "Times-BoldItalic", "Times-Italic", "Times-Roman", "ZapfDingbats"};

/// ISO 32000-2, 7.4, with the short names of inline images, which the library takes as well.
constexpr std::array<std::string_view, 16> knownFilters = {"ASCIIHexDecode", "AHx", "ASCII85Decode",
    "A85", "CCITTFaxDecode", "CCF", "DCTDecode", "DCT", "RunLengthDecode", "RL", "FlateDecode",
    "Fl", "LZWDecode", "LZW", "JBIG2Decode", "JPXDecode"};

template<typename Names> bool holds(const Names& names, std::string_view name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

std::string printable(std::string_view name)
{
    constexpr std::size_t longest = 100;
    std::string text(name.substr(0, longest));
    makePrintable(text);
    return text;
}

/// The fonts and images of pages, each once.
class ResourceWalk
{
public:
    ResourceWalk(const EngineDocument& document, CheckNotes& notes)
        : theDocument(document)
        , theContext(document.context())
        , theNotes(notes)
    {
    }

    /// @returns false when enough has been looked at.
    bool takePage(int page)
    {
        pdf_obj* resources = nullptr;
        int number = 0;
        const int error = attempt(theContext, [&] {
            pdf_obj* const object = pdf_lookup_page_obj(theContext, theDocument.document(), page);
            resources = pdf_dict_get_inheritable(theContext, object, PDF_NAME(Resources));
            number = pdf_to_num(theContext, resources);
        });
        if (error || !resources || (number != 0 && !theSeen.insert(number).second))
            return true;
        forEach(resources, PDF_NAME(Font), [&](pdf_obj* font) { takeFont(font, page); });
        forEach(resources, PDF_NAME(XObject), [&](pdf_obj* image) { takeImage(image, page); });
        return theSeen.size() < maximumResources && theLeft > 0;
    }

private:
    /// Calls take for each value in the dictionary under a key.
    template<typename Take> void forEach(pdf_obj* resources, pdf_obj* key, Take take)
    {
        pdf_obj* dictionary = nullptr;
        int length = 0;
        const int error = attempt(theContext, [&] {
            dictionary = pdf_dict_get(theContext, resources, key);
            length = pdf_dict_len(theContext, dictionary);
        });
        for (int index = 0; index < length && !error && theLeft > 0; ++index, --theLeft) {
            pdf_obj* value = nullptr;
            int number = 0;
            const int failure = attempt(theContext, [&] {
                value = pdf_dict_get_val(theContext, dictionary, index);
                number = pdf_to_num(theContext, value);
            });
            if (!failure && value && (number == 0 || theSeen.insert(number).second))
                take(value);
        }
    }

    void add(EngineFindingCode code, int page, pdf_obj* object, std::string text)
    {
        EngineFinding finding;
        finding.code = code;
        finding.page = page;
        finding.object = std::clamp(pdf_to_num(theContext, object), 0, maximumObjectNumber);
        finding.text = std::move(text);
        theNotes.add(std::move(finding));
    }

    /// A font of procedures has no program, and one that is known to every reader needs none.
    void takeFont(pdf_obj* font, int page)
    {
        const char* name = "";
        bool isThere = false;
        bool needsProgram = false;
        bool hasProgram = false;
        const int error = attempt(theContext, [&] {
            isThere = pdf_is_dict(theContext, font) != 0;
            name = pdf_to_name(theContext, pdf_dict_get(theContext, font, PDF_NAME(BaseFont)));
            pdf_obj* const type = pdf_dict_get(theContext, font, PDF_NAME(Subtype));
            needsProgram = !pdf_name_eq(theContext, type, PDF_NAME(Type3));
            pdf_obj* const parts = pdf_dict_get(theContext, font, PDF_NAME(DescendantFonts));
            pdf_obj* const inner
                = pdf_is_array(theContext, parts) ? pdf_array_get(theContext, parts, 0) : font;
            pdf_obj* const about = pdf_dict_get(theContext, inner, PDF_NAME(FontDescriptor));
            hasProgram = pdf_dict_get(theContext, about, PDF_NAME(FontFile))
                || pdf_dict_get(theContext, about, PDF_NAME(FontFile2))
                || pdf_dict_get(theContext, about, PDF_NAME(FontFile3));
        });
        if (error || !isThere)
            add(EngineFindingCode::isFontNotEmbedded, page, font, {});
        else if (needsProgram && !hasProgram && !holds(standardFonts, name))
            add(EngineFindingCode::isFontNotEmbedded, page, font,
                *name != '\0' ? printable(name) : "without a name");
    }

    void takeImage(pdf_obj* image, int page)
    {
        bool isImage = false;
        const int error = attempt(theContext, [&] {
            pdf_obj* const type = pdf_dict_get(theContext, image, PDF_NAME(Subtype));
            isImage = pdf_name_eq(theContext, type, PDF_NAME(Image)) != 0;
        });
        if (error || isUnreadable(theDocument, pdf_to_num(theContext, image)))
            return add(EngineFindingCode::isImageLost, page, image, {});
        if (!isImage)
            return;
        for (const WrittenStream::Filter& filter : readFilters(theContext, image)) {
            if (!holds(knownFilters, filter.name) && filter.name != "Crypt")
                return add(
                    EngineFindingCode::isImageLost, page, image, '/' + printable(filter.name));
        }
    }

    const EngineDocument& theDocument;
    fz_context* theContext;
    CheckNotes& theNotes;
    std::unordered_set<int> theSeen; ///< numbers of resources, fonts and images
    int theLeft = maximumResources;
};

} // namespace

int checkResources(const EngineDocument& document, CheckNotes& notes)
{
    const int pages = std::min(document.pageCount(), maximumPages);
    ResourceWalk walk(document, notes);
    for (int page = 0; page < pages; ++page) {
        checkPage(document, page, notes);
        if (!walk.takePage(page))
            return page + 1;
    }
    return pages;
}

} // namespace tarnwick
