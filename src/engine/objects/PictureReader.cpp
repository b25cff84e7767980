#include "PictureReader.h"

#include "Attempt.h"
#include "FileOutput.h"
#include "LibraryRemarks.h"
#include "ObjectEntry.h"
#include "ObjectView.h"

#include <algorithm>
#include <cmath>

namespace tarnwick {

namespace {

/// Bytes that an image takes before it is reduced, its mask included.
double drawnSize(const fz_image* image)
{
    const double own = double(image->w) * image->h * std::max<int>(image->n, 1);
    return image->mask ? own + drawnSize(image->mask) : own;
}

std::string tooLarge(double width, double height)
{
    return "The image has " + std::to_string(static_cast<std::int64_t>(width)) + " x "
        + std::to_string(static_cast<std::int64_t>(height))
        + " pixels, which is more than is drawn.";
}

/// Sides that keep the image's shape.
fz_irect pictureArea(const fz_image* image)
{
    const double longest = std::max(image->w, image->h);
    const double scale = std::min(1.0, maximumPictureSide / longest);
    const auto side = [scale](int whole) {
        return std::clamp(static_cast<int>(std::lround(whole * scale)), 1, maximumPictureSide);
    };
    return {0, 0, side(image->w), side(image->h)};
}

/// Devices take an image's mask apart from the image.
void fillMasked(fz_context* ctx, fz_device* device, fz_image* image, fz_matrix matrix)
{
    if (image->mask)
        fz_clip_image_mask(ctx, device, image->mask, matrix, fz_infinite_rect);
    fz_fill_image(ctx, device, image, matrix, 1, fz_default_color_params);
    if (image->mask)
        fz_pop_clip(ctx, device);
}

} // namespace

int PictureReader::read(int number, PictureResult& result)
{
    const LibraryRemarks remarks(theContext);
    fz_image* const image = load(number, result);
    fz_pixmap* const pixmap = image ? draw(image, result) : nullptr;
    int error = FZ_ERROR_NONE;
    if (pixmap) {
        result.width = pixmap->w;
        result.height = pixmap->h;
        result.end = remarks.tellDamage() ? EnginePictureEnd::isDamaged : EnginePictureEnd::isDrawn;
        error = write(pixmap) ? FZ_ERROR_NONE : FZ_ERROR_MEMORY;
    }
    if (result.remark.empty() && result.end != EnginePictureEnd::isDrawn)
        result.remark = remarks.first();
    fz_drop_pixmap(theContext, pixmap);
    fz_drop_image(theContext, image);
    return error;
}

/// What would take too much is refused before anything of it is unpacked.
fz_image* PictureReader::load(int number, PictureResult& result) const
{
    if (objectEntry(theDocument, number).state != EngineObjectState::isPresent)
        return nullptr;
    pdf_obj* reference = nullptr;
    fz_image* image = nullptr;
    fz_var(reference);
    fz_var(image);
    int error = attempt(theContext,
        [&] { reference = pdf_new_indirect(theContext, theDocument.document(), number, 0); });
    const ObjectView view(theContext, error ? nullptr : reference);
    const double width = double(view.entry("Width").integer().value_or(0));
    const double height = double(view.entry("Height").integer().value_or(0));
    if (!view.isStream())
        result.remark = "It is no image.";
    else if (width * height > double{largestDrawnImage})
        result.remark = tooLarge(width, height);
    else
        error = attempt(theContext,
            [&] { image = pdf_load_image(theContext, theDocument.document(), reference); });
    if (error == FZ_ERROR_MEMORY)
        result.remark = "There is not enough memory to read the image.";
    pdf_drop_obj(theContext, reference);
    return image;
}

fz_pixmap* PictureReader::draw(fz_image* image, PictureResult& result) const
{
    if (drawnSize(image) > double{largestDrawnImage}) {
        result.remark = tooLarge(image->w, image->h);
        return nullptr;
    }
    const fz_irect area = pictureArea(image);
    const fz_matrix matrix = fz_scale(static_cast<float>(area.x1), static_cast<float>(area.y1));
    fz_pixmap* pixmap = nullptr;
    fz_device* device = nullptr;
    fz_var(pixmap);
    fz_var(device);
    const int error = attempt(theContext, [&] {
        pixmap = fz_new_pixmap_with_bbox(theContext, fz_device_bgr(theContext), area, nullptr, 1);
        fz_clear_pixmap(theContext, pixmap);
        device = fz_new_draw_device(theContext, fz_identity, pixmap);
        const float black[] = {0};
        if (image->imagemask)
            fz_fill_image_mask(theContext, device, image, matrix, fz_device_gray(theContext), black,
                1, fz_default_color_params);
        else
            fillMasked(theContext, device, image, matrix);
        fz_close_device(theContext, device);
    });
    fz_drop_device(theContext, device);
    if (!error)
        return pixmap;
    if (error == FZ_ERROR_MEMORY)
        result.remark = "There is not enough memory to draw the image.";
    fz_drop_pixmap(theContext, pixmap);
    return nullptr;
}

bool PictureReader::write(const fz_pixmap* pixmap) const
{
    FileOutput output(theDescriptor);
    for (int y = 0; y < pixmap->h; ++y)
        output.write({reinterpret_cast<const char*>(pixmap->samples + pixmap->stride * y),
            static_cast<std::size_t>(pixmap->w) * 4});
    return output.finish();
}

} // namespace tarnwick
