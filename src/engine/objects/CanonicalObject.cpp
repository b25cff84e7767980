#include "CanonicalObject.h"

#include "ObjectEntry.h"
#include "ValueSpelling.h"

#include <algorithm>
#include <utility>

namespace tarnwick {

namespace {

/// Of the same keys and places the same in every document (FNV-1a).
std::uint64_t pathBelow(std::uint64_t path, std::string_view step)
{
    constexpr std::uint64_t prime = 1099511628211u;
    for (const char one : step)
        path = (path ^ static_cast<unsigned char>(one)) * prime;
    return (path ^ '/') * prime;
}

bool saysHowItIsPacked(std::string_view key)
{
    return key == "Filter" || key == "DecodeParms" || key == "DL";
}

} // namespace

CanonicalObject::CanonicalObject(const EngineDocument& document)
    : theDocument(document)
    , theContext(document.context())
    , theLongNames(document)
{
}

void CanonicalObject::spell(pdf_obj* object, Packing packing)
{
    constexpr std::uint64_t start = 14695981039346656037u;
    theText.clear();
    theLinks.clear();
    thePacking = packing;
    put(object, 0, start, false);
}

/// Values that are no references throw nothing.
void CanonicalObject::put(pdf_obj* object, int depth, std::uint64_t path, bool isUpward)
{
    if (depth > maximumObjectDepth || theText.size() > longestObjectText) {
        theText += '!';
    } else if (pdf_is_indirect(theContext, object)) {
        putReference(object, depth, path, isUpward);
    } else if (pdf_is_dict(theContext, object)) {
        putDictionary(object, depth, path);
    } else if (pdf_is_array(theContext, object)) {
        theText += '[';
        const int count = pdf_array_len(theContext, object);
        for (int index = 0; index < count; ++index)
            put(pdf_array_get(theContext, object, index), depth + 1,
                pathBelow(path, std::to_string(index)), isUpward);
        theText += ']';
    } else if (pdf_is_name(theContext, object)) {
        putBytes('/', theLongNames.whole(pdf_to_name(theContext, object)));
    } else if (pdf_is_string(theContext, object)) {
        std::size_t size = 0;
        const char* const bytes = pdf_to_string(theContext, object, &size);
        putBytes('(', {bytes, size});
    } else if (pdf_is_int(theContext, object)) {
        theText += std::to_string(pdf_to_int64(theContext, object)) + ' ';
    } else if (pdf_is_real(theContext, object)) {
        theText += realText(pdf_to_real(theContext, object)) + ' ';
    } else if (pdf_is_bool(theContext, object)) {
        theText += pdf_to_bool(theContext, object) ? "true " : "false ";
    } else {
        theText += "null ";
    }
}

/// Its length before it, so that no bytes end it early.
void CanonicalObject::putBytes(char kind, std::string_view bytes)
{
    theText += kind + std::to_string(bytes.size()) + ':';
    theText += bytes;
}

void CanonicalObject::putReference(pdf_obj* reference, int depth, std::uint64_t path, bool isUpward)
{
    const int number = pdf_to_num(theContext, reference);
    if (pdf_obj* const value = valueMadeHere(theDocument, reference))
        return put(value, depth + 1, path, isUpward);
    theText += "R ";
    theLinks.push_back({path, static_cast<std::uint32_t>(std::max(number, 0)), isUpward ? 1u : 0u});
}

/// An entry that is null is none (ISO 32000-2, 7.3.7).
void CanonicalObject::putDictionary(pdf_obj* dictionary, int depth, std::uint64_t path)
{
    std::vector<std::pair<std::string, pdf_obj*>> entries;
    const int count = pdf_dict_len(theContext, dictionary);
    for (int index = 0; index < count; ++index) {
        pdf_obj* const key = pdf_dict_get_key(theContext, dictionary, index);
        pdf_obj* const value = pdf_dict_get_val(theContext, dictionary, index);
        if (!pdf_is_null(theContext, value) || pdf_is_indirect(theContext, value))
            entries.emplace_back(theLongNames.whole(pdf_to_name(theContext, key)), value);
    }
    std::sort(entries.begin(), entries.end(),
        [](const auto& a, const auto& b) { return a.first < b.first; });
    theText += '<';
    for (const auto& [key, value] : entries) {
        const bool isOfStream = depth == 0 && thePacking != Packing::isNone;
        if (isOfStream
            && (key == "Length" || (thePacking == Packing::isLeftOut && saysHowItIsPacked(key))))
            continue;
        putBytes('/', key);
        put(value, depth + 1, pathBelow(path, key), key == "Parent" || key == "P");
    }
    theText += '>';
}

} // namespace tarnwick
