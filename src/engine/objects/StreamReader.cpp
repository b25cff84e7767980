#include "StreamReader.h"

#include "Attempt.h"
#include "FlateTail.h"
#include "LibraryRemarks.h"
#include "ObjectEntry.h"
#include "ObjectText.h"
#include "WrittenStream.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace tarnwick {

namespace {

constexpr std::size_t portion = 64 * 1024; ///< bytes
constexpr std::uint64_t mebibyte = 1u << 20;

/// Those of ISO 32000-2, 7.4, and the short names that inline images have for them.
constexpr std::array<std::string_view, 17> knownFilters = {"ASCIIHexDecode", "AHx", "ASCII85Decode",
    "A85", "LZWDecode", "LZW", "FlateDecode", "Fl", "RunLengthDecode", "RL", "CCITTFaxDecode",
    "CCF", "JBIG2Decode", "DCTDecode", "DCT", "JPXDecode", "Crypt"};

/// The object of a number, kept for this object's life; null when there is none.
class LoadedObject
{
public:
    LoadedObject(const EngineDocument& document, int number)
        : theContext(document.context())
    {
        theError = attempt(theContext,
            [&] { theObject = pdf_load_object(theContext, document.document(), number); });
    }
    LoadedObject(const LoadedObject&) = delete;
    LoadedObject& operator=(const LoadedObject&) = delete;
    ~LoadedObject() { pdf_drop_obj(theContext, theObject); }
    pdf_obj* object() const { return theError ? nullptr : theObject; }

private:
    fz_context* theContext;
    pdf_obj* theObject = nullptr;
    int theError = FZ_ERROR_NONE;
};

/// Cross-reference streams are not encrypted (ISO 32000-2, 7.5.8.2), yet the library would decrypt
/// them as all others: the document forgets its key while one is opened.
class OwnEncryption
{
public:
    OwnEncryption(const EngineDocument& document, pdf_obj* dictionary)
        : theDocument(document.document())
        , theCrypt(theDocument->crypt)
    {
        fz_context* const ctx = document.context();
        const int error = attempt(ctx, [&] {
            pdf_obj* const type = pdf_dict_get(ctx, dictionary, PDF_NAME(Type));
            if (pdf_name_eq(ctx, type, PDF_NAME(XRef)))
                theDocument->crypt = nullptr;
        });
        static_cast<void>(error); // it is no cross-reference stream then
    }
    OwnEncryption(const OwnEncryption&) = delete;
    OwnEncryption& operator=(const OwnEncryption&) = delete;
    ~OwnEncryption() { theDocument->crypt = theCrypt; }

private:
    pdf_document* theDocument;
    pdf_crypt* theCrypt;
};

bool isStream(const EngineDocument& document, int number)
{
    if (objectEntry(document, number).state != EngineObjectState::isPresent)
        return false;
    int found = 0;
    const int error = attempt(document.context(),
        [&] { found = pdf_obj_num_is_stream(document.context(), document.document(), number); });
    return !error && found;
}

} // namespace

StreamReader::StreamReader(
    const EngineDocument& document, const StreamRequest& request, int descriptor, Progress progress)
    : theDocument(document)
    , theContext(document.context())
    , theRequest(request)
    , theOutput(descriptor)
    , theProgress(std::move(progress))
{
}

int StreamReader::read(StreamResult& result)
{
    if (!isStream(theDocument, theRequest.number))
        return FZ_ERROR_NONE;
    result.remark = obstacle();
    if (!result.remark.empty()) {
        result.end = EngineStreamEnd::isUnknown;
        return FZ_ERROR_NONE;
    }
    copy(result);
    if (result.end == EngineStreamEnd::isDamaged && isFlateAlone())
        copyTail();
    if (result.remark.empty() && staysPacked())
        result.remark = "/JPXDecode is not undone";
    result.size = theOutput.position();
    return theOutput.finish() ? FZ_ERROR_NONE : FZ_ERROR_MEMORY;
}

