#pragma once

#include "viewer/SearchChoices.h"

#include <cstddef>
#include <cstdint>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

/// A text in the form in which a search compares it, with the way back to the text's own positions.
///
/// - Canonically equivalent texts fold to the same form (NFD), texts that differ only in case do so
///   where case is ignored (full case folding: "ß" becomes "ss"); a literal search keeps the code
///   points.
/// - A line end together with the blanks and line ends around it folds to one space, whichever the
///   comparison: where a line ends is the page's layout, not its text.
class FoldedText
{
public:
    /// Takes a new text, reusing memory. @param stop ends the work early; what has been folded then
    /// stands for the text.
    void fold(std::u16string_view text, SearchOptions options, const std::stop_token& stop = {});

    std::u16string_view units() const { return theUnits; }

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
};
