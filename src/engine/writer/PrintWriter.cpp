#include "PrintWriter.h"

namespace tarnwick {

namespace {

constexpr int progressStep = 20;

} // namespace

PrintWriter::PrintWriter(
    const EngineDocument& document, const PrintRequest& order, int descriptor, Progress progress)
    : PageForms(document, descriptor)
    , theOrder(order)
    , theProgress(std::move(progress))
{
}

int PrintWriter::write()
{
    const int catalog = theObjects.reserve();
    const int pages = theObjects.reserve();
    const auto total = static_cast<int>(theOrder.sheets.size());
    std::vector<int> kids;
    writeHeader();
    for (const EngineSheet& sheet : theOrder.sheets) {
        const int number = theObjects.reserve();
        writeSheet(sheet, number, pages);
        writeReached();
        kids.push_back(number);
        if (formError() || theObjects.error() || !theOutput.isGood())
            break;
        if (kids.size() % progressStep == 0)
            theProgress(static_cast<int>(kids.size()), total);
    }
    writePages(pages, kids);
    writeCatalog(catalog, pages);
    writeReached();
    writeTrailer("/Root " + reference(catalog) + " ");
    const int error = finish();
    return formError() ? formError() : error;
}

/// What the last objects lead to, so that few wait at a time.
void PrintWriter::writeReached()
{
    WrittenObject object;
    while (theOutput.isGood() && !theObjects.error() && theObjects.takeNext(object)) {
        writePlain(object);
        pdf_drop_obj(theContext, object.object);
    }
}

void PrintWriter::writePages(int number, const std::vector<int>& kids)
{
    std::string text = "<< /Type /Pages /MediaBox [ 0 0 "
        + numbers({theOrder.width, theOrder.height}) + "] /Count " + std::to_string(kids.size())
        + " /Kids [ ";
    for (const int kid : kids)
        text += reference(kid) + " ";
    writeObject(number, text + "] >>");
}

/// Layers that are off, and the colours that a device's are taken for, are part of the looks.
void PrintWriter::writeCatalog(int number, int pages)
{
    std::string text = "<< /Type /Catalog ";
    pdf_obj* const root = trailerDictionary(theContext, theDocument.document(), PDF_NAME(Root));
    const Entries entries = sortedEntries(root);
    for (const char* key : {"OCProperties", "OutputIntents"})
        text += referenceEntry(key, entries);
    writeObject(number, text + "/Pages " + reference(pages) + " >>");
}

// --- Sheets --------------------------------------------------------------------------------------

void PrintWriter::writeSheet(const EngineSheet& sheet, int number, int parent)
{
    const Form& form = formOf(sheet.page);
    std::string entries = "/Resources << >> ";
    if (form.number > 0)
        entries = "/Resources << /XObject << /P " + reference(form.number) + " >> >> /Contents "
            + reference(contentsOf(sheet, form)) + " ";
    writeObject(number, "<< /Type /Page /Parent " + reference(parent) + " " + entries + ">>");
}

int PrintWriter::contentsOf(const EngineSheet& sheet, const Form& form)
{
    int& number = theContents[{
        static_cast<double>(sheet.page), sheet.x, sheet.y, sheet.width, sheet.height, sheet.scale}];
    if (number > 0)
        return number;
    number = theObjects.reserve();
    const auto scale = static_cast<float>(sheet.scale);
    const auto right = static_cast<float>(theOrder.left - sheet.x);
    const auto down = static_cast<float>(theOrder.top - sheet.y);
    fz_matrix toPaper = fz_concat(form.toPageSpace, fz_scale(scale, scale));
    toPaper = fz_concat(toPaper, fz_translate(right, down));
    toPaper
        = fz_concat(toPaper, fz_make_matrix(1, 0, 0, -1, 0, static_cast<float>(theOrder.height)));
    WrittenStream stream;
    stream.data = numbers({theOrder.left, theOrder.height - theOrder.top - sheet.height,
                      sheet.width, sheet.height})
        + "re W n " + concatenation(toPaper) + "/P Do";
    writeObject(number, "<< /Length " + std::to_string(stream.data.size()) + " >>", &stream);
    return number;
}

} // namespace tarnwick