/// The library would pass the data through a filter that it does not know, and on to the next.
std::string StreamReader::obstacle() const
{
    if (theRequest.form == EngineStreamForm::isRaw)
        return {};
    const LoadedObject dictionary(theDocument, theRequest.number);
    if (const std::uint32_t count = countFilters(theContext, dictionary.object());
        count > static_cast<std::uint32_t>(maximumFilters))
        return "The stream names " + std::to_string(count) + " filters.";
    for (const WrittenStream::Filter& filter : readFilters(theContext, dictionary.object())) {
        if (std::find(knownFilters.begin(), knownFilters.end(), filter.name) == knownFilters.end())
            return "The filter " + ObjectText::name(filter.name) + " is not known.";
    }
    return {};
}

/// @returns null when it cannot be opened.
fz_stream* StreamReader::open(EngineStreamForm form) const
{
    const LoadedObject dictionary(theDocument, theRequest.number);
    const OwnEncryption encryption(theDocument, dictionary.object());
    pdf_document* const file = theDocument.document();
    fz_stream* stream = nullptr;
    const int error = attempt(theContext, [&] {
        stream = form == EngineStreamForm::isRaw
            ? pdf_open_raw_stream_number(theContext, file, theRequest.number)
            : pdf_open_stream_number(theContext, file, theRequest.number);
    });
    return error ? nullptr : stream;
}

void StreamReader::copy(StreamResult& result)
{
    const LibraryRemarks remarks(theContext);
    fz_stream* const stream = open(theRequest.form);
    result.end = stream ? EngineStreamEnd::isWhole : EngineStreamEnd::isDamaged;
    if (stream)
        copyFrom(stream, result);
    fz_drop_stream(theContext, stream);
    if (remarks.tellDamage() && result.end == EngineStreamEnd::isWhole)
        result.end = EngineStreamEnd::isDamaged;
    result.remark = remarks.first();
}

/// Until the end, the limit or the first damage.
void StreamReader::copyFrom(fz_stream* stream, StreamResult& result)
{
    while (theOutput.isGood()) {
        std::size_t got = 0;
        if (attempt(theContext, [&] { got = fz_available(theContext, stream, portion); }) != 0
            || stream->error) {
            result.end = EngineStreamEnd::isDamaged;
            return;
        }
        if (got == 0)
            return;
        const std::uint64_t room = theRequest.limit - theOutput.position();
        if (room == 0) {
            result.end = EngineStreamEnd::isStopped;
            return;
        }
        got = static_cast<std::size_t>(std::min<std::uint64_t>(got, room));
        write({reinterpret_cast<const char*>(stream->rp), got});
        stream->rp += got;
    }
}

void StreamReader::write(std::string_view bytes)
{
    const std::uint64_t before = theOutput.position() / mebibyte;
    theOutput.write(bytes);
    const std::uint64_t now = theOutput.position() / mebibyte;
    if (now != before)
        theProgress(static_cast<int>(now), 0);
}

/// Whether it is packed with the one filter that most streams have, and in its plain form.
bool StreamReader::isFlateAlone() const
{
    const LoadedObject dictionary(theDocument, theRequest.number);
    const std::vector<WrittenStream::Filter> filters = readFilters(theContext, dictionary.object());
    if (theRequest.form == EngineStreamForm::isRaw || filters.size() != 1
        || (filters[0].name != "FlateDecode" && filters[0].name != "Fl"))
        return false;
    int predictor = 0;
    const int error = attempt(theContext, [&] {
        predictor = pdf_dict_get_int(theContext, filters[0].parameters, PDF_NAME(Predictor));
    });
    return !error && predictor <= 1;
}

/// The library takes the parts of JPEG 2000 apart only to draw them.
bool StreamReader::staysPacked() const
{
    const LoadedObject dictionary(theDocument, theRequest.number);
    const auto filters = readFilters(theContext, dictionary.object());
    return theRequest.form == EngineStreamForm::isDecoded
        && std::any_of(filters.begin(), filters.end(),
            [](const auto& filter) { return filter.name == "JPXDecode"; });
}

void StreamReader::copyTail()
{
    fz_stream* const packed = open(EngineStreamForm::isRaw);
    if (packed)
        unpackTail(theContext, packed, theOutput.position(), [this](std::string_view bytes) {
            const std::uint64_t room = theRequest.limit - theOutput.position();
            write(bytes.substr(
                0, static_cast<std::size_t>(std::min<std::uint64_t>(room, bytes.size()))));
        });
    fz_drop_stream(theContext, packed);
}

} // namespace tarnwick
