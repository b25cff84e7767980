#pragma once

#include "platform/engine/EngineDocument.h"
#include "platform/engine/EngineProtocol.h"

/// A part of a page to draw.
struct TileOrder
{
    int page = 0; ///< index from 0
    double scale = 1; ///< pixels per point
    int rotation = 0; ///< clockwise quarter turns of the view
    int x = 0, y = 0, width = 0, height = 0; ///< pixels of the page scaled and rotated so
};

/// Draws the part with annotations and form fields on white: for each pixel four bytes blue, green,
/// red and 255, row by row from the top, appended to result.
/// @returns FZ_ERROR_NONE or what MuPDF threw; a page whose content breaks off is drawn as far as
///   it goes.
int drawTile(const EngineDocument& document, const TileOrder& order, PayloadWriter& result);
