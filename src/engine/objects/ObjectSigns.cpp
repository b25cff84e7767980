#include "ObjectSigns.h"

#include "Attempt.h"
#include "CanonicalObject.h"
#include "ObjectEntry.h"
#include "WrittenStream.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace tarnwick {

namespace {

/// Bytes of a stream that are decoded; longer ones are known by what is stored. Also those that one
/// answer may take.
constexpr std::size_t mostDecoded = 64u << 20;
constexpr std::size_t portion = 64 * 1024;

/// Filters whose undoing gives the same bytes whoever does it.
constexpr std::array<std::string_view, 11> plainFilters = {"ASCIIHexDecode", "AHx", "ASCII85Decode",
    "A85", "LZWDecode", "LZW", "FlateDecode", "Fl", "RunLengthDecode", "RL", "Crypt"};

class Digest
{
public:
    Digest() { fz_sha256_init(&theState); }
    void add(std::string_view bytes)
    {
        fz_sha256_update(
            &theState, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
    }
    EngineDigest result()
    {
        EngineDigest digest;
        fz_sha256_final(&theState, digest.data());
        return digest;
    }

private:
    fz_sha256 theState;
};

/// Makes the signs of one answer.
class Signs
{
public:
    Signs(const EngineDocument& document, const ObjectRoles& roles)
        : theDocument(document)
        , theContext(document.context())
        , theRoles(roles)
        , theCanonical(document)
    {
    }

    /// @returns false when there is no room left for the object.
    bool add(int number)
    {
        if (theSigns.size() == maximumSigns || theDecoded >= mostDecoded)
            return false;
        if (isMadeHere(theDocument, number)
            || objectEntry(theDocument, number).state != EngineObjectState::isPresent)
            return true;
        pdf_obj* object = nullptr;
        fz_var(object);
        bool isStream = false;
        const int error = attempt(theContext, [&] {
            object = pdf_load_object(theContext, theDocument.document(), number);
            isStream = pdf_obj_num_is_stream(theContext, theDocument.document(), number) != 0;
        });
        const bool hasRoom = addLoaded(number, error ? nullptr : object, isStream);
        pdf_drop_obj(theContext, object);
        return hasRoom;
    }

    void finish(SignResult& result)
    {
        result.signs = std::move(theSigns);
        result.links = std::move(theLinks);
    }

private:
    bool addLoaded(int number, pdf_obj* object, bool isStream)
    {
        EngineObjectSign sign;
        sign.number = static_cast<std::uint32_t>(number);
        sign.role = static_cast<std::uint8_t>(theRoles.roleOf(number, object));
        sign.isReached = theRoles.isReached(number) ? 1 : 0;
        sign.form = static_cast<std::uint8_t>(!object ? EngineSignForm::isUnreadable
                : isStream                            ? EngineSignForm::isStream
                                                      : EngineSignForm::isPlain);
        if (object && isStream && isContainer(object))
            return true;
        bool isDecoded = false;
        if (object && isStream) {
            isDecoded = readData(number, object, sign);
            sign.lengthObject = lengthObjectOf(object);
        }
        if (object && !addValue(object, isStream, isDecoded, sign))
            return false;
        theSigns.push_back(sign);
        return true;
    }

    bool addValue(pdf_obj* object, bool isStream, bool isDecoded, EngineObjectSign& sign)
    {
        using Packing = CanonicalObject::Packing;
        theCanonical.spell(object,
            !isStream       ? Packing::isNone
                : isDecoded ? Packing::isLeftOut
                            : Packing::isKept);
        auto links = theCanonical.links();
        links.resize(std::min<std::size_t>(links.size(), maximumSignLinks));
        if (theLinks.size() + links.size() > maximumSignLinks)
            return false;
        Digest entries;
        for (const EngineObjectLink& link : theCanonical.links())
            entries.add(std::to_string(link.target) + ' ');
        entries.add(theCanonical.text());
        sign.entries = entries.result();
        Digest shape;
        shape.add(theCanonical.text());
        sign.shape = shape.result();
        sign.links = static_cast<std::uint32_t>(links.size());
        theLinks.insert(theLinks.end(), links.begin(), links.end());
        return true;
    }

    bool isContainer(pdf_obj* dictionary) const
    {
        bool isContainer = false;
        const int error = attempt(theContext, [&] {
            pdf_obj* const type = pdf_dict_get(theContext, dictionary, PDF_NAME(Type));
            isContainer = pdf_name_eq(theContext, type, PDF_NAME(ObjStm))
                || pdf_name_eq(theContext, type, PDF_NAME(XRef));
        });
        return !error && isContainer;
    }

