#include "PageDigests.h"

#include "Attempt.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

namespace tarnwick {

namespace {

constexpr int maximumDepth = 100; ///< levels of values within an object
constexpr std::size_t mostReached = 200'000; ///< objects of one page

/// What leads away from a page's look: to other pages, the logical structure, what is told of it.
bool isLeftOutKey(std::string_view key)
{
    constexpr std::array<std::string_view, 12> keys = {"P", "Kids", "StructParent", "StructParents",
        "Metadata", "PieceInfo", "LastModified", "Popup", "Dest", "Data", "Thumb", "Length"};
    return std::find(keys.begin(), keys.end(), key) != keys.end();
}

} // namespace

/// Takes in the value of an object, so that each two different ones give other bytes.
class PageDigests::Spelling
{
public:
    Spelling(fz_context* ctx, Node& node)
        : theContext(ctx)
        , theNode(node)
    {
        fz_sha256_init(&theState);
    }
    /// Throws.
    void add(pdf_obj* value, int depth = 0)
    {
        if (pdf_is_indirect(theContext, value)) {
            addTag('R');
            theReferences.push_back(pdf_to_num(theContext, value));
        } else if (depth > maximumDepth) {
            fz_throw(theContext, FZ_ERROR_GENERIC, "too deep");
        } else if (pdf_is_array(theContext, value)) {
            const int count = pdf_array_len(theContext, value);
            addNumber('[', count);
            for (int index = 0; index < count; ++index)
                add(pdf_array_get(theContext, value, index), depth + 1);
        } else if (pdf_is_dict(theContext, value)) {
            addDictionary(value, depth);
        } else {
            addPlain(value);
        }
    }
    void addBytes(char tag, const void* bytes, std::size_t size)
    {
        addNumber(tag, static_cast<std::int64_t>(size));
        fz_sha256_update(&theState, static_cast<const unsigned char*>(bytes), size);
    }
    void addText(char tag, const char* text) { addBytes(tag, text, std::strlen(text)); }
    void addNumber(char tag, std::int64_t number)
    {
        addTag(tag);
        fz_sha256_update(&theState, reinterpret_cast<const unsigned char*>(&number), sizeof number);
    }
    void finish()
    {
        fz_sha256_final(&theState, theNode.digest.data());
        theNode.references = std::move(theReferences);
        theNode.isRead = true;
    }

private:
    void addTag(char tag)
    {
        fz_sha256_update(&theState, reinterpret_cast<const unsigned char*>(&tag), 1);
    }
    /// The order of a dictionary's keys says nothing. The list of them is not this function's own:
    /// what throws out of it would leave it behind.
    void addDictionary(pdf_obj* value, int depth)
    {
        const int count = pdf_dict_len(theContext, value);
        const std::size_t first = theEntries.size();
        for (int index = 0; index < count; ++index) {
            const char* const key
                = pdf_to_name(theContext, pdf_dict_get_key(theContext, value, index));
            if (!isLeftOutKey(key))
                theEntries.emplace_back(key, pdf_dict_get_val(theContext, value, index));
        }
        const std::size_t end = theEntries.size();
        std::sort(theEntries.begin() + static_cast<std::ptrdiff_t>(first), theEntries.end(),
            [](const auto& one, const auto& other) {
                return std::strcmp(one.first, other.first) < 0;
            });
        addNumber('<', static_cast<std::int64_t>(end - first));
        for (std::size_t index = first; index < end; ++index) {
            addText('/', theEntries[index].first);
            add(theEntries[index].second, depth + 1);
        }
        theEntries.resize(first);
    }
    void addPlain(pdf_obj* value)
    {
        if (pdf_is_name(theContext, value))
            return addText('/', pdf_to_name(theContext, value));
        if (pdf_is_string(theContext, value)) {
            std::size_t size = 0;
            const char* const bytes = pdf_to_string(theContext, value, &size);
            return addBytes('(', bytes, size);
        }
        if (pdf_is_int(theContext, value))
            return addNumber('i', pdf_to_int64(theContext, value));
        if (pdf_is_real(theContext, value)) {
            const float number = pdf_to_real(theContext, value);
            return addBytes('r', &number, sizeof number);
        }
        if (pdf_is_bool(theContext, value))
            return addTag(pdf_to_bool(theContext, value) ? 't' : 'f');
        addTag('n');
    }

