#include "ObjectCommand.h"

#include "CommandOutput.h"
#include "analysis/BlockMasks.h"
#include "analysis/Findings.h"
#include "analysis/ObjectKind.h"
#include "analysis/SourceText.h"
#include "analysis/StoredStream.h"

#include <algorithm>
#include <limits>
#include <string>

#include <unistd.h>

namespace tarnwick {

namespace {

std::optional<pdfObject> wantedObject(const pdfObjectCatalog& catalog, const Arguments& arguments)
{
    const std::int64_t version
        = arguments.atVersion.value_or(std::numeric_limits<std::int64_t>::max());
    if (!arguments.objGen)
        return catalog.find(*arguments.objNo, version);
    std::optional<pdfObject> found;
    for (const pdfObject& object : catalog.findAll(*arguments.objNo)) {
        if (object.objVer() <= version && object.objGen() == *arguments.objGen)
            found = object;
    }
    return found;
}

ExitStatus complainMissing(const pdfObjectCatalog& catalog, const Arguments& arguments)
{
    std::string reason = "there is no object " + std::to_string(*arguments.objNo);
    if (arguments.objGen)
        reason += ' ' + std::to_string(*arguments.objGen);
    reason += " in the listing";
    if (arguments.atVersion)
        reason += " at version " + std::to_string(*arguments.atVersion);
    std::string others;
    for (const pdfObject& object : catalog.findAll(*arguments.objNo))
        others += (others.empty() ? "" : ", ") + shownNumbers(object);
    if (!others.empty() && others.size() < 200)
        reason += "; there is " + others + " (number, generation, version)";
    complain(ExitStatus::isFailed, arguments.file, reason);
    reportHidden(catalog, arguments, nullptr);
    return ExitStatus::isFailed;
}

/// An object with what is read of it.
struct Shown
{
    /// @param theObject nothing for one that the listing has no record of.
    Shown(const pdfObjectCatalog& theCatalog, std::optional<pdfObject> theObject, ByteRange place)
        : catalog(theCatalog)
        , object(theObject)
        , range(place)
        , source(theCatalog.bytes(), range, range.size())
    {
        if (object)
            stream = storedStream(catalog, *object, source);
        else if (source.streamBegin())
            stream = findStream(catalog.bytes(), range, source, source.integer("Length"));
        range.end = endOfObject();
    }

    /// Behind "endobj"; the listing's own idea where none follows.
    std::size_t endOfObject() const
    {
        const std::size_t end = stream ? stream->range.end : source.valueEnd();
        SourceLexer lexer(
            catalog.bytes(), end, std::max(end, nextLineBreak(catalog.bytes(), range.end)));
        for (int words = 0; words < 2; ++words) {
            const SourceToken token = lexer.next();
            if (bytes(token.begin, token.end) == "endobj")
                return token.end;
        }
        return nextLineBreak(catalog.bytes(), range.end);
    }

    std::string_view bytes(std::size_t begin, std::size_t end) const
    {
        return catalog.bytes().substr(begin, end - begin);
    }

    /// As stored, but for the data of a stream, of which only the length is told.
    std::string text() const
    {
        if (!stream || stream->range.end > range.end)
            return std::string(bytes(range.begin, range.end));
        return std::string(bytes(range.begin, stream->range.begin)) + "[...stream length "
            + std::to_string(stream->range.size()) + "...]"
            + std::string(bytes(stream->range.end, range.end));
    }

