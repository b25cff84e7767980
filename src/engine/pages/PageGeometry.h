#pragma once

#include <mupdf/pdf.h>

namespace tarnwick {

/// Where a page lies: page space has its origin in the upper left corner of the page as shown, with
/// the page's own rotation, y downwards, in points.
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
