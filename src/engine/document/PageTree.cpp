#include "PageTree.h"

#include "Attempt.h"
#include "protocol/EngineLimits.h"

#include <algorithm>
#include <utility>

namespace tarnwick {

namespace {

constexpr std::size_t maximumDepth = 256;

struct OpenNode
{
    int number;
    pdf_obj* kids; ///< borrowed: the document keeps the node's object
    int next;
};

/// What a kid of the tree turned out to be.
struct Kid
{
    int number = 0;
    pdf_obj* kids = nullptr; ///< set for an intermediate node
    bool isPage = false;
    bool isUnreadable = false; ///< there is a reference and nothing behind it
};

/// A node is told from a page by its Kids: Type is missing or wrong in too many files.
Kid examine(fz_context* ctx, pdf_obj* object)
{
    Kid kid;
    const int failure = attempt(ctx, [&] {
        kid.number = pdf_to_num(ctx, object);
        kid.isUnreadable = kid.number != 0 && !pdf_is_dict(ctx, object);
        if (kid.number == 0 || kid.isUnreadable)
            return;
        pdf_obj* kids = pdf_dict_get(ctx, object, PDF_NAME(Kids));
        pdf_obj* type = pdf_dict_get(ctx, object, PDF_NAME(Type));
        if (pdf_is_array(ctx, kids) && !pdf_name_eq(ctx, type, PDF_NAME(Page)))
            kid.kids = kids;
        else
            kid.isPage = !pdf_name_eq(ctx, type, PDF_NAME(Pages));
    });
    if (failure) {
        kid = {kid.number};
        kid.isUnreadable = true;
    }
    return kid;
}

/// Gives a dictionary that stands where a reference belongs a number of its own, so that it is
/// found and written like any other. Throws. @param parent number of the node above, 0 for none.
/// @returns a reference to it, which the caller drops.
pdf_obj* numbered(fz_context* ctx, pdf_document* document, pdf_obj* inner, int parent)
{
    if (parent > 0)
        pdf_dict_put_drop(ctx, inner, PDF_NAME(Parent), pdf_new_indirect(ctx, document, parent, 0));
    const int number = pdf_create_object(ctx, document);
    pdf_update_object(ctx, document, number, inner);
    return pdf_new_indirect(ctx, document, number, 0);
}

bool standsInside(fz_context* ctx, pdf_obj* object)
{
    return !pdf_is_indirect(ctx, object) && pdf_is_dict(ctx, object);
}

struct Root
{
    int catalog = 0; ///< its number
    pdf_obj* pages = nullptr; ///< borrowed; null when there is none
    std::int64_t count = -1; ///< Count of pages
    bool isInside = false; ///< it stood within the catalog
};

Root treeRoot(fz_context* ctx, pdf_document* document)
{
    Root root;
    const int failure = attempt(ctx, [&] {
        pdf_obj* catalog = pdf_dict_get(ctx, pdf_trailer(ctx, document), PDF_NAME(Root));
        root.catalog = pdf_to_num(ctx, catalog);
        pdf_obj* const found = pdf_dict_get(ctx, catalog, PDF_NAME(Pages));
        root.isInside = standsInside(ctx, found);
        if (root.isInside)
            pdf_dict_put_drop(ctx, catalog, PDF_NAME(Pages), numbered(ctx, document, found, 0));
        root.pages = pdf_dict_get(ctx, catalog, PDF_NAME(Pages));
        pdf_obj* const count = pdf_dict_get(ctx, root.pages, PDF_NAME(Count));
        if (pdf_is_int(ctx, count))
            root.count = pdf_to_int64(ctx, count);
    });
    return failure ? Root() : root;
}

/// @returns false at the node's end. @param[out] kid null for what cannot be read.
/// @param[out] isInside it stood within the node.
bool takeKid(fz_context* ctx, pdf_document* document, OpenNode& node, pdf_obj*& kid, bool& isInside)
{
    bool isThere = false;
    kid = nullptr;
    fz_var(isThere);
    const int failure = attempt(ctx, [&] {
        isThere = node.next < pdf_array_len(ctx, node.kids);
        if (!isThere)
            return;
        const int index = node.next++;
        pdf_obj* const found = pdf_array_get(ctx, node.kids, index);
        isInside = standsInside(ctx, found);
        if (isInside)
            pdf_array_put_drop(ctx, node.kids, index, numbered(ctx, document, found, node.number));
        kid = pdf_array_get(ctx, node.kids, index);
    });
    if (failure)
        kid = nullptr;
    return isThere;
}

/// @param[out] isSound the root and every kid could be read.
PageTree walkOnce(fz_context* ctx, pdf_document* document, bool& isSound)
{
    PageTree tree;
    std::vector<OpenNode> open;
    const Root root = treeRoot(ctx, document);
    const auto enter = [&](pdf_obj* object) {
        const Kid kid = examine(ctx, object);
        isSound = isSound && !kid.isUnreadable;
        if (kid.isUnreadable)
            tree.unreadable.add(kid.number);
        if (kid.number != 0 && kid.number == root.catalog)
            return tree.loops.add(kid.number); // whatever leads back to it, the catalog is no page
        const bool isNewNode
            = kid.kids && open.size() < maximumDepth && tree.nodes.emplace(kid.number, 0).second;
        if (kid.kids && !isNewNode)
            tree.loops.add(kid.number);
        if (!open.empty() && (kid.isPage || isNewNode))
            tree.parents.emplace(kid.number, open.back().number);
        if (isNewNode)
            open.push_back({kid.number, kid.kids, 0});
        if (!kid.isPage)
            return;
        tree.pages.push_back(kid.number);
        for (const OpenNode& node : open)
            ++tree.nodes[node.number];
    };
    isSound = root.pages != nullptr;
    tree.statedCount = root.count;
    if (root.isInside)
        tree.inside.add(root.catalog);
    if (root.pages)
        enter(root.pages);
    while (!open.empty() && tree.pages.size() < maximumPageCount) {
        pdf_obj* kid = nullptr;
        bool isInside = false;
        if (!takeKid(ctx, document, open.back(), kid, isInside)) {
            open.pop_back();
            continue;
        }
        if (isInside)
            tree.inside.add(open.back().number);
        if (kid)
            enter(kid);
    }
    return tree;
}

} // namespace

/// What cannot be read at first may be there the second time: MuPDF then has looked for all objects
/// anew, or has those of an object stream that stand before its damage.
PageTree walkPageTree(fz_context* ctx, pdf_document* document)
{
    const int wasRepaired = pdf_was_repaired(ctx, document);
    bool isSound = true;
    PageTree tree = walkOnce(ctx, document, isSound);
    if (isSound && pdf_was_repaired(ctx, document) == wasRepaired)
        return tree;
    const PageTreeFaults inside = std::move(tree.inside);
    tree = walkOnce(ctx, document, isSound);
    // What stood within nodes has numbers since the first walk, unless all was read anew.
    if (tree.inside.count == 0)
        tree.inside = inside;
    return tree;
}

bool installPageMap(fz_context* ctx, pdf_document* document, const PageTree& tree)
{
    const std::size_t count = tree.pages.size();
    int* forward = nullptr;
    pdf_rev_page_map* reverse = nullptr;
    fz_var(forward);
    fz_var(reverse);
    const int failure = attempt(ctx, [&] {
        forward = static_cast<int*>(fz_malloc(ctx, (count + 1) * sizeof(int)));
        reverse = static_cast<pdf_rev_page_map*>(
            fz_malloc(ctx, (count + 1) * sizeof(pdf_rev_page_map)));
    });
    if (failure) {
        fz_free(ctx, forward);
        fz_free(ctx, reverse);
        return false;
    }
    for (std::size_t page = 0; page < count; ++page) {
        forward[page] = tree.pages[page];
        reverse[page] = {static_cast<int>(page), tree.pages[page]};
    }
    std::sort(reverse, reverse + count, [](const auto& one, const auto& other) {
        return one.object != other.object ? one.object < other.object : one.page < other.page;
    });
    document->fwd_page_map = forward;
    document->rev_page_map = reverse;
    document->map_page_count = static_cast<int>(count);
    document->page_map_nesting = 1;
    // What else it asks how many pages there are, instead of a Count that says fewer.
    document->linear_page_count = static_cast<int>(count);
    return true;
}

} // namespace tarnwick
