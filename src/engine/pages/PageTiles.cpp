#include "PageTiles.h"

#include "Attempt.h"
#include "UnreadObjects.h"

#include <optional>

namespace tarnwick {

namespace {

/// From page space to the pixels of the view, whose origin is the turned page's upper left corner.
fz_matrix viewMatrix(const TileRequest& order, const PageGeometry& geometry)
{
    fz_matrix turn = fz_identity;
    switch (order.rotation & 3) {
    case 1:
        turn = fz_make_matrix(0, 1, -1, 0, geometry.height, 0);
        break;
    case 2:
        turn = fz_make_matrix(-1, 0, 0, -1, geometry.width, geometry.height);
        break;
    case 3:
        turn = fz_make_matrix(0, -1, 1, 0, 0, geometry.width);
        break;
    default:
        break;
    }
    const auto scale = static_cast<float>(order.scale);
    return fz_concat(turn, fz_scale(scale, scale));
}

/// Three bytes a pixel from MuPDF, four for the program.
std::vector<std::uint32_t> pixelsOf(const fz_pixmap* pixmap)
{
    std::vector<std::uint32_t> pixels(
        static_cast<std::size_t>(pixmap->w) * static_cast<std::size_t>(pixmap->h));
    auto pixel = pixels.begin();
    for (int y = 0; y < pixmap->h; ++y) {
        const unsigned char* sample = pixmap->samples + pixmap->stride * y;
        for (int x = 0; x < pixmap->w; ++x, sample += 3, ++pixel)
            *pixel = 0xff000000u | std::uint32_t{sample[2]} << 16 | std::uint32_t{sample[1]} << 8
                | std::uint32_t{sample[0]};
    }
    return pixels;
}

bool isPart(const TileRequest& order, const PageGeometry& geometry)
{
    const bool isTurned = (order.rotation & 1) != 0;
    const double width = (isTurned ? geometry.height : geometry.width) * order.scale;
    const double height = (isTurned ? geometry.width : geometry.height) * order.scale;
    // Sizes are rounded up to whole pixels.
    return order.x > 0 || order.y > 0 || order.width < width || order.height < height;
}

} // namespace

PageTiles::~PageTiles()
{
    forgetPage();
}

void PageTiles::forgetPage()
{
    fz_drop_display_list(theDocument.context(), theList);
    theList = nullptr;
    theKeptPage = -1;
}

void PageTiles::keepPage(pdf_page* page, int index)
{
    fz_context* const ctx = theDocument.context();
    fz_display_list* list = nullptr;
    fz_device* device = nullptr;
    fz_var(list);
    fz_var(device);
    const int error = attempt(ctx, [&] {
        list = fz_new_display_list(ctx, fz_infinite_rect);
        device = fz_new_list_device(ctx, list);
        pdf_run_page(ctx, page, device, fz_identity, nullptr);
        fz_close_device(ctx, device);
    });
    fz_drop_device(ctx, device);
    // Drawing the page itself takes less memory than its list does.
    if (error == FZ_ERROR_MEMORY || !device) {
        fz_drop_display_list(ctx, list);
        list = nullptr;
    }
    theKeptPage = index;
    theList = list;
}

int PageTiles::draw(const TileRequest& order, TileResult& result)
{
    fz_context* const ctx = theDocument.context();
    if (order.page != theKeptPage)
        forgetPage();
    std::optional<LoadedPage> loaded;
    pdf_page* page = nullptr;
    if (!theList) {
        loaded.emplace(theDocument, order.page);
        page = loaded->page();
        if (!page)
            return loaded->error();
        // Blank paper would pass for a page that shows nothing.
        if (contentLoss(theDocument, page->obj) == EngineLoss::isDamaged)
            return FZ_ERROR_GENERIC;
        theGeometry = pageGeometry(ctx, page->obj);
        if (theKeptPage < 0 && isPart(order, theGeometry))
            keepPage(page, order.page);
    }
    const fz_matrix matrix = viewMatrix(order, theGeometry);
    const fz_irect area = {order.x, order.y, order.x + order.width, order.y + order.height};
    fz_pixmap* pixmap = nullptr;
    fz_device* device = nullptr;
    fz_var(pixmap);
    fz_var(device);
    int error = attempt(ctx, [&] {
        pixmap = fz_new_pixmap_with_bbox(ctx, fz_device_bgr(ctx), area, nullptr, 0);
        fz_clear_pixmap_with_value(ctx, pixmap, 0xff);
        device = fz_new_draw_device(ctx, fz_identity, pixmap);
        if (theList)
            fz_run_display_list(ctx, theList, device, matrix, fz_rect_from_irect(area), nullptr);
        else
            pdf_run_page(ctx, page, device, matrix, nullptr);
        fz_close_device(ctx, device);
    });
    fz_drop_device(ctx, device);
    if (error != FZ_ERROR_MEMORY && device)
        error = FZ_ERROR_NONE;
    if (!error)
        result.pixels = pixelsOf(pixmap);
    fz_drop_pixmap(ctx, pixmap);
    return error;
}

} // namespace tarnwick
