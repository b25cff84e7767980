#include "platform/engine/FlatWriter.h"

#include "platform/engine/Attempt.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace {

/// Deeper values than any writer makes are cut, so that no file can exhaust the stack.
constexpr int maximumDepth = 200;
constexpr int progressStep = 500;

std::string reference(int number)
{
    return number == 0 ? "null" : std::to_string(number) + " 0 R";
}

std::string_view nameOf(fz_context* ctx, pdf_obj* object)
{
    return pdf_is_indirect(ctx, object) ? std::string_view() : pdf_to_name(ctx, object);
}

} // namespace

FlatWriter::FlatWriter(const EngineDocument& document, int descriptor, Progress progress)
    : theDocument(document)
    , theContext(document.context())
    , theObjects(document)
    , theOutput(descriptor)
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
    if (!theOutput.finish())
        return FZ_ERROR_MEMORY;
    return theObjects.error();
}

/// The comment of high bytes tells programs that move files about that this is no text.
void FlatWriter::writeHeader()
{
    int version = theDocument.version();
    if (version < 10 || version > 99)
        version = 17;
    theOutput.write("%PDF-" + std::to_string(version / 10) + "." + std::to_string(version % 10)
        + "\n%\xe2\xe3\xcf\xd3\n");
}

void FlatWriter::writeObject(const FlatObject& object)
{
    std::optional<FlatStream> stream;
    if (object.kind == FlatKind::isPlain && object.source > 0)
        stream = loadFlatStream(theDocument, object.object, object.source);
    std::string text = object.kind == FlatKind::isPlain
        ? plain(object.object, stream ? &*stream : nullptr)
        : structure(object);
    theOffsets.push_back(theOutput.position());
    theOutput.write(std::to_string(object.number) + " 0 obj\n" + text + "\n");
    if (stream) {
        theOutput.write("stream\n");
        theOutput.write(stream->data);
        theOutput.write("\nendstream\n");
    }
    theOutput.write("endobj\n");
}

void FlatWriter::writeTrailer(int root, int info)
{
    const std::uint64_t start = theOutput.position();
    const std::string size = std::to_string(theOffsets.size() + 1);
    theOutput.write("xref\n0 " + size + "\n0000000000 65535 f \n");
    for (const std::uint64_t offset : theOffsets) {
        char row[32];
        std::snprintf(
            row, sizeof row, "%010llu 00000 n \n", static_cast<unsigned long long>(offset));
        theOutput.write(row);
    }
    FlatSpelling spelling(FlatKind::isPlain, true);
    for (const std::string_view word : {"Info", "Root", "Size"})
        spelling.avoid(word);
    std::string text = "trailer\n<< ";
    for (const Entry& entry : sortedEntries(pdf_trailer(theContext, theDocument.document()))) {
        if (std::strcmp(entry.key, "ID") == 0 && !pdf_is_indirect(theContext, entry.value))
            text += "/ID " + value(entry.value, spelling, 1) + " ";
    }
    if (info > 0)
        text += "/Info " + reference(info) + " ";
    text += "/Root " + reference(root) + " /Size " + size + " >>\n";
    theOutput.write(text + "startxref\n" + std::to_string(start) + "\n%%EOF\n");
}

