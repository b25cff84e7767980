#include "FlatWriter.h"

#include "Attempt.h"
#include "UnreadObjects.h"
#include "analysis/StructureWords.h"

#include <algorithm>
#include <cstring>

namespace tarnwick {

namespace {

constexpr int progressStep = 500;

} // namespace

FlatWriter::FlatWriter(const EngineDocument& document, int descriptor, Progress progress)
    : WrittenFile(document, WrittenStructure::isKept, descriptor)
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
    if (root == 0)
        return FZ_ERROR_GENERIC; // a repair since the opening has lost it
    const int info = trailerDictionary(theContext, theDocument.document(), PDF_NAME(Info))
        ? numbered("Info")
        : 0;
    const int total = pdf_xref_len(theContext, theDocument.document());
    writeHeader();
    WrittenObject object;
    while (theOutput.isGood() && !theObjects.error() && theObjects.takeNext(object)) {
        writeObject(object);
        pdf_drop_obj(theContext, object.object);
        if (object.number % progressStep == 0)
            theProgress(object.number, std::max(total, theObjects.count()));
    }
    writeTrailer(root, info);
    const int error = finish();
    return !error && thePagesWritten < theDocument.pageCount() ? FZ_ERROR_GENERIC : error;
}

/// Nearly always nothing was lost, and nobody has to go through the pages.
FlatWriter::Losses FlatWriter::losses() const
{
    Losses losses;
    if (lostObjects() == 0)
        return losses;
    for (int index = 0; index < theDocument.pageCount(); ++index) {
        const int number = theDocument.pageTree().pages[static_cast<std::size_t>(index)];
        pdf_obj* page = nullptr;
        const int error = attempt(theContext,
            [&] { page = pdf_lookup_page_obj(theContext, theDocument.document(), index); });
        const EngineLoss loss = error || !page || theObjects.lost().count(number) > 0
            ? EngineLoss::isDamaged
            : contentLoss(theDocument, page);
        if (loss != EngineLoss::isNone)
            losses.emplace(index, loss);
    }
    return losses;
}

void FlatWriter::writeObject(const WrittenObject& object)
{
    if (object.kind == ObjectType::isPlain)
        writePlain(object);
    else
        WrittenFile::writeObject(object.number, structure(object));
}

void FlatWriter::writeTrailer(int root, int info)
{
    ValueSpelling spelling(ObjectType::isPlain, true);
    for (const char* word : {StructureKey::info, StructureKey::root, StructureKey::size})
        spelling.avoid(word);
    std::string text;
    for (const Entry& entry : sortedEntries(pdf_trailer(theContext, theDocument.document()))) {
        if (std::strcmp(entry.key, "ID") == 0 && !pdf_is_indirect(theContext, entry.value))
            text += "/ID " + value(entry.value, spelling, 1) + " ";
    }
    if (info > 0)
        text += "/Info " + reference(info) + " ";
    WrittenFile::writeTrailer(text + "/Root " + reference(root) + " ");
}

// --- Objects of the structure ------------------------------------------------------------------

std::string FlatWriter::structure(const WrittenObject& object)
{
    if (!pdf_is_dict(theContext, object.object))
        return "null";
    const Entries entries = sortedEntries(object.object);
    switch (object.kind) {
    case ObjectType::isCatalog:
        return catalog(entries);
    case ObjectType::isPages:
        return pages(object, entries);
    default:
        ++thePagesWritten;
        return page(object, entries);
    }
}

std::string FlatWriter::parentEntry(const WrittenObject& object)
{
    if (object.parent == 0)
        return {};
    return "/Parent " + reference(theObjects.numberOf(object.parent)) + " ";
}

std::string FlatWriter::catalog(const Entries& entries)
{
    ValueSpelling spelling(ObjectType::isCatalog, true);
    std::string end;
    for (const char* key : {StructureKey::metadata, StructureKey::names, StructureKey::pages}) {
        const std::string entry = referenceEntry(key, entries);
        if (entry.empty())
            spelling.avoid(key);
        end += entry;
    }
    return "<< /Type /Catalog "
        + entriesBut({"Type", "Metadata", "Names", "Pages"}, entries, spelling, 1) + end + ">>";
}

std::string FlatWriter::pages(const WrittenObject& object, const Entries& entries)
{
    ValueSpelling spelling(ObjectType::isPages, true);
    spelling.avoid(StructureKey::kids);
    if (object.parent == 0)
        spelling.avoid(StructureKey::parent);
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

std::string FlatWriter::page(const WrittenObject& object, const Entries& entries)
{
    ValueSpelling spelling(ObjectType::isPage, true);
    const std::string contents = referenceEntry("Contents", entries);
    if (contents.empty())
        spelling.avoid(StructureKey::content);
    if (object.parent == 0)
        spelling.avoid(StructureKey::parent);
    const std::string end = contents + parentEntry(object);
    return "<< /Type /Page " + entriesBut({"Type", "Contents", "Parent"}, entries, spelling, 1)
        + end + ">>";
}

} // namespace tarnwick