    fz_context* theContext;
    Node& theNode;
    fz_sha256 theState = {};
    std::vector<int> theReferences;
    std::vector<std::pair<const char*, pdf_obj*>> theEntries; ///< of the dictionaries gone into
};

PageDigests::PageDigests(const EngineDocument& document, EngineDigestForm form)
    : theDocument(document)
    , theForm(form)
    , thePages(document.pageTree().pages.begin(), document.pageTree().pages.end())
{
    fz_context* const ctx = document.context();
    const int error = attempt(ctx, [&] {
        theRoot = pdf_to_num(
            ctx, pdf_dict_get(ctx, pdf_trailer(ctx, document.document()), PDF_NAME(Root)));
    });
    if (error)
        theRoot = 0;
}

bool PageDigests::isLeftOut(int number) const
{
    return number == theRoot || thePages.count(number) > 0
        || theDocument.pageTree().nodes.count(number) > 0;
}

bool PageDigests::spellStream(Spelling& spelling, pdf_obj* object, int number)
{
    fz_context* const ctx = theDocument.context();
    fz_buffer* buffer = nullptr;
    fz_var(buffer);
    const int error = attempt(ctx, [&] {
        if (!pdf_obj_num_is_stream(ctx, theDocument.document(), number))
            return;
        if (theForm == EngineDigestForm::isOfPlace) {
            // Of one place and one length there is one stream: nothing of it need be read.
            const pdf_xref_entry* const entry
                = pdf_get_xref_entry_no_null(ctx, theDocument.document(), number);
            spelling.addNumber('@', entry->stm_ofs);
            spelling.addNumber('#', pdf_to_int64(ctx, pdf_dict_get(ctx, object, PDF_NAME(Length))));
            return;
        }
        buffer = pdf_load_raw_stream_number(ctx, theDocument.document(), number);
        unsigned char* bytes = nullptr;
        const std::size_t size = fz_buffer_storage(ctx, buffer, &bytes);
        spelling.addBytes('@', bytes, size);
    });
    fz_drop_buffer(ctx, buffer);
    return error == FZ_ERROR_NONE;
}

PageDigests::Node PageDigests::readNode(int number)
{
    fz_context* const ctx = theDocument.context();
    Node node;
    pdf_obj* object = nullptr;
    fz_var(object);
    Spelling spelling(ctx, node);
    const int error = attempt(ctx, [&] {
        object = pdf_load_object(ctx, theDocument.document(), number);
        spelling.add(object);
    });
    if (!error && spellStream(spelling, object, number))
        spelling.finish();
    pdf_drop_obj(ctx, object);
    return node;
}

const PageDigests::Node& PageDigests::node(int number)
{
    const auto found = theNodes.find(number);
    return found != theNodes.end() ? found->second
                                   : theNodes.emplace(number, readNode(number)).first->second;
}

/// The entries of a page that its look is made of, inherited ones included.
PageDigests::Node PageDigests::pageNode(pdf_obj* page)
{
    fz_context* const ctx = theDocument.context();
    Node node;
    Spelling spelling(ctx, node);
    const int error = attempt(ctx, [&] {
        for (pdf_obj* const key :
            {PDF_NAME(Resources), PDF_NAME(MediaBox), PDF_NAME(CropBox), PDF_NAME(Rotate)})
            spelling.add(pdf_dict_get_inheritable(ctx, page, key));
        for (pdf_obj* const key : {PDF_NAME(Contents), PDF_NAME(Annots), PDF_NAME(Group),
                 PDF_NAME(UserUnit), PDF_NAME(BleedBox), PDF_NAME(TrimBox), PDF_NAME(ArtBox)})
            spelling.add(pdf_dict_get(ctx, page, key));
    });
    if (!error)
        spelling.finish();
    return node;
}

/// Layers, colours of output and how form fields look without an appearance of their own.
PageDigests::Node PageDigests::catalogNode()
{
    fz_context* const ctx = theDocument.context();
    Node node;
    Spelling spelling(ctx, node);
    const int error = attempt(ctx, [&] {
        pdf_obj* const catalog
            = pdf_dict_get(ctx, pdf_trailer(ctx, theDocument.document()), PDF_NAME(Root));
        spelling.add(pdf_dict_get(ctx, catalog, PDF_NAME(OCProperties)));
        spelling.add(pdf_dict_get(ctx, catalog, PDF_NAME(OutputIntents)));
        pdf_obj* const form = pdf_dict_get(ctx, catalog, PDF_NAME(AcroForm));
        for (const char* const key : {"DA", "DR", "Q", "NeedAppearances"})
            spelling.add(pdf_dict_gets(ctx, form, key));
    });
    if (!error)
        spelling.finish();
    return node;
}

bool PageDigests::reach(fz_sha256& state, const Node& start)
{
    std::unordered_map<int, std::uint32_t> met; // what was met, and as the which
    std::vector<std::pair<const Node*, std::size_t>> open = {{&start, 0}};
    const auto takeNumber = [&state](std::uint32_t number) {
        fz_sha256_update(&state, reinterpret_cast<const unsigned char*>(&number), sizeof number);
    };
    fz_sha256_update(&state, start.digest.data(), start.digest.size());
    bool isKnown = start.isRead;
    while (isKnown && !open.empty()) {
        auto& [present, next] = open.back();
        if (next == present->references.size()) {
            open.pop_back();
            continue;
        }
        const int number = present->references[next++];
        if (isLeftOut(number)) {
            takeNumber(0);
            continue;
        }
        const auto place = met.try_emplace(number, static_cast<std::uint32_t>(met.size() + 1));
        takeNumber(place.first->second);
        if (!place.second)
            continue;
        const Node& child = node(number);
        isKnown = child.isRead && met.size() <= mostReached;
        fz_sha256_update(&state, child.digest.data(), child.digest.size());
        open.emplace_back(&child, 0);
    }
    return isKnown;
}

EnginePageDigest PageDigests::of(int page)
{
    fz_context* const ctx = theDocument.context();
    EnginePageDigest result;
    pdf_obj* object = nullptr;
    result.object = theDocument.pageTree().pages[static_cast<std::size_t>(page)];
    const int error
        = attempt(ctx, [&] { object = pdf_lookup_page_obj(ctx, theDocument.document(), page); });
    if (error || !object)
        return result;
    if (!theCatalog)
        theCatalog = catalogNode();
    fz_sha256 state;
    fz_sha256_init(&state);
    result.isKnown = reach(state, *theCatalog) && reach(state, pageNode(object));
    Sha256 digest = {};
    fz_sha256_final(&state, digest.data());
    if (result.isKnown)
        std::memcpy(result.digest.data(), digest.data(), digest.size());
    return result;
}

int readDigests(const EngineDocument& document, const DigestRequest& request,
    std::optional<PageDigests>& digests, DigestResult& result)
{
    if (!digests || digests->form() != request.form)
        digests.emplace(document, request.form);
    const int end = std::min(document.pageCount(), request.first + request.count);
    for (int page = request.first; page < end; ++page)
        result.pages.push_back(digests->of(page));
    return FZ_ERROR_NONE;
}

} // namespace tarnwick
