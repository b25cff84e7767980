#include "WrittenFile.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace tarnwick {

namespace {

/// Deeper values than any writer makes are cut, so that no file can exhaust the stack.
constexpr int maximumDepth = 200;

std::string_view nameOf(fz_context* ctx, pdf_obj* object)
{
    return pdf_is_indirect(ctx, object) ? std::string_view() : pdf_to_name(ctx, object);
}

} // namespace

WrittenFile::WrittenFile(const EngineDocument& document, WrittenStructure structure, int descriptor)
    : theDocument(document)
    , theContext(document.context())
    , theObjects(document, structure)
    , theOutput(descriptor)
    , theLongNames(document)
{
}

std::string WrittenFile::reference(int number)
{
    return number == 0 ? "null" : std::to_string(number) + " 0 R";
}

/// The comment of high bytes tells programs that move files about that this is no text.
void WrittenFile::writeHeader()
{
    PdfVersion version = theDocument.version();
    if (version.major < 1 || version.major > 9 || version.minor > 9)
        version = {1, 7}; // no version that any PDF has
    theOutput.write("%PDF-" + std::to_string(version.major) + "." + std::to_string(version.minor)
        + "\n%\xe2\xe3\xcf\xd3\n");
}

void WrittenFile::writeObject(int number, std::string_view text, const WrittenStream* stream)
{
    const auto index = static_cast<std::size_t>(number) - 1;
    theOffsets.resize(std::max(theOffsets.size(), index + 1));
    theOffsets[index] = theOutput.position();
    theOutput.write(std::to_string(number) + " 0 obj\n");
    theOutput.write(text);
    theOutput.write("\n");
    if (stream) {
        theOutput.write("stream\n");
        theOutput.write(stream->data);
        theOutput.write("\nendstream\n");
    }
    theOutput.write("endobj\n");
}

void WrittenFile::writePlain(const WrittenObject& object)
{
    std::optional<WrittenStream> stream;
    if (object.source > 0)
        stream = loadStream(theDocument, object.object, object.source);
    if (stream && stream->isLost)
        theObjects.addLost(object.source);
    const WrittenStream* const data = stream ? &*stream : nullptr;
    writeObject(object.number, plain(object.object, data), data);
}

void WrittenFile::writeTrailer(const std::string& entries)
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
    theOutput.write("trailer\n<< " + entries + "/Size " + size + " >>\nstartxref\n"
        + std::to_string(start) + "\n%%EOF\n");
}

int WrittenFile::finish()
{
    return theOutput.finish() ? theObjects.error() : FZ_ERROR_MEMORY;
}

/// In the order of their keys: MuPDF keeps dictionaries now as they stood, now sorted.
WrittenFile::Entries WrittenFile::sortedEntries(pdf_obj* dictionary) const
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

std::string WrittenFile::referenceEntry(const char* key, const Entries& entries)
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

/// A name that stands in a dictionary itself, not behind a reference; empty without one.
std::string_view WrittenFile::nameIn(pdf_obj* dictionary, const char* key) const
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
ObjectType WrittenFile::wantedKind(pdf_obj* object) const
{
    const std::string_view type = nameIn(object, "Type");
    if (type == "Info")
        return ObjectType::isInfo;
    return type == "Names" ? ObjectType::isNames : ObjectType::isPlain;
}

/// Metadata is shown line by line, unless its lines would be taken for objects.
bool WrittenFile::mayShowXml(pdf_obj* dictionary, const WrittenStream& stream) const
{
    return nameIn(dictionary, "Subtype") == "XML"
        && (stream.hasFilter("FlateDecode")
            || (stream.filters.empty() && !ValueSpelling::looksLikeObjects(stream.data)));
}

/// Readable when that misleads nobody, otherwise spelled strictly.
std::string WrittenFile::plain(pdf_obj* object, const WrittenStream* stream)
{
    const ObjectType wanted = wantedKind(object);
    std::string text;
    for (const bool isStrict : {false, true}) {
        ValueSpelling spelling(wanted, isStrict);
        if (stream && mayShowXml(object, *stream))
            spelling.allowXml();
        text = spelled(object, stream, spelling);
        if (ValueSpelling::kindOf(text) == wanted)
            break;
    }
    return text;
}

std::string WrittenFile::spelled(
    pdf_obj* object, const WrittenStream* stream, const ValueSpelling& spelling)
{
    if (!stream)
        return value(object, spelling, 0);
    return "<< "
        + entriesBut({"Length", "Filter", "DecodeParms"}, sortedEntries(object), spelling, 1)
        + streamEntries(*stream, spelling) + ">>";
}

std::string WrittenFile::streamEntries(const WrittenStream& stream, const ValueSpelling& spelling)
{
    std::string names;
    std::string parameters;
    bool hasParameters = false;
    for (const WrittenStream::Filter& filter : stream.filters) {
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

std::string WrittenFile::entriesBut(std::initializer_list<std::string_view> keys,
    const Entries& entries, const ValueSpelling& spelling, int depth)
{
    std::string text;
    for (const Entry& entry : entries) {
        if (std::find(keys.begin(), keys.end(), entry.key) == keys.end())
            text += name(entry.key, spelling) + " " + value(entry.value, spelling, depth) + " ";
    }
    return text;
}

std::string WrittenFile::name(const char* name, const ValueSpelling& spelling)
{
    return spelling.name(theLongNames.whole(name));
}

std::string WrittenFile::dictionary(pdf_obj* object, const ValueSpelling& spelling, int depth)
{
    return "<< " + entriesBut({}, sortedEntries(object), spelling, depth + 1) + ">>";
}

std::string WrittenFile::array(pdf_obj* object, const ValueSpelling& spelling, int depth)
{
    std::string text = "[ ";
    const int count = pdf_array_len(theContext, object);
    for (int index = 0; index < count; ++index)
        text += value(pdf_array_get(theContext, object, index), spelling, depth + 1) + " ";
    return text + "]";
}

/// None of what is called here throws: the objects are no references, and are there.
std::string WrittenFile::value(pdf_obj* object, const ValueSpelling& spelling, int depth)
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
        return name(pdf_to_name(theContext, object), spelling);
    if (pdf_is_string(theContext, object)) {
        std::size_t size = 0;
        const char* const bytes = pdf_to_string(theContext, object, &size);
        return spelling.string({bytes, size});
    }
    if (pdf_is_int(theContext, object))
        return std::to_string(pdf_to_int64(theContext, object));
    if (pdf_is_real(theContext, object))
        return realText(pdf_to_real(theContext, object));
    if (pdf_is_bool(theContext, object))
        return pdf_to_bool(theContext, object) ? "true" : "false";
    return "null";
}

} // namespace tarnwick
