#include "ImageFacts.h"

namespace tarnwick {

namespace {

using Fact = EngineFactKind;

/// How many components a colour space has; 0 where the library cannot make sense of it.
int componentsOf(fz_context* ctx, const ObjectView& space)
{
    fz_colorspace* loaded = nullptr;
    int count = 0;
    fz_var(loaded);
    const int error = attempt(ctx, [&] {
        loaded = pdf_load_colorspace(ctx, space.object());
        count = fz_colorspace_n(ctx, loaded);
    });
    fz_drop_colorspace(ctx, loaded);
    return error ? 0 : count;
}

void tellColours(FactSheet& sheet, const ObjectView& image)
{
    const ObjectView space = image.entry("ColorSpace");
    if (space.isNone())
        return;
    const int count = componentsOf(sheet.document().context(), space);
    const std::string components = count == 0 ? ", not readable"
        : count == 1                          ? ", 1 component"
                                              : ", " + std::to_string(count) + " components";
    sheet.add(Fact::isColours, sheet.valueText(space) + components);
}

void tellMask(FactSheet& sheet, const ObjectView& image)
{
    const ObjectView soft = image.entry("SMask");
    const ObjectView mask = image.entry("Mask");
    if (!soft.isNone())
        sheet.add(Fact::isMask, "soft mask " + sheet.valueText(soft));
    if (mask.isArray())
        sheet.add(Fact::isMask, "colour key " + sheet.valueText(mask));
    else if (!mask.isNone())
        sheet.add(Fact::isMask, "stencil mask " + sheet.valueText(mask));
    if (image.entry("SMaskInData").integer().value_or(0) > 0)
        sheet.add(Fact::isMask, "in the image's data");
}

} // namespace

void tellOfImage(FactSheet& sheet, const ObjectView& image)
{
    sheet.setKind(EngineObjectKind::isImage);
    const auto width = image.entry("Width").integer();
    const auto height = image.entry("Height").integer();
    if (width && height)
        sheet.add(Fact::isPixels, std::to_string(*width) + " \u00d7 " + std::to_string(*height));
    sheet.addValue(Fact::isBits, image.entry("BitsPerComponent"));
    const ObjectView isMask = image.entry("ImageMask");
    if (!isMask.isNone() && sheet.valueText(isMask) == "true")
        sheet.add(Fact::isMask, "the image is a stencil mask itself, shown in black");
    tellColours(sheet, image);
    tellMask(sheet, image);
    sheet.addValue(Fact::isDecode, image.entry("Decode"));
}

} // namespace tarnwick
