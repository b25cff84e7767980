#pragma once

#include <mupdf/pdf.h>

#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

/// One range of equally labelled pages (ISO 32000-2, 12.4.2).
struct PageLabelRange
{
    int firstPage = 0; ///< index from 0
    char style = 0; ///< 'D', 'R', 'r', 'A' or 'a'; 0 for a label without a number
    std::string prefix; ///< UTF-8
    int firstNumber = 1;
};

/// The label ranges of a document, ascending by first page; empty without any.
std::vector<PageLabelRange> readPageLabels(fz_context* ctx, pdf_document* document);

/// The label of a page, UTF-8, numbers written with at most 255 characters.
/// @returns nothing for a page in front of the first range.
std::optional<std::string> pageLabel(const std::vector<PageLabelRange>& ranges, int page);

} // namespace tarnwick