    const pdfObjectCatalog& catalog;
    std::optional<pdfObject> object;
    ByteRange range;
    ObjectSource source;
    std::optional<StoredStream> stream;
};

ExitStatus printRaw(const Shown& shown, const Arguments& arguments)
{
    const std::string name = "object " + std::to_string(*arguments.objNo);
    if (!shown.stream)
        return complain(ExitStatus::isFailed, arguments.file, name + " has no stream");
    if (::isatty(STDOUT_FILENO) != 0)
        return complain(ExitStatus::isWrongUse, arguments.file,
            "--raw prints bytes that a terminal may obey; send them to a file or a pipe");
    ExitStatus status = ExitStatus::isDone;
    if (shown.stream->end == StoredStream::End::isMissing)
        status = complain(ExitStatus::isIncomplete, arguments.file,
            "the stream of " + name + " has no end; it is printed up to the end of the object");
    else if (shown.stream->end == StoredStream::End::isKeyword && shown.stream->length)
        complain(status, arguments.file,
            "the Length of " + name + " is " + std::to_string(*shown.stream->length)
                + ", but \"endstream\" stands behind " + std::to_string(shown.stream->range.size())
                + " bytes, which are printed");
    return printBytes(shown.bytes(shown.stream->range.begin, shown.stream->range.end), status);
}

void appendStream(const Shown& shown, JsonText& json)
{
    json.key("stream");
    if (!shown.stream) {
        json.null();
        return;
    }
    const StoredStream& stream = *shown.stream;
    json.open('{').key("offset").number(stream.range.begin);
    json.key("length").number(stream.range.size()).key("lengthEntry");
    if (stream.length)
        json.number(*stream.length);
    else
        json.null();
    constexpr std::string_view ends[] = {"Length", "endstream", "none"};
    json.key("endsBy").string(ends[static_cast<std::size_t>(stream.end)]).close('}');
}

void appendReferences(const Shown& shown, JsonText& json)
{
    json.key("references").open('[');
    forEachReference(shown.catalog.bytes(), shown.source, [&](const PlacedReference& reference) {
        json.open('{').key("path").string(reference.path);
        json.key("offset").number(reference.token.begin);
        json.key("number").number(reference.token.number);
        json.key("generation").number(reference.token.generation).close('}');
        return true;
    });
    json.close(']');
}

void appendWhose(const Shown& shown, const Arguments& arguments, JsonText& json)
{
    if (shown.object) {
        appendObject(shown.catalog, *shown.object, json);
    } else {
        json.key("number").number(*arguments.objNo).key("generation").null();
        json.key("version").null();
        json.key("kind").string(objectKind(shown.catalog.bytes(), shown.source));
    }
    json.key("replacedIn");
    const ObjectState state
        = shown.object ? objectState(shown.catalog, *shown.object) : ObjectState();
    if (state.replacedIn)
        json.number(*state.replacedIn);
    else
        json.null();
}

std::string jsonOf(const Shown& shown, const Arguments& arguments)
{
    JsonText json = JsonText::ofCommand("object");
    appendWhose(shown, arguments, json);
    json.key("offset").number(shown.range.begin).key("length").number(shown.range.size());
    const std::size_t sourceEnd = shown.stream ? shown.stream->range.begin : shown.range.end;
    json.key("source").string(shown.bytes(shown.range.begin, sourceEnd));
    appendStream(shown, json);
    appendReferences(shown, json);
    json.key("all").open('[');
    for (const pdfObject& other : shown.catalog.findAll(*arguments.objNo)) {
        json.open('{').key("generation").number(other.objGen());
        json.key("version").number(other.objVer());
        json.key("offset").number(other.range().begin).close('}');
    }
    return json.close(']').close('}').text() + '\n';
}

/// One that the listing has a record of, or else one that only stands in the file.
std::optional<Shown> findShown(const pdfObjectCatalog& catalog, const Arguments& arguments)
{
    if (const std::optional<pdfObject> object = wantedObject(catalog, arguments))
        return Shown(catalog, object, object->range());
    if (arguments.objGen || arguments.atVersion)
        return std::nullopt;
    const std::optional<ByteRange> range = findUnlisted(catalog, *arguments.objNo);
    if (!range)
        return std::nullopt;
    complain(ExitStatus::isDone, arguments.file,
        "object " + std::to_string(*arguments.objNo)
            + " is not in the listing; it is printed as it stands at offset "
            + std::to_string(range->begin));
    return Shown(catalog, std::nullopt, *range);
}

} // namespace

ExitStatus objectCommand(const Arguments& arguments, const SharedBytes& bytes)
{
    SourceText source(bytes);
    source.scan({});
    const pdfObjectCatalog& catalog = source.theCatalog();
    const std::optional<Shown> shown = findShown(catalog, arguments);
    if (!shown)
        return complainMissing(catalog, arguments);
    if (arguments.raw)
        return printRaw(*shown, arguments);
    return printBytes(
        arguments.json ? jsonOf(*shown, arguments) : shown->text() + '\n', ExitStatus::isDone);
}

} // namespace tarnwick
