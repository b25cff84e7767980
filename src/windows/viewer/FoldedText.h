#pragma once

#include "SearchChoices.h"

#include <cstddef>
#include <cstdint>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

/// A text in the form in which a search compares it, with the way back to the text's own positions.
///
/// - Canonically equivalent texts fold to the same form (NFD), texts that differ only in case do so
///   where case is ignored (full case folding: "ß" becomes "ss"); a literal search keeps the code
///   points.
/// - Arabic and Hebrew presentation forms, which files store for the shapes of letters, fold to the
///   letters (NFKD), but not for a literal search.
/// - A line end together with the blanks and line ends around it folds to one space, whichever the
///   comparison: where a line ends is the page's layout, not its text.
///
/// For the same reason, there are places where the text may be spelled in other ways (Detour):
/// where a line ends behind a hyphen, which may or may not belong to the word; at soft hyphens,
/// which are drawn as hyphens or not at all; and where a line of a script without blanks between
/// words ends.
class FoldedText
{
public:
    /// Folded units [begin, end) that another spelling has not, or has a hyphen for; never empty.
    struct Detour
    {
        std::uint32_t begin = 0;
        std::uint32_t end = 0;
        bool isHyphen = false;
    };

    /// Takes a new text, reusing memory. @param stop ends the work early; what has been folded then
    /// stands for the text.
    void fold(std::u16string_view text, SearchOptions options, const std::stop_token& stop = {});

    std::u16string_view units() const { return theUnits; }

    /// In the order of their beginnings. Several may begin at one unit; each stands for itself.
    const std::vector<Detour>& detours() const { return theDetours; }

    /// Position in the text where the piece begins that a unit of the form comes from; the text's
    /// (folded) length for index == units().size().
    std::size_t position(std::size_t index) const { return thePositions[index]; }

    /// No piece of the text lies across this index: a match may begin or end here.
    /// Precondition: index <= units().size().
    bool isPieceBoundary(std::size_t index) const
    {
        return index == 0 || index == theUnits.size()
            || thePositions[index] != thePositions[index - 1];
    }

private:
    class Folder;

    std::u16string theUnits;
    std::vector<std::uint32_t> thePositions = {0};
    std::vector<Detour> theDetours;
};

} // namespace tarnwick
