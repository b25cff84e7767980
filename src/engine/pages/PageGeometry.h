#pragma once

#include <mupdf/pdf.h>

namespace tarnwick {

/// The size of a page in page space, which the program's PDFPageText explains (pdf/PDFText.h), and
/// the way there.
struct PageGeometry
{
    float width = 612;
    float height = 792;
    fz_matrix toPageSpace = fz_identity; ///< from the page's user space
};

/// Geometry of a page by its dictionary. Sides are held within [1, 14400] points, the largest page
/// that viewers must take (ISO 32000-2, annex C); boxes without area, or of values that are no
/// numbers, count as 612 x 792.
PageGeometry pageGeometry(fz_context* ctx, pdf_obj* page);

} // namespace tarnwick
