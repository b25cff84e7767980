#pragma once

#include <mupdf/pdf.h>

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace tarnwick {

/// Places of the page tree that are not as they should be: the first ones, and how many.
struct PageTreeFaults
{
    static constexpr std::size_t mostKept = 100;

    std::vector<int> objects; ///< numbers, 0 for what has none
    std::size_t count = 0;

    void add(int object)
    {
        if (count++ < mostKept)
            objects.push_back(object);
    }
};

/// The page tree as found by walking it once (ISO 32000-2, 7.7.3).
///
/// Kids decide, not Count: writers that append pages forget it, and a hostile Count says anything.
struct PageTree
{
    std::vector<int> pages; ///< object numbers of the pages in order; one may occur again
    std::unordered_map<int, int> nodes; ///< the intermediate nodes, with the pages below each
    std::unordered_map<int, int> parents; ///< of each page and node but the root, where first met
    std::int64_t statedCount = -1; ///< Count of the root; -1 where it is no number
    PageTreeFaults inside; ///< nodes of which a kid stands within them
    PageTreeFaults unreadable; ///< kids with nothing behind their reference
    PageTreeFaults loops; ///< nodes that the tree comes back to
};

/// Walks the tree below the catalog's Pages. Dictionaries that stand in it themselves, where the
/// standard wants references, get numbers of their own, in memory alone. A node that was met
/// before, is deeper than 256 levels or cannot be read contributes nothing; at most
/// maximumPageCount pages are taken.
PageTree walkPageTree(fz_context* ctx, pdf_document* document);

/// Hands the order of the pages to MuPDF, whose own look-up of a page walks the tree from its root
/// each time: 100,000 pages in one flat node would cost 100,000 squared steps. Its own count is the
/// root's Count, beyond which it reads no page.
/// @returns false without memory for it.
bool installPageMap(fz_context* ctx, pdf_document* document, const PageTree& tree);

} // namespace tarnwick
