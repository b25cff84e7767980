#pragma once

#include "PageTree.h"
#include "PdfVersion.h"

#include <mupdf/pdf.h>

#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

/// The document in the engine: MuPDF's handles and what was found out when it was opened.
class EngineDocument
{
public:
    enum class State
    {
        isOpen,
        isLocked,
        isRefused,
    };

    /// @param bytes the file, borrowed for this object's life.
    explicit EngineDocument(std::string_view bytes);
    EngineDocument(const EngineDocument&) = delete;
    EngineDocument& operator=(const EngineDocument&) = delete;
    ~EngineDocument();

    /// Opens the file. JavaScript stays off, and nothing but PDF is tried.
    State open();
    /// @param password UTF-8. @returns isLocked when it is not the document's.
    State unlock(const std::string& password);
    /// Why the document is refused, as a sentence for the user.
    const std::string& refusal() const { return theRefusal; }

    std::string_view bytes() const { return theBytes; }
    std::size_t fileSize() const { return theBytes.size(); }
    fz_context* context() const { return theContext; }
    pdf_document* document() const { return theDocument; }
    /// When the library looked for all objects anew, the file's cross-reference being of no use.
    enum class Repair
    {
        isNone,
        isAtOpening,
        isLater, ///< while the page tree was read
    };
    Repair repair() const { return theRepair; }
    /// What the library said of that; printable ASCII.
    const std::string& repairCause() const { return theRepairCause; }
    const PageTree& pageTree() const { return thePages; }
    int pageCount() const { return static_cast<int>(thePages.pages.size()); }

    /// The later of the header's version and the catalog's (ISO 32000-2, 7.7.2); 0.0 without any.
    PdfVersion version() const;
    /// Entries of the trailer's Info dictionary, and of the catalog; -1 without one.
    int infoEntryCount() const;
    int catalogEntryCount() const;

private:
    State refuse(const std::string& reason);
    State finishOpening();

    std::string_view theBytes;
    fz_context* theContext = nullptr;
    pdf_document* theDocument = nullptr;
    PageTree thePages;
    std::string theRefusal;
    Repair theRepair = Repair::isNone;
    std::string theRepairCause;
};

/// The dictionary under a key of the trailer, borrowed; null when there is none.
pdf_obj* trailerDictionary(fz_context* ctx, pdf_document* document, pdf_obj* key);

/// A page, loaded and dropped with this object.
class LoadedPage
{
public:
    /// @param index from 0; out of range counts as damaged.
    LoadedPage(const EngineDocument& document, int index);
    LoadedPage(const LoadedPage&) = delete;
    LoadedPage& operator=(const LoadedPage&) = delete;
    ~LoadedPage();

    /// Null when the page cannot be loaded; error() then tells why.
    pdf_page* page() const { return thePage; }
    int error() const { return theError; }

private:
    fz_context* theContext;
    pdf_page* thePage = nullptr;
    int theError = FZ_ERROR_GENERIC;
};

} // namespace tarnwick
