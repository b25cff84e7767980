#pragma once

#include "Attempt.h"

#include <mupdf/pdf.h>

#include <cstdint>
#include <optional>
#include <string>

namespace tarnwick {

/// An object of the document, or none, that may be asked anything: where the library throws, or the
/// object is of another type, the answer is none. References are resolved, but for number() and
/// isReference(). Borrowed from the document.
class ObjectView
{
public:
    ObjectView(fz_context* ctx, pdf_obj* object)
        : theContext(ctx)
        , theObject(object)
    {
    }

    pdf_obj* object() const { return theObject; }
    bool isNone() const;
    bool isReference() const;
    bool isName() const;
    bool isDictionary() const;
    bool isArray() const;
    bool isStream() const;

    /// Of a dictionary or a stream.
    ObjectView entry(const char* key) const;
    /// Of an array, or what a dictionary has in this place.
    ObjectView at(int index) const;
    /// The key of a dictionary in this place, without slash.
    std::string keyAt(int index) const;
    /// Items of an array, entries of a dictionary.
    int size() const;

    /// A name without slash.
    std::string name() const;
    /// A string as text: UTF-8.
    std::string text() const;
    std::optional<std::int64_t> integer() const;
    /// The number of the object that is referred to, 0 for what is no reference.
    int number() const;

private:
    template<typename Value, typename Ask> Value ask(Value otherwise, Ask&& ask) const
    {
        Value value = otherwise;
        return attempt(theContext, [&] { value = ask(); }) ? otherwise : value;
    }

    fz_context* theContext;
    pdf_obj* theObject;
};

} // namespace tarnwick
