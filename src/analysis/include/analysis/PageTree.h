#pragma once

#include "analysis/pdfObject.h"

#include <cstdint>
#include <limits>
#include <optional>

namespace tarnwick {

class pdfObjectCatalog;

/// The way from a page's number to its object and back, along the page tree (ISO 32000-2, 7.7.3)
/// as far as a file's listing shows it: from the last trailer that names a root.
///
/// Counts of page tree nodes are believed, since looking at each page of a large document takes
/// too long; where they lie, so does the result, which always is a page of the tree.
class PageTree
{
public:
    /// @param catalog borrowed. @param version as of which saved version references are followed.
    explicit PageTree(const pdfObjectCatalog& catalog,
        std::int64_t version = std::numeric_limits<std::int64_t>::max());

    /// The object of a page. @param number from 1.
    /// @returns nothing where the tree is not in sight, or does not have the page.
    std::optional<pdfObject> page(std::int64_t number) const;
    /// The number of a page, from 1; nothing for an object that is no page of the tree.
    std::optional<std::int64_t> numberOf(const pdfObject& page) const;

private:
    std::optional<pdfObject> root() const;
    std::optional<pdfObject> target(const std::optional<ObjectRef>& reference) const;
    std::int64_t pagesOf(const pdfObject& node) const;
    std::optional<std::int64_t> pagesBefore(const pdfObject& kid, const pdfObject& node) const;

    const pdfObjectCatalog& theCatalog;
    std::int64_t theVersion;
};

} // namespace tarnwick
