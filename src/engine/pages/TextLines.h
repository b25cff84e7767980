#pragma once

#include "TextLine.h"

#include <functional>

namespace tarnwick {

/// Gets a line, which is good until it returns. @param beginsBlock whether it is its block's first.
using TakeLine = std::function<void(const TextLine& line, bool beginsBlock)>;

/// Visits the lines of a page's text, block after block, each in the order in which it is read.
///
/// MuPDF has characters in the order of drawing, and takes the parts of one line for several where
/// letters of both directions were drawn in logical order. A line that holds right-to-left letters
/// is put together from such parts and ordered here. All other lines are MuPDF's.
void visitLines(const fz_stext_page& page, const TakeLine& take);

} // namespace tarnwick
