#include "analysis/PageTree.h"

#include "analysis/pdfObjectCatalog.h"

namespace tarnwick {

namespace {

/// Levels of a page tree that are gone through; real ones have up to ten. Ends rings as well.
constexpr int deepest = 64;

} // namespace

PageTree::PageTree(const pdfObjectCatalog& catalog, std::int64_t version)
    : theCatalog(catalog)
    , theVersion(version)
{
}

std::optional<pdfObject> PageTree::target(const std::optional<ObjectRef>& reference) const
{
    return reference ? theCatalog.find(reference->objNo, theVersion) : std::nullopt;
}

/// The topmost node.
std::optional<pdfObject> PageTree::root() const
{
    const std::vector<pdfObject> trailers = theCatalog.findAll(trailerNumber);
    for (auto trailer = trailers.rbegin(); trailer != trailers.rend(); ++trailer) {
        if (trailer->objVer() > theVersion)
            continue;
        if (const std::optional<pdfObject> catalog = target(trailer->theRoot()))
            return target(catalog->thePages());
    }
    return std::nullopt;
}

std::int64_t PageTree::pagesOf(const pdfObject& node) const
{
    return node.objType() == ObjectType::isPages ? std::max<std::int64_t>(0, node.thePageCount())
                                                 : 1;
}

std::optional<pdfObject> PageTree::page(std::int64_t number) const
{
    std::optional<pdfObject> node = root();
    std::int64_t left = number - 1; // pages before the wanted one, within the node
    for (int level = 0; node && left >= 0 && level < deepest; ++level) {
        if (node->objType() != ObjectType::isPages)
            return left == 0 ? node : std::nullopt;
        const std::vector<ObjectRef> kids = node->theChildren();
        std::size_t at = 0;
        if (node->thePageCount() == static_cast<std::int64_t>(kids.size())) {
            at = static_cast<std::size_t>(left); // all are pages
            left = 0;
        }
        node.reset();
        for (; at < kids.size() && !node; ++at) {
            node = target(kids[at]);
            if (node && left >= pagesOf(*node)) {
                left -= pagesOf(*node);
                node.reset();
            }
        }
    }
    return std::nullopt;
}

/// Pages of a node that come before one of its kids; nothing where it is none of them.
std::optional<std::int64_t> PageTree::pagesBefore(const pdfObject& kid, const pdfObject& node) const
{
    const std::vector<ObjectRef> kids = node.theChildren();
    const bool areAllPages = node.thePageCount() == static_cast<std::int64_t>(kids.size());
    std::int64_t before = 0;
    for (const ObjectRef& one : kids) {
        if (one.objNo == kid.objNo())
            return before;
        const std::optional<pdfObject> sibling = areAllPages ? std::nullopt : target(one);
        before += sibling ? pagesOf(*sibling) : areAllPages;
    }
    return std::nullopt;
}

std::optional<std::int64_t> PageTree::numberOf(const pdfObject& page) const
{
    const std::optional<pdfObject> top = root();
    if (!top || page.objType() != ObjectType::isPage)
        return std::nullopt;
    std::int64_t before = 0;
    pdfObject kid = page;
    for (int level = 0; level < deepest; ++level) {
        if (kid.objNo() == top->objNo())
            return before + 1;
        const std::optional<pdfObject> node = target(kid.theParent());
        const std::optional<std::int64_t> more = node ? pagesBefore(kid, *node) : std::nullopt;
        if (!more)
            return std::nullopt;
        before += *more;
        kid = *node;
    }
    return std::nullopt;
}

} // namespace tarnwick
