#pragma once

#include "analysis/ObjectSource.h"
#include "analysis/pdfObjectCatalog.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

/// What an object is, in the field's words: the short name of a row in a table.
///
/// Read from the object's own dictionary alone: "Catalog", "Pages", "Page", "Font", "Image",
/// "Form", "Metadata", "XRef", "ObjStm", "Sig", "Annot", "Action", "Outlines", "EmbeddedFile" and
/// so on. An object that does not say what it is gets the name of its form: "Stream", "Dictionary",
/// "Array", "String", "Name", "Number", "Null", "Boolean", or nothing where it has no value. A Type
/// that is not known here is its own kind, cut to 40 characters, with what is not printable ASCII
/// as "?". A content stream does not say that it is one (ISO 32000-2, 7.8.2): its pages do.
std::string objectKind(std::string_view bytes, const ObjectSource& source);

/// As above, of an object of a catalog; a trailer is a "Trailer".
std::string objectKind(const pdfObjectCatalog& catalog, const pdfObject& object);

/// What has become of an object in later saves, as far as the listing shows it.
struct ObjectState
{
    /// The version that replaced it; nothing while it is current.
    std::optional<std::int64_t> replacedIn;
};

/// Searched for in the sorted list, nothing is kept. Of several objects with one number in one
/// version the last is current.
ObjectState objectState(const pdfObjectCatalog& catalog, const pdfObject& object);

} // namespace tarnwick