    std::uint32_t lengthObjectOf(pdf_obj* dictionary) const
    {
        const int count = pdf_dict_len(theContext, dictionary);
        for (int index = 0; index < count; ++index) {
            pdf_obj* const value = pdf_dict_get_val(theContext, dictionary, index);
            pdf_obj* const key = pdf_dict_get_key(theContext, dictionary, index);
            if (pdf_is_indirect(theContext, value)
                && std::string_view(pdf_to_name(theContext, key)) == "Length")
                return static_cast<std::uint32_t>(std::max(pdf_to_num(theContext, value), 0));
        }
        return 0;
    }

    /// @returns whether the data was decoded.
    bool readData(int number, pdf_obj* dictionary, EngineObjectSign& sign)
    {
        const auto filters = readFilters(theContext, dictionary);
        const bool isPlain = countFilters(theContext, dictionary) == filters.size()
            && std::all_of(filters.begin(), filters.end(), [](const auto& filter) {
                   return std::find(plainFilters.begin(), plainFilters.end(), filter.name)
                       != plainFilters.end();
               });
        std::optional<EngineDigest> digest;
        if (isPlain)
            digest = digestOf(number, true);
        const bool isDecoded = digest.has_value();
        if (!digest)
            digest = digestOf(number, false);
        sign.data = digest.value_or(EngineDigest());
        sign.isPacked = isDecoded ? 0 : 1;
        return isDecoded;
    }

    /// Nothing for one that is damaged, or too long to be decoded.
    std::optional<EngineDigest> digestOf(int number, bool isDecoded)
    {
        pdf_document* const file = theDocument.document();
        fz_stream* stream = nullptr;
        fz_var(stream);
        int error = attempt(theContext, [&] {
            stream = isDecoded ? pdf_open_stream_number(theContext, file, number)
                               : pdf_open_raw_stream_number(theContext, file, number);
        });
        Digest digest;
        std::size_t size = 0;
        std::size_t got = 1;
        while (!error && got > 0 && (!isDecoded || size <= mostDecoded)) {
            error = attempt(theContext, [&] { got = fz_available(theContext, stream, portion); });
            if (error || stream->error || got == 0)
                break;
            digest.add({reinterpret_cast<const char*>(stream->rp), got});
            stream->rp += got;
            size += got;
        }
        const bool isRead = !error && stream && !stream->error;
        fz_drop_stream(theContext, stream);
        theDecoded += size;
        const bool isTooLong = isDecoded && size > mostDecoded;
        return isRead && !isTooLong ? std::optional(digest.result()) : std::nullopt;
    }

    const EngineDocument& theDocument;
    fz_context* theContext;
    const ObjectRoles& theRoles;
    CanonicalObject theCanonical;
    std::vector<EngineObjectSign> theSigns;
    std::vector<EngineObjectLink> theLinks;
    std::size_t theDecoded = 0; ///< bytes
};

/// The number of the object under a key of the trailer.
int numberIn(const EngineDocument& document, pdf_obj* key)
{
    fz_context* const ctx = document.context();
    int number = 0;
    const int error = attempt(ctx, [&] {
        number = pdf_to_num(ctx, pdf_dict_get(ctx, pdf_trailer(ctx, document.document()), key));
    });
    return error || number < 0 || number > maximumObjectNumber ? 0 : number;
}

int objectCount(const EngineDocument& document)
{
    int count = 0;
    const int error = attempt(
        document.context(), [&] { count = pdf_xref_len(document.context(), document.document()); });
    return error ? 0 : std::min(count, maximumObjectNumber + 1);
}

} // namespace

int readSigns(const EngineDocument& document, const SignRequest& request,
    std::optional<ObjectRoles>& roles, SignResult& result)
{
    if (!roles)
        roles.emplace(document);
    result.root = numberIn(document, PDF_NAME(Root));
    result.info = numberIn(document, PDF_NAME(Info));
    const auto end = static_cast<std::uint32_t>(objectCount(document));
    Signs signs(document, *roles);
    const auto take = [&](std::uint32_t number) {
        if (number >= end || number < request.first || number == 0
            || signs.add(static_cast<int>(number)))
            return true;
        result.next = number;
        return false;
    };
    bool hasRoom = true;
    for (std::size_t index = 0; hasRoom && index < request.numbers.size(); ++index)
        hasRoom = take(request.numbers[index]);
    if (request.numbers.isEmpty()) {
        for (std::uint32_t number = request.first; hasRoom && number < end; ++number)
            hasRoom = take(number);
    }
    signs.finish(result);
    return FZ_ERROR_NONE;
}

} // namespace tarnwick
