#include "ObjectRoles.h"

#include "Attempt.h"

#include <algorithm>
#include <array>
#include <optional>

namespace tarnwick {

namespace {

using Role = EngineObjectRole;

struct RoleWord
{
    std::string_view word;
    Role role = Role::isOther;
};

/// Values of Type.
constexpr std::array typeRoles{
    RoleWord{"Annot", Role::isAnnotation},
    RoleWord{"CMap", Role::isFontOrImage},
    RoleWord{"Catalog", Role::isSetting},
    RoleWord{"DSS", Role::isAnnotation},
    RoleWord{"DocTimeStamp", Role::isAnnotation},
    RoleWord{"Encoding", Role::isFontOrImage},
    RoleWord{"Font", Role::isFontOrImage},
    RoleWord{"FontDescriptor", Role::isFontOrImage},
    RoleWord{"Metadata", Role::isMetadata},
    RoleWord{"OCG", Role::isSetting},
    RoleWord{"OCMD", Role::isSetting},
    RoleWord{"Outlines", Role::isStructure},
    RoleWord{"Page", Role::isPageContent},
    RoleWord{"Pages", Role::isStructure},
    RoleWord{"Sig", Role::isAnnotation},
    RoleWord{"StructElem", Role::isStructure},
    RoleWord{"StructTreeRoot", Role::isStructure},
};

/// Keys whose values are of another role than the object that has them.
constexpr std::array keyRoles{
    RoleWord{"AA", Role::isSetting},
    RoleWord{"AP", Role::isAnnotation},
    RoleWord{"AcroForm", Role::isSetting},
    RoleWord{"Annots", Role::isAnnotation},
    RoleWord{"CharProcs", Role::isFontOrImage},
    RoleWord{"Contents", Role::isPageContent},
    RoleWord{"DSS", Role::isAnnotation},
    RoleWord{"Dests", Role::isStructure},
    RoleWord{"Encrypt", Role::isSetting},
    RoleWord{"Fields", Role::isAnnotation},
    RoleWord{"Font", Role::isFontOrImage},
    RoleWord{"Info", Role::isMetadata},
    RoleWord{"Metadata", Role::isMetadata},
    RoleWord{"Names", Role::isStructure},
    RoleWord{"OCProperties", Role::isSetting},
    RoleWord{"OpenAction", Role::isSetting},
    RoleWord{"Outlines", Role::isStructure},
    RoleWord{"OutputIntents", Role::isSetting},
    RoleWord{"PageLabels", Role::isStructure},
    RoleWord{"Pages", Role::isStructure},
    RoleWord{"StructTreeRoot", Role::isStructure},
    RoleWord{"Thumb", Role::isFontOrImage},
    RoleWord{"ViewerPreferences", Role::isSetting},
    RoleWord{"XFA", Role::isAnnotation},
};

template<std::size_t size>
std::optional<Role> roleAt(const std::array<RoleWord, size>& words, std::string_view word)
{
    const auto found = std::lower_bound(words.begin(), words.end(), word,
        [](const RoleWord& one, std::string_view wanted) { return one.word < wanted; });
    return found != words.end() && found->word == word ? std::optional(found->role) : std::nullopt;
}

/// A name among a dictionary's own entries; empty for a reference.
std::string_view nameIn(fz_context* ctx, pdf_obj* dictionary, pdf_obj* key)
{
    pdf_obj* value = nullptr;
    const int error = attempt(ctx, [&] {
        value = pdf_dict_get(ctx, dictionary, key);
        if (pdf_is_indirect(ctx, value))
            value = nullptr;
    });
    return error || !pdf_is_name(ctx, value) ? std::string_view() : pdf_to_name(ctx, value);
}

bool hasKey(fz_context* ctx, pdf_obj* dictionary, pdf_obj* key)
{
    bool isThere = false;
    const int error
        = attempt(ctx, [&] { isThere = pdf_dict_get(ctx, dictionary, key) != nullptr; });
    return !error && isThere;
}

/// What a dictionary says that it is.
std::optional<Role> ownRole(fz_context* ctx, pdf_obj* dictionary)
{
    if (const auto role = roleAt(typeRoles, nameIn(ctx, dictionary, PDF_NAME(Type))))
        return role;
    const std::string_view subtype = nameIn(ctx, dictionary, PDF_NAME(Subtype));
    if (subtype == "Image")
        return Role::isFontOrImage;
    const bool isField = hasKey(ctx, dictionary, PDF_NAME(FT))
        || (!subtype.empty() && hasKey(ctx, dictionary, PDF_NAME(Rect)));
    return isField ? std::optional(Role::isAnnotation) : std::nullopt;
}

} // namespace

ObjectRoles::ObjectRoles(const EngineDocument& document)
    : theDocument(document)
    , theContext(document.context())
{
    int count = 0;
    pdf_obj* trailer = nullptr;
    const int error = attempt(theContext, [&] {
        count = pdf_xref_len(theContext, document.document());
        trailer = pdf_trailer(theContext, document.document());
    });
    if (error)
        return;
    theRoles.resize(static_cast<std::size_t>(std::max(count, 0)));
    theIsReached.resize(theRoles.size());
    visit(trailer, Role::isSetting, 0);
    while (!theNext.empty()) {
        const int number = theNext.back();
        theNext.pop_back();
        pdf_obj* object = nullptr;
        fz_var(object);
        const int lost = attempt(
            theContext, [&] { object = pdf_load_object(theContext, document.document(), number); });
        if (!lost && pdf_is_dict(theContext, object)) {
            Role& role = theRoles[static_cast<std::size_t>(number)];
            role = ownRole(theContext, object).value_or(role);
        }
        if (!lost)
            visit(object, theRoles[static_cast<std::size_t>(number)], 0);
        pdf_drop_obj(theContext, object);
    }
}

EngineObjectRole ObjectRoles::roleOf(int number, pdf_obj* object) const
{
    if (isReached(number))
        return theRoles[static_cast<std::size_t>(number)];
    return pdf_is_dict(theContext, object) ? ownRole(theContext, object).value_or(Role::isOther)
                                           : Role::isOther;
}

bool ObjectRoles::isReached(int number) const
{
    const auto index = static_cast<std::size_t>(number);
    return number >= 0 && index < theIsReached.size() && theIsReached[index];
}

void ObjectRoles::reach(pdf_obj* reference, EngineObjectRole role)
{
    const auto number = static_cast<std::size_t>(std::max(pdf_to_num(theContext, reference), 0));
    if (number >= theRoles.size() || theIsReached[number])
        return;
    theIsReached[number] = true;
    theRoles[number] = role;
    theNext.push_back(static_cast<int>(number));
}

void ObjectRoles::visit(pdf_obj* object, EngineObjectRole role, int depth)
{
    if (depth > maximumObjectDepth)
        return;
    if (pdf_is_indirect(theContext, object)) {
        reach(object, role);
    } else if (pdf_is_array(theContext, object)) {
        const int count = pdf_array_len(theContext, object);
        for (int index = 0; index < count; ++index)
            visit(pdf_array_get(theContext, object, index), role, depth + 1);
    } else if (pdf_is_dict(theContext, object)) {
        const int count = pdf_dict_len(theContext, object);
        for (int index = 0; index < count; ++index) {
            const char* const key
                = pdf_to_name(theContext, pdf_dict_get_key(theContext, object, index));
            visit(pdf_dict_get_val(theContext, object, index), roleAt(keyRoles, key).value_or(role),
                depth + 1);
        }
    }
}

} // namespace tarnwick
