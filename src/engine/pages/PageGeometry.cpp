#include "PageGeometry.h"

#include "Attempt.h"

#include <algorithm>
#include <cmath>

namespace tarnwick {

namespace {

constexpr float smallestSide = 1;
constexpr float largestSide = 14400;

float heldSide(float side, float standard)
{
    if (!std::isfinite(side) || side <= 0)
        return standard;
    return std::clamp(side, smallestSide, largestSide);
}

} // namespace

PageGeometry pageGeometry(fz_context* ctx, pdf_obj* page)
{
    PageGeometry geometry;
    fz_rect box = fz_empty_rect;
    fz_matrix matrix = fz_identity;
    const int error = attempt(ctx, [&] { pdf_page_obj_transform(ctx, page, &box, &matrix); });
    if (error)
        return geometry;
    const fz_rect bounds = fz_transform_rect(box, matrix);
    geometry.width = heldSide(bounds.x1 - bounds.x0, geometry.width);
    geometry.height = heldSide(bounds.y1 - bounds.y0, geometry.height);
    geometry.toPageSpace = matrix;
    return geometry;
}

} // namespace tarnwick
