#pragma once

#include "EngineDocument.h"
#include "protocol/EngineProtocol.h"

namespace tarnwick {

/// Appends the text of a page to result, its lines in logical order (TextLines.h). Each line ends
/// with a line feed; an empty line parts two blocks.
///
/// [byte EngineLoss of the page, count, then count code points as 32-bit numbers]; with detail 1
/// count times eight floats: the corners upper left, upper right, lower right, lower left in page
/// space, all zero for line ends; with detail 2 [count of runs, then for each: first code point,
/// number of them, float size, byte flags (1 bold, 2 italic), 24-bit colour as a 32-bit number,
/// text font name].
/// @returns FZ_ERROR_NONE or what MuPDF threw.
int readPageText(const EngineDocument& document, int page, int detail, PayloadWriter& result);

} // namespace tarnwick
