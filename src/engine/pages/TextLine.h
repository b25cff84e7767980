#pragma once

#include <mupdf/fitz.h>

#include <cstdint>
#include <vector>

namespace tarnwick {

/// The look of characters.
struct TextStyle
{
    fz_font* font = nullptr; ///< borrowed from the page's text
    float size = 0;
    std::uint32_t colour = 0; ///< 24 bits

    bool operator==(const TextStyle&) const = default;
};

struct TextCharacter
{
    char32_t character = 0; ///< neither NUL nor half of a surrogate pair
    fz_quad quad = {};
    TextStyle style;
};

using TextLine = std::vector<TextCharacter>;

/// Appends a line's characters in the order in which MuPDF has them, which is that of drawing.
/// Halves of surrogate pairs are joined, over the place of both.
void appendDrawn(const fz_stext_line& drawn, TextLine& line);

/// A line with right-to-left letters in logical order (see logicalOrder). Spaces that nobody drew
/// have the place of their gap, line ends between texts that lie over each other have none.
/// @param direction of the line, a unit vector. @param readsFromRight whether its paragraph does.
TextLine inLogicalOrder(const TextLine& line, const fz_point& direction, bool readsFromRight);

} // namespace tarnwick
