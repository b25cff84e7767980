#include "ObjectView.h"

namespace tarnwick {

bool ObjectView::isNone() const
{
    return !theObject || ask(1, [this] { return pdf_is_null(theContext, theObject); });
}

bool ObjectView::isReference() const
{
    return theObject && pdf_is_indirect(theContext, theObject);
}

bool ObjectView::isName() const
{
    return ask(0, [this] { return pdf_is_name(theContext, theObject); });
}

bool ObjectView::isDictionary() const
{
    return ask(0, [this] { return pdf_is_dict(theContext, theObject); });
}

bool ObjectView::isArray() const
{
    return ask(0, [this] { return pdf_is_array(theContext, theObject); });
}

bool ObjectView::isStream() const
{
    return ask(0, [this] { return pdf_is_stream(theContext, theObject); });
}

ObjectView ObjectView::entry(const char* key) const
{
    pdf_obj* const none = nullptr;
    return {theContext, ask(none, [&] { return pdf_dict_gets(theContext, theObject, key); })};
}

ObjectView ObjectView::at(int index) const
{
    pdf_obj* const none = nullptr;
    const bool isList = isArray();
    return {theContext, ask(none, [&] {
                return isList ? pdf_array_get(theContext, theObject, index)
                              : pdf_dict_get_val(theContext, theObject, index);
            })};
}

std::string ObjectView::keyAt(int index) const
{
    const char* const none = "";
    return ask(none,
        [&] { return pdf_to_name(theContext, pdf_dict_get_key(theContext, theObject, index)); });
}

int ObjectView::size() const
{
    const bool isList = isArray();
    return ask(0, [&] {
        return isList ? pdf_array_len(theContext, theObject) : pdf_dict_len(theContext, theObject);
    });
}

std::string ObjectView::name() const
{
    const char* const none = "";
    return ask(none, [this] { return pdf_to_name(theContext, theObject); });
}

std::string ObjectView::text() const
{
    const char* const none = "";
    return ask(none, [this] { return pdf_to_text_string(theContext, theObject); });
}

std::optional<std::int64_t> ObjectView::integer() const
{
    if (!ask(0, [this] { return pdf_is_int(theContext, theObject); }))
        return std::nullopt;
    return ask(std::int64_t{0}, [this] { return pdf_to_int64(theContext, theObject); });
}

int ObjectView::number() const
{
    return isReference() ? pdf_to_num(theContext, theObject) : 0;
}

} // namespace tarnwick
