#pragma once

#include "analysis/pdfObjectCatalog.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace tarnwick {

/// What a reference leads to when a document is followed from its trailer.
enum class TreeNodeKind : unsigned char
{
    isObject, ///< an object that is shown here for the first time; what it refers to follows
    isRepeated, ///< one that has been shown
    isLoop, ///< one that is being shown: it leads to itself
    isMissing, ///< the listing has no such object
};

struct TreeNode
{
    std::size_t depth = 0; ///< 1 for what the trailer refers to
    std::string path; ///< where the reference stands in its object: PlacedReference::path
    std::int64_t objNo = 0; ///< that the reference names
    std::int64_t objGen = 0;
    TreeNodeKind kind = TreeNodeKind::isObject;
    std::optional<pdfObject> object; ///< nothing for one that is missing
};

/// What ended a walk before the end.
enum class TreeLimit : unsigned char
{
    isNone,
    isDepth, ///< some objects were too deep: what they refer to is left out
    isNodes,
};

/// The objects of a document as they refer to each other, from the trailer down.
///
/// An object is the latest at or before the trailer's version. A reference under "Next", by which
/// outlines and the like make lists, stands beside its object, not below it. Memory is bounded
/// whatever the file refers to.
class SourceTree
{
public:
    static constexpr std::size_t mostDepth = 100;
    static constexpr std::size_t mostNodes = 100'000;

    /// @param catalog borrowed.
    explicit SourceTree(const pdfObjectCatalog& catalog)
        : theCatalog(catalog)
    {
    }

    /// The trailer or cross-reference stream that a document begins with: the last one with a Root;
    /// the last catalog where there is none; nothing in a file that has neither.
    std::optional<pdfObject> start() const;

    /// Calls take for every node below start, each object's references in their order.
    TreeLimit walk(const pdfObject& start, const std::function<void(const TreeNode&)>& take) const;

private:
    const pdfObjectCatalog& theCatalog;
};

} // namespace tarnwick