/// In the order of their keys: MuPDF keeps dictionaries now as they stood, now sorted.
FlatWriter::Entries FlatWriter::sortedEntries(pdf_obj* dictionary) const
{
    Entries entries;
    const int count = pdf_dict_len(theContext, dictionary);
    for (int index = 0; index < count; ++index) {
        const Entry entry{pdf_to_name(theContext, pdf_dict_get_key(theContext, dictionary, index)),
            pdf_dict_get_val(theContext, dictionary, index)};
        const bool isNull
            = !pdf_is_indirect(theContext, entry.value) && pdf_is_null(theContext, entry.value);
        if (!isNull)
            entries.push_back(entry);
    }
    const auto rank = [](const char* key) {
        return std::strcmp(key, "Type") == 0 ? 0 : std::strcmp(key, "Subtype") == 0 ? 1 : 2;
    };
    std::sort(entries.begin(), entries.end(), [rank](const Entry& one, const Entry& other) {
        const int left = rank(one.key);
        const int right = rank(other.key);
        return left != right ? left < right : std::strcmp(one.key, other.key) < 0;
    });
    return entries;
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

std::string FlatWriter::referenceEntry(const char* key, const Entries& entries)
{
    for (const Entry& entry : entries) {
        if (std::strcmp(entry.key, key) != 0)
            continue;
        const int number = pdf_is_indirect(theContext, entry.value)
            ? theObjects.numberOf(entry.value)
            : theObjects.numberOfInner(entry.value);
        return number == 0 ? std::string() : "/" + (key + (" " + reference(number))) + " ";
    }
    return {};
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

// --- All other objects ---------------------------------------------------------------------------

/// A name that stands in a dictionary itself, not behind a reference; empty without one.
std::string_view FlatWriter::nameIn(pdf_obj* dictionary, const char* key) const
{
    const int count
        = pdf_is_dict(theContext, dictionary) ? pdf_dict_len(theContext, dictionary) : 0;
    for (int index = 0; index < count; ++index) {
        pdf_obj* const found = pdf_dict_get_key(theContext, dictionary, index);
        if (std::strcmp(pdf_to_name(theContext, found), key) == 0)
            return nameOf(theContext, pdf_dict_get_val(theContext, dictionary, index));
    }
    return {};
}

/// The kind that a plain object's own Type names.
FlatKind FlatWriter::wantedKind(pdf_obj* object) const
{
    const std::string_view type = nameIn(object, "Type");
    if (type == "Info")
        return FlatKind::isInfo;
    return type == "Names" ? FlatKind::isNames : FlatKind::isPlain;
}

/// Metadata is shown line by line, unless its lines would be taken for objects.
bool FlatWriter::mayShowXml(pdf_obj* dictionary, const FlatStream& stream) const
{
    return nameIn(dictionary, "Subtype") == "XML"
        && (stream.hasFilter("FlateDecode")
            || (stream.filters.empty() && !FlatSpelling::looksLikeObjects(stream.data)));
}

/// Readable when that misleads nobody, otherwise spelled strictly.
std::string FlatWriter::plain(pdf_obj* object, const FlatStream* stream)
{
    const FlatKind wanted = wantedKind(object);
    std::string text;
    for (const bool isStrict : {false, true}) {
        FlatSpelling spelling(wanted, isStrict);
        if (stream && mayShowXml(object, *stream))
            spelling.allowXml();
        text = spelled(object, stream, spelling);
        if (FlatSpelling::kindOf(text) == wanted)
            break;
    }
    return text;
}

std::string FlatWriter::spelled(
    pdf_obj* object, const FlatStream* stream, const FlatSpelling& spelling)
{
    if (!stream)
        return value(object, spelling, 0);
    return "<< "
        + entriesBut({"Length", "Filter", "DecodeParms"}, sortedEntries(object), spelling, 1)
        + streamEntries(*stream, spelling) + ">>";
}

std::string FlatWriter::streamEntries(const FlatStream& stream, const FlatSpelling& spelling)
{
    std::string names;
    std::string parameters;
    bool hasParameters = false;
    for (const FlatStream::Filter& filter : stream.filters) {
        names += spelling.name(filter.name) + " ";
        parameters += filter.parameters ? value(filter.parameters, spelling, 1) + " " : "null ";
        hasParameters = hasParameters || filter.parameters;
    }
    if (stream.filters.size() > 1) {
        names = "[ " + names + "] ";
        parameters = "[ " + parameters + "] ";
    }
    std::string text;
    if (hasParameters)
        text += "/DecodeParms " + parameters;
    if (!names.empty())
        text += "/Filter " + names;
    return text + "/Length " + std::to_string(stream.data.size()) + " ";
}

std::string FlatWriter::entriesBut(std::initializer_list<std::string_view> keys,
    const Entries& entries, const FlatSpelling& spelling, int depth)
{
    std::string text;
    for (const Entry& entry : entries) {
        if (std::find(keys.begin(), keys.end(), entry.key) == keys.end())
            text += spelling.name(entry.key) + " " + value(entry.value, spelling, depth) + " ";
    }
    return text;
}

std::string FlatWriter::dictionary(pdf_obj* object, const FlatSpelling& spelling, int depth)
{
    return "<< " + entriesBut({}, sortedEntries(object), spelling, depth + 1) + ">>";
}

std::string FlatWriter::array(pdf_obj* object, const FlatSpelling& spelling, int depth)
{
    std::string text = "[ ";
    const int count = pdf_array_len(theContext, object);
    for (int index = 0; index < count; ++index)
        text += value(pdf_array_get(theContext, object, index), spelling, depth + 1) + " ";
    return text + "]";
}

/// None of what is called here throws: the objects are no references, and are there.
std::string FlatWriter::value(pdf_obj* object, const FlatSpelling& spelling, int depth)
{
    if (pdf_is_indirect(theContext, object))
        return reference(theObjects.numberOf(object));
    if (depth > maximumDepth)
        return "null";
    if (pdf_is_dict(theContext, object))
        return dictionary(object, spelling, depth);
    if (pdf_is_array(theContext, object))
        return array(object, spelling, depth);
    if (pdf_is_name(theContext, object))
        return spelling.name(pdf_to_name(theContext, object));
    if (pdf_is_string(theContext, object)) {
        std::size_t size = 0;
        const char* const bytes = pdf_to_string(theContext, object, &size);
        return spelling.string({bytes, size});
    }
    if (pdf_is_int(theContext, object))
        return std::to_string(pdf_to_int64(theContext, object));
    if (pdf_is_real(theContext, object))
        return flatReal(pdf_to_real(theContext, object));
    if (pdf_is_bool(theContext, object))
        return pdf_to_bool(theContext, object) ? "true" : "false";
    return "null";
}
