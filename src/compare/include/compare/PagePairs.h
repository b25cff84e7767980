#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <stop_token>
#include <vector>

namespace tarnwick {

/// What a page is known by without looking at it.
struct PageSign
{
    int object = 0; ///< number of the page's object; 0 where it is not known
    bool isKnown = false; ///< there is a digest
    std::array<std::uint8_t, 32> digest = {}; ///< of all that the page's look is made of
};

/// What became of a page.
struct PagePair
{
    int before = -1; ///< index of the page; -1 for one that was added
    int after = -1; ///< -1 for one that was removed
    bool isSame = false; ///< both are made of the same bytes
    bool isMoved = false; ///< others that are in both do not follow it any more as they did

    bool operator==(const PagePair&) const = default;
};

/// Whether two documents are versions of one file, in which an object's number stays its own.
enum class PageKinship
{
    isOfOneFile,
    isOfTwoFiles,
};

/// Pairs the pages of two documents: in versions of one file by the pages' objects, then, and in
/// two files, by what the pages are made of. What is left between two pairs is paired in order, as
/// far as there is something left on both sides.
/// @returns in the order of the later document, removed pages where they stood.
std::vector<PagePair> pairPages(std::span<const PageSign> before, std::span<const PageSign> after,
    PageKinship kinship, const std::stop_token& stop = {});

} // namespace tarnwick
