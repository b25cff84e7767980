#include "platform/engine/FlatWriter.h"

#include "platform/engine/Attempt.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr int progressStep = 500;

} // namespace

FlatWriter::FlatWriter(const EngineDocument& document, int descriptor, Progress progress)
    : FlatFile(document, FlatStructure::isKept, descriptor)
    , theProgress(std::move(progress))
{
}

int FlatWriter::write()
{
    pdf_obj* const trailer = pdf_trailer(theContext, theDocument.document());
    const auto numbered = [&](const char* key) {
        for (const Entry& entry : sortedEntries(trailer)) {
            if (std::strcmp(entry.key, key) != 0)
                continue;
            return pdf_is_indirect(theContext, entry.value) ? theObjects.numberOf(entry.value)
                                                            : theObjects.numberOfInner(entry.value);
        }
        return 0;
    };
    const int root = numbered("Root");
    const int info = trailerDictionary(theContext, theDocument.document(), PDF_NAME(Info))
        ? numbered("Info")
        : 0;
    const int total = pdf_xref_len(theContext, theDocument.document());
    writeHeader();
    FlatObject object;
    while (theOutput.isGood() && !theObjects.error() && theObjects.takeNext(object)) {
        writeObject(object);
        pdf_drop_obj(theContext, object.object);
        if (object.number % progressStep == 0)
            theProgress(object.number, std::max(total, theObjects.count()));
    }
    writeTrailer(root, info);
    return finish();
}

void FlatWriter::writeObject(const FlatObject& object)
{
    if (object.kind == FlatKind::isPlain)
        writePlain(object);
    else
        FlatFile::writeObject(object.number, structure(object));
}

void FlatWriter::writeTrailer(int root, int info)
{
    FlatSpelling spelling(FlatKind::isPlain, true);
    for (const std::string_view word : {"Info", "Root", "Size"})
        spelling.avoid(word);
    std::string text;
    for (const Entry& entry : sortedEntries(pdf_trailer(theContext, theDocument.document()))) {
        if (std::strcmp(entry.key, "ID") == 0 && !pdf_is_indirect(theContext, entry.value))
            text += "/ID " + value(entry.value, spelling, 1) + " ";
    }
    if (info > 0)
        text += "/Info " + reference(info) + " ";
    FlatFile::writeTrailer(text + "/Root " + reference(root) + " ");
}

// --- Objects of the structure ------------------------------------------------------------------

std::string FlatWriter::structure(const FlatObject& object)
{
    if (!pdf_is_dict(theContext, object.object))
        return "null";
    const Entries entries = sortedEntries(object.object);
    switch (object.kind) {
    case FlatKind::isCatalog:
        return catalog(entries);
    case FlatKind::isPages:
        return pages(object, entries);
    default:
        return page(object, entries);
    }
}

std::string FlatWriter::parentEntry(const FlatObject& object)
{
    if (object.parent == 0)
        return {};
    return "/Parent " + reference(theObjects.numberOf(object.parent)) + " ";
}

std::string FlatWriter::catalog(const Entries& entries)
{
    FlatSpelling spelling(FlatKind::isCatalog, true);
    std::string end;
    for (const char* key : {"Metadata", "Names", "Pages"}) {
        const std::string entry = referenceEntry(key, entries);
        if (entry.empty())
            spelling.avoid(key);
        end += entry;
    }
    return "<< /Type /Catalog "
        + entriesBut({"Type", "Metadata", "Names", "Pages"}, entries, spelling, 1) + end + ">>";
}

std::string FlatWriter::pages(const FlatObject& object, const Entries& entries)
{
    FlatSpelling spelling(FlatKind::isPages, true);
    spelling.avoid("Kids");
    if (object.parent == 0)
        spelling.avoid("Parent");
    pdf_obj* kids = nullptr;
    const int error = attempt(
        theContext, [&] { kids = pdf_dict_get(theContext, object.object, PDF_NAME(Kids)); });
    std::string end = "/Kids [ ";
    if (!error) {
        for (const int kid : theObjects.kidsOf(object, kids))
            end += reference(kid) + " ";
    }
    const auto count = theDocument.pageTree().nodes.find(object.source);
    const int pageCount = count != theDocument.pageTree().nodes.end() ? count->second : 0;
    end += "] /Count " + std::to_string(pageCount) + " " + parentEntry(object);
    return "<< /Type /Pages "
        + entriesBut({"Type", "Kids", "Count", "Parent"}, entries, spelling, 1) + end + ">>";
}

std::string FlatWriter::page(const FlatObject& object, const Entries& entries)
{
    FlatSpelling spelling(FlatKind::isPage, true);
    const std::string contents = referenceEntry("Contents", entries);
    if (contents.empty())
        spelling.avoid("Content");
    if (object.parent == 0)
        spelling.avoid("Parent");
    const std::string end = contents + parentEntry(object);
    return "<< /Type /Page " + entriesBut({"Type", "Contents", "Parent"}, entries, spelling, 1)
        + end + ">>";
}
