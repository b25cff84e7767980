#include "analysis/ObjectKind.h"

#include <algorithm>
#include <array>

namespace tarnwick {

namespace {

struct Renamed
{
    std::string_view type;
    std::string_view kind;
};

/// Types that the field calls by another word.
constexpr std::array renamedTypes{
    Renamed{"Filespec", "FileSpec"},
    Renamed{"F", "FileSpec"},
    Renamed{"DocTimeStamp", "Sig"},
};

/// Kinds of objects that may leave out their Type and are known by an entry that no others have.
struct Sign
{
    std::string_view key;
    std::string_view value; ///< a name; any value at all when empty
    std::string_view kind;
};

constexpr std::array signs{
    Sign{"Subtype", "Image", "Image"},
    Sign{"Subtype", "Form", "Form"},
    Sign{"FunctionType", {}, "Function"},
    Sign{"PatternType", {}, "Pattern"},
    Sign{"ShadingType", {}, "Shading"},
    Sign{"ByteRange", {}, "Sig"},
    Sign{"FontFile", {}, "FontDescriptor"},
    Sign{"FontFile2", {}, "FontDescriptor"},
    Sign{"FontFile3", {}, "FontDescriptor"},
    Sign{"Linearized", {}, "Linearized"},
    Sign{"FT", {}, "Field"},
    Sign{"S", "JavaScript", "Action"},
    Sign{"S", "URI", "Action"},
    Sign{"S", "GoTo", "Action"},
    Sign{"S", "GoToR", "Action"},
    Sign{"S", "GoToE", "Action"},
    Sign{"S", "Launch", "Action"},
    Sign{"S", "Named", "Action"},
    Sign{"S", "SubmitForm", "Action"},
    Sign{"S", "ImportData", "Action"},
    Sign{"S", "ResetForm", "Action"},
    Sign{"Producer", {}, "Info"},
    Sign{"CreationDate", {}, "Info"},
};

/// What stands in a table: short and printable, whatever the file says.
std::string shown(std::string text)
{
    constexpr std::size_t longest = 40;
    text.resize(std::min(text.size(), longest));
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c < 0x20 || c > 0x7E; }, '?');
    return text;
}

std::string typedKind(const ObjectSource& source, const std::string& type)
{
    if (type == "XObject" && !source.name("Subtype").empty())
        return source.name("Subtype");
    for (const Renamed& renamed : renamedTypes) {
        if (type == renamed.type)
            return std::string(renamed.kind);
    }
    return type;
}

std::string_view formName(TokenKind first, std::string_view word)
{
    switch (first) {
    case TokenKind::isDictionaryOpen:
        return "Dictionary";
    case TokenKind::isArrayOpen:
        return "Array";
    case TokenKind::isString:
    case TokenKind::isHexString:
        return "String";
    case TokenKind::isName:
        return "Name";
    case TokenKind::isInteger:
    case TokenKind::isReal:
        return "Number";
    case TokenKind::isReference:
        return "Reference";
    default:
        return word == "null" ? "Null" : word == "true" || word == "false" ? "Boolean" : "";
    }
}

} // namespace

std::string objectKind(std::string_view bytes, const ObjectSource& source)
{
    const std::string type = source.name("Type");
    if (!type.empty())
        return shown(typedKind(source, type));
    for (const Sign& sign : signs) {
        if (sign.value.empty() ? source.entry(sign.key) != nullptr
                               : source.name(sign.key) == sign.value)
            return std::string(sign.kind);
    }
    // An annotation may leave out its Type but not its place (ISO 32000-2, 12.5.2).
    if (source.entry("Rect") && !source.name("Subtype").empty())
        return "Annot";
    if (source.streamBegin())
        return "Stream";
    const SourceToken first = SourceLexer(bytes, source.valueBegin(), source.valueEnd()).next();
    return std::string(formName(first.kind, bytes.substr(first.begin, first.end - first.begin)));
}

std::string objectKind(const pdfObjectCatalog& catalog, const pdfObject& object)
{
    if (object.objType() == ObjectType::isTrailer)
        return "Trailer";
    return objectKind(catalog.bytes(), ObjectSource(catalog.bytes(), object.range()));
}

ObjectState objectState(const pdfObjectCatalog& catalog, const pdfObject& object)
{
    const std::optional<pdfObject> next = catalog.findAfter(object);
    return {next ? std::optional(next->objVer()) : std::nullopt};
}

} // namespace tarnwick
