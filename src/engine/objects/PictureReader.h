#pragma once

#include "EngineDocument.h"
#include "protocol/ObjectMessages.h"

namespace tarnwick {

/// Draws an image by itself, as a page would show it but for its place: masks, colour spaces and
/// filters as the library has them. A stencil mask is drawn in black.
class PictureReader
{
public:
    /// @param document borrowed. @param descriptor the pixels are written there; borrowed.
    PictureReader(const EngineDocument& document, int descriptor)
        : theDocument(document)
        , theContext(document.context())
        , theDescriptor(descriptor)
    {
    }

    /// @returns FZ_ERROR_NONE whatever the image is like; FZ_ERROR_MEMORY when there is no room for
    ///   the pixels.
    int read(int number, PictureResult& result);

private:
    fz_image* load(int number, PictureResult& result) const;
    fz_pixmap* draw(fz_image* image, PictureResult& result) const;
    bool write(const fz_pixmap* pixmap) const;

    const EngineDocument& theDocument;
    fz_context* theContext;
    int theDescriptor;
};

} // namespace tarnwick
