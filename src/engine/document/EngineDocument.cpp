#include "EngineDocument.h"

#include "Attempt.h"
#include "RepairRemarks.h"
#include "UnreadableEncryption.h"

#include <algorithm>

namespace tarnwick {

namespace {

/// Fonts, images and parsed resources that MuPDF keeps for later pages.
constexpr std::size_t storeSize = 64u << 20;

void ignoreMessage(void*, const char*) { }

} // namespace

EngineDocument::EngineDocument(std::string_view bytes)
    : theBytes(bytes)
{
    theContext = fz_new_context(nullptr, nullptr, storeSize);
    if (!theContext)
        return;
    // What MuPDF has to say about a file is told by the result; nobody reads it elsewhere.
    fz_set_warning_callback(theContext, ignoreMessage, nullptr);
    fz_set_error_callback(theContext, ignoreMessage, nullptr);
}

EngineDocument::~EngineDocument()
{
    pdf_drop_document(theContext, theDocument);
    fz_drop_context(theContext);
}

EngineDocument::State EngineDocument::refuse(const std::string& reason)
{
    theRefusal = reason;
    return State::isRefused;
}

EngineDocument::State EngineDocument::open()
{
    if (!theContext)
        return refuse("There is not enough memory to open the file.");
    if (theBytes.empty())
        return refuse("The file is empty.");
    fz_context* const ctx = theContext;
    fz_stream* stream = nullptr;
    fz_var(stream);
    bool needsPassword = false;
    const RepairRemarks remarks(ctx, theRepairCause);
    const int error = attempt(ctx, [&] {
        stream = fz_open_memory(
            ctx, reinterpret_cast<const unsigned char*>(theBytes.data()), theBytes.size());
        theDocument = pdf_open_document_with_stream(ctx, stream);
        needsPassword = pdf_needs_password(ctx, theDocument) != 0;
    });
    fz_drop_stream(ctx, stream);
    if (error == FZ_ERROR_MEMORY)
        return refuse("The file needs more memory than the PDF engine may use.");
    if (error)
        return refuse(unreadableEncryption(ctx, theBytes)
                          .value_or("It is not a PDF, or too damaged to be read as one."));
    if (pdf_was_repaired(ctx, theDocument) != 0)
        theRepair = Repair::isAtOpening;
    return needsPassword ? State::isLocked : finishOpening();
}

EngineDocument::State EngineDocument::unlock(const std::string& password)
{
    int accepted = 0;
    const int error = attempt(theContext,
        [&] { accepted = pdf_authenticate_password(theContext, theDocument, password.c_str()); });
    return !error && accepted ? finishOpening() : State::isLocked;
}

/// A repaired file may turn out to be a document without a catalog: that is no PDF. It may be
/// repaired only when objects of the page tree are read.
EngineDocument::State EngineDocument::finishOpening()
{
    {
        const RepairRemarks remarks(theContext, theRepairCause);
        thePages = walkPageTree(theContext, theDocument);
    }
    if (theRepair == Repair::isNone && pdf_was_repaired(theContext, theDocument) != 0)
        theRepair = Repair::isLater;
    if (!trailerDictionary(theContext, theDocument, PDF_NAME(Root)))
        return refuse("The file has no document catalog, so it cannot be read as a PDF.");
    if (!installPageMap(theContext, theDocument, thePages))
        return refuse("The file needs more memory than the PDF engine may use.");
    return State::isOpen;
}

namespace {

std::optional<PdfVersion> catalogVersion(fz_context* ctx, pdf_obj* catalog)
{
    const char* version = "";
    const int error = attempt(
        ctx, [&] { version = pdf_to_name(ctx, pdf_dict_get(ctx, catalog, PDF_NAME(Version))); });
    return error ? std::nullopt : parsePdfVersion(version);
}

} // namespace

PdfVersion EngineDocument::version() const
{
    const std::optional<PdfVersion> header = headerVersion(theBytes);
    const std::optional<PdfVersion> catalog
        = catalogVersion(theContext, trailerDictionary(theContext, theDocument, PDF_NAME(Root)));
    return std::max(header.value_or(PdfVersion()), catalog.value_or(PdfVersion()));
}

namespace {

int entryCount(fz_context* ctx, pdf_obj* dictionary)
{
    int count = -1;
    const int error = attempt(ctx, [&] {
        if (dictionary)
            count = pdf_dict_len(ctx, dictionary);
    });
    return error ? -1 : count;
}

} // namespace

int EngineDocument::infoEntryCount() const
{
    return entryCount(theContext, trailerDictionary(theContext, theDocument, PDF_NAME(Info)));
}

int EngineDocument::catalogEntryCount() const
{
    return entryCount(theContext, trailerDictionary(theContext, theDocument, PDF_NAME(Root)));
}

pdf_obj* trailerDictionary(fz_context* ctx, pdf_document* document, pdf_obj* key)
{
    pdf_obj* dictionary = nullptr;
    const int error = attempt(ctx, [&] {
        pdf_obj* object = pdf_dict_get(ctx, pdf_trailer(ctx, document), key);
        if (pdf_is_dict(ctx, object))
            dictionary = object;
    });
    return error ? nullptr : dictionary;
}

LoadedPage::LoadedPage(const EngineDocument& document, int index)
    : theContext(document.context())
{
    if (index < 0 || index >= document.pageCount())
        return;
    theError = attempt(
        theContext, [&] { thePage = pdf_load_page(theContext, document.document(), index); });
}

LoadedPage::~LoadedPage()
{
    if (thePage)
        fz_drop_page(theContext, &thePage->super);
}

} // namespace tarnwick
